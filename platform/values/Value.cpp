// SPDX-License-Identifier: MIT
#include "platform/values/Value.h"

#include "platform/text/Text.h"

#include <uriparser/Uri.h>

#include <charconv>
#include <cmath>
#include <filesystem>
#include <limits>
#include <string_view>
#include <type_traits>

namespace platform {

namespace {

template <typename Whole>
Whole saturated(double value) {
    constexpr auto least = std::numeric_limits<Whole>::min();
    constexpr auto most = std::numeric_limits<Whole>::max();
    if (std::isnan(value)) {
        return 0;
    }
    const double cut = std::trunc(value);
    if (cut <= static_cast<double>(least)) {
        return least;
    }
    // `most` may round up to a power of two that no longer fits.
    return cut >= static_cast<double>(most) ? most : static_cast<Whole>(cut);
}

template <typename Whole>
Whole wholeOf(const Number::Storage& storage) {
    return std::visit(
        [](auto value) -> Whole {
            if constexpr (std::is_floating_point_v<decltype(value)>) {
                return saturated<Whole>(value);
            } else {
                return static_cast<Whole>(value);
            }
        },
        storage);
}

/// In bytes. Longer text is not an address: no path is that long, and the parser allocates memory
/// for every slash.
constexpr std::size_t addressLimit = 1 << 16;

/// The parsed parts of an address; they point into the text, which must outlive them.
class ParsedAddress {
public:
    ParsedAddress() = default;
    explicit ParsedAddress(const std::string& text)
        : isValid_(text.size() <= addressLimit &&
                   uriParseSingleUriExA(&uri_, text.data(), text.data() + text.size(), nullptr) ==
                       URI_SUCCESS) {}
    ParsedAddress(const ParsedAddress&) = delete;
    ParsedAddress& operator=(const ParsedAddress&) = delete;
    ~ParsedAddress() { uriFreeUriMembersA(&uri_); }

    [[nodiscard]] bool isValid() const { return isValid_; }
    UriUriA& uri() { return uri_; }

private:
    UriUriA uri_{};
    bool isValid_ = false;
};

std::string_view textOf(const UriTextRangeA& range) {
    return range.first ? std::string_view(range.first,
                                          static_cast<std::size_t>(range.afterLast - range.first))
                       : std::string_view();
}

} // namespace

URL URL::file(const std::string& path) {
    if (path.empty() || path.find('\0') != std::string::npos) {
        return {};
    }
    std::error_code error;
    const auto absolute = std::filesystem::absolute(path, error).string();
    // "file://", and three characters per byte of the path.
    std::string text(7 + 3 * absolute.size() + 1, '\0');
    if (error || uriUnixFilenameToUriStringA(absolute.c_str(), text.data()) != URI_SUCCESS) {
        return {};
    }
    text.resize(text.find('\0'));
    return {text};
}

std::string URL::path() const {
    ParsedAddress address(text);
    if (!address.isValid() || !equalIgnoringCase(textOf(address.uri().scheme), "file")) {
        return {};
    }
    const auto host = textOf(address.uri().hostText);
    if (!host.empty() && !equalIgnoringCase(host, "localhost")) {
        return {};
    }
    std::string path;
    for (const auto* segment = address.uri().pathHead; segment; segment = segment->next) {
        path += '/';
        path += textOf(segment->text);
    }
    const char* end = uriUnescapeInPlaceExA(path.data(), URI_FALSE, URI_BR_DONT_TOUCH);
    path.resize(static_cast<std::size_t>(end - path.data()));
    return path.find('\0') == std::string::npos ? path : std::string();
}

URL URL::relativeTo(const URL& base) const {
    ParsedAddress reference(text);
    ParsedAddress start(base.text);
    ParsedAddress whole;
    int length = 0;
    if (!reference.isValid() || !start.isValid() ||
        uriAddBaseUriA(&whole.uri(), &reference.uri(), &start.uri()) != URI_SUCCESS ||
        uriToStringCharsRequiredA(&whole.uri(), &length) != URI_SUCCESS) {
        return *this;
    }
    std::string resolved(static_cast<std::size_t>(length) + 1, '\0');
    if (uriToStringA(resolved.data(), &whole.uri(), length + 1, nullptr) != URI_SUCCESS) {
        return *this;
    }
    resolved.resize(static_cast<std::size_t>(length));
    return {resolved};
}

Number::Number(std::uint64_t value) : storage_(value) {
    if (value <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
        storage_ = static_cast<std::int64_t>(value);
    }
}

bool Number::boolValue() const {
    const double value = doubleValue();
    return value != 0 && !std::isnan(value);
}

std::int64_t Number::integerValue() const {
    return wholeOf<std::int64_t>(storage_);
}

std::uint64_t Number::unsignedValue() const {
    return wholeOf<std::uint64_t>(storage_);
}

double Number::doubleValue() const {
    return std::visit([](auto value) { return static_cast<double>(value); }, storage_);
}

bool Number::isReal() const {
    return std::holds_alternative<float>(storage_) || std::holds_alternative<double>(storage_);
}

bool isAbsent(const Value& value) {
    return std::visit(
        [](const auto& held) {
            if constexpr (requires { held.use_count(); }) {
                return !held;
            } else {
                return std::is_same_v<decltype(held), const std::monostate&>;
            }
        },
        value);
}

std::int64_t wholeNumber(double value) {
    return saturated<std::int64_t>(value);
}

std::int32_t wholeNumber32(double value) {
    return saturated<std::int32_t>(value);
}

std::int64_t integerOf(const Value& value) {
    if (const auto* number = std::get_if<Number>(&value)) {
        return number->integerValue();
    }
    const auto* text = std::get_if<std::string>(&value);
    if (!text) {
        return 0;
    }
    const auto begin = text->find_first_not_of(" \t\r\n");
    std::string_view digits =
        begin == std::string::npos ? "" : std::string_view(*text).substr(begin);
    if (digits.starts_with('+')) {
        digits.remove_prefix(digits.starts_with("+-") ? digits.size() : 1);
    }
    std::int64_t number = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (result.ec == std::errc::result_out_of_range) {
        return digits.starts_with('-') ? std::numeric_limits<std::int64_t>::min()
                                       : std::numeric_limits<std::int64_t>::max();
    }
    return number;
}

} // namespace platform
