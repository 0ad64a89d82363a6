// SPDX-License-Identifier: MIT
#include "slib/SupportLibCat.h"

#include <array>

namespace SupportLibCat {

void encodeSInt16_value(platform::KeyedArchiver& coder, std::int16_t value) {
    coder.encodeInteger(value);
}

std::int16_t decodeSInt16(platform::KeyedUnarchiver& coder) {
    return static_cast<std::int16_t>(coder.decodeInteger());
}

void encodeSInt32_value(platform::KeyedArchiver& coder, std::int32_t value) {
    coder.encodeInteger(value);
}

std::int32_t decodeSInt32(platform::KeyedUnarchiver& coder) {
    return static_cast<std::int32_t>(coder.decodeInteger());
}

void encodeSInt16_value_forKey(platform::KeyedArchiver& coder, std::int16_t value,
                               std::string_view key) {
    const auto bits = static_cast<std::uint16_t>(value);
    const std::array bytes{std::byte(bits & 0xFF), std::byte(bits >> 8)};
    coder.encodeBytes(bytes, key);
}

std::int16_t decodeSInt16_forKey(platform::KeyedUnarchiver& coder, std::string_view key) {
    const std::span<const std::byte> bytes = coder.decodeBytes(key);
    if (bytes.size() < 2) {
        return 0;
    }
    return static_cast<std::int16_t>(std::to_integer<int>(bytes[0]) | std::to_integer<int>(bytes[1])
                                                                          << 8);
}

void encodeNSRange_value_forKey(platform::KeyedArchiver&, const Range&, std::string_view) {}

} // namespace SupportLibCat
