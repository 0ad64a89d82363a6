// SPDX-License-Identifier: MIT
#include "slib/SupportLibCat.h"

#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace SupportLibCat {
namespace {

int hexDigit(std::string_view digits, std::size_t position) {
    const char digit = position < digits.size() ? digits[position] : '0';
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    const char upper = static_cast<char>(digit & ~0x20);
    return upper >= 'A' && upper <= 'F' ? upper - 'A' + 10 : 0;
}

std::uint8_t hexByte(std::string_view digits, std::size_t index) {
    // Kept: programs rely on it to read short texts to their end. A missing digit counts as 0.
    return static_cast<std::uint8_t>(hexDigit(digits, 2 * index) * 16 +
                                     hexDigit(digits, 2 * index + 1));
}

} // namespace

std::string numToNSString(std::int32_t number) {
    return fmt::format("{}", number);
}

std::string slibReturnTrucatedNSString_maxLen_withElip(std::string_view text, std::int64_t maximum,
                                                       bool ellipsis) {
    std::string cut(platform::wholeCharacterPrefix(text, maximum));
    if (ellipsis && platform::utf16Length(text) > maximum) {
        cut += "...";
    }
    return cut;
}

std::optional<std::string> stripAlphaCharsFromString(std::string_view) {
    return std::nullopt;
}

std::int8_t slibhexByteFromString_atIndex(std::string_view text, std::int64_t index) {
    if (index < 0) {
        return 0;
    }
    const std::string digits = platform::macRomanFromUtf8(text);
    return static_cast<std::int8_t>(hexByte(digits, static_cast<std::size_t>(index)));
}

platform::Data slibextractAllHexBytes_count(std::string_view text) {
    const std::string digits = platform::macRomanFromUtf8(text);
    platform::Data bytes(static_cast<std::size_t>(platform::utf16Length(text) / 2));
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = std::byte{hexByte(digits, i)};
    }
    return bytes;
}

std::string makeStringOfHexValues_ofLength(std::span<const std::byte> bytes, std::int64_t length) {
    const auto wanted = static_cast<std::size_t>(std::max<std::int64_t>(length, 1));
    std::string text;
    for (const std::byte byte : bytes.first(std::min(wanted, bytes.size()))) {
        fmt::format_to(std::back_inserter(text), "{:x}", std::to_integer<unsigned>(byte));
    }
    return text;
}

} // namespace SupportLibCat
