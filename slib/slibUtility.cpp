// SPDX-License-Identifier: MIT
#include "slib/slibUtility.h"

#include "platform/text/Text.h"

#include <fmt/format.h>
#include <uriparser/Uri.h>

#include <type_traits>
#include <utility>

namespace {

/// The characters, besides letters and digits, that an address may contain unescaped.
constexpr std::string_view addressMarks = "!$&'()*+,-./:;=?@_~";

bool isUriReference(const std::string& text) {
    UriUriA uri;
    const char* fault = nullptr;
    const bool isValid =
        uriParseSingleUriExA(&uri, text.data(), text.data() + text.size(), &fault) == URI_SUCCESS;
    if (isValid) {
        uriFreeUriMembersA(&uri);
    }
    return isValid;
}

std::string decimalText(const platform::Number& number) {
    // Enough digits to distinguish neighbours in daily use, few enough for 0.1 to stay "0.1".
    const auto text = [](auto value) {
        if constexpr (std::is_same_v<decltype(value), double>) {
            return fmt::format("{:.16g}", value);
        } else if constexpr (std::is_same_v<decltype(value), float>) {
            return fmt::format("{:.7g}", value);
        } else {
            return fmt::format("{:d}", value);
        }
    };
    return std::visit(text, number.storage());
}

platform::Value asText(platform::Value value) {
    if (const auto* number = std::get_if<platform::Number>(&value)) {
        return decimalText(*number);
    }
    return std::holds_alternative<std::string>(value) ? value : platform::Value();
}

} // namespace

std::optional<platform::URL>
slibUtility::slibNSStringToNSURL(const std::optional<std::string>& text) {
    if (!text) {
        return std::nullopt;
    }
    std::string escaped = platform::percentEscaped(platform::repairedUtf8(*text), addressMarks);
    return isUriReference(escaped) ? std::optional(platform::URL{std::move(escaped)})
                                   : std::nullopt;
}

platform::Value slibUtility::slibUserDefaultForKey_ofType(platform::Host& host,
                                                          std::string_view key, std::int32_t type) {
    enum Type : std::int32_t { text = 0, object = 1 };
    switch (type) {
    case object:
        return host.userDefaults.objectForKey(key);
    case text:
        return asText(host.userDefaults.objectForKey(key));
    default:
        host.log.line("defaulted in slibUserDefaulFroKey");
        return {};
    }
}
