// SPDX-License-Identifier: MIT
#pragma once

#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "platform/views/Drawing.h"

#include <cstdint>
#include <string_view>

/// Archives numbers as boxed objects. A key that is missing, or holds something else, reads as 0; a
/// number that is too wide loses its high bits.
namespace NSCoder_SupportLib {

void encodeUInt16_forKey(platform::KeyedArchiver& coder, std::uint16_t value, std::string_view key);
[[nodiscard]] std::uint16_t decodeUInt16ForKey(platform::KeyedUnarchiver& coder,
                                               std::string_view key);
void encodeSInt64_forKey(platform::KeyedArchiver& coder, std::int64_t value, std::string_view key);
[[nodiscard]] std::int64_t decodeSInt64ForKey(platform::KeyedUnarchiver& coder,
                                              std::string_view key);
void encodeUInt64_forKey(platform::KeyedArchiver& coder, std::uint64_t value, std::string_view key);
[[nodiscard]] std::uint64_t decodeUInt64ForKey(platform::KeyedUnarchiver& coder,
                                               std::string_view key);

/// One raw byte.
/// Kept: other programs read it with `KeyedUnarchiver::decodeBytes`. It has no counterpart here.
void encodeChar_forKey(platform::KeyedArchiver& coder, char value, std::string_view key);
/// Kept: archives of other programs lack the key. Writes nothing.
void encodeCGPoint_forKey(platform::KeyedArchiver& coder, platform::Point point,
                          std::string_view key);

} // namespace NSCoder_SupportLib
