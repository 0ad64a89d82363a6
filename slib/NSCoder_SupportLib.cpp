// SPDX-License-Identifier: MIT
#include "slib/NSCoder_SupportLib.h"

namespace NSCoder_SupportLib {
namespace {

platform::Number numberFor(platform::KeyedUnarchiver& coder, std::string_view key) {
    return coder.decodeNumber(key).value_or(platform::Number(0));
}

} // namespace

void encodeUInt16_forKey(platform::KeyedArchiver& coder, std::uint16_t value,
                         std::string_view key) {
    coder.encodeObject(platform::Number(std::int32_t{value}), key);
}

std::uint16_t decodeUInt16ForKey(platform::KeyedUnarchiver& coder, std::string_view key) {
    return static_cast<std::uint16_t>(numberFor(coder, key).unsignedValue());
}

void encodeSInt64_forKey(platform::KeyedArchiver& coder, std::int64_t value, std::string_view key) {
    coder.encodeObject(platform::Number(value), key);
}

std::int64_t decodeSInt64ForKey(platform::KeyedUnarchiver& coder, std::string_view key) {
    return numberFor(coder, key).integerValue();
}

void encodeUInt64_forKey(platform::KeyedArchiver& coder, std::uint64_t value,
                         std::string_view key) {
    coder.encodeObject(platform::Number(value), key);
}

std::uint64_t decodeUInt64ForKey(platform::KeyedUnarchiver& coder, std::string_view key) {
    return numberFor(coder, key).unsignedValue();
}

void encodeChar_forKey(platform::KeyedArchiver& coder, char value, std::string_view key) {
    coder.encodeBytes(std::as_bytes(std::span(&value, 1)), key);
}

void encodeCGPoint_forKey(platform::KeyedArchiver&, platform::Point, std::string_view) {}

} // namespace NSCoder_SupportLib
