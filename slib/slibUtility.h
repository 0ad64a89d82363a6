// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

class slibUtility {
public:
    slibUtility() = delete;

    /// The address that a text spells. Its UTF-8 bytes are percent-escaped, except ASCII ones other
    /// than control characters, blank and " # % < > [ \ ] ^ ` { | }. Absent if the text is absent,
    /// or if the result is still no URI reference of RFC 3986.
    [[nodiscard]] static std::optional<platform::URL>
    slibNSStringToNSURL(const std::optional<std::string>& text);

    /// A setting: as stored for type 1, as text for type 0, with numbers in decimal digits. Absent
    /// if nothing is set or the value cannot be text. Any other type is logged and gives an absent
    /// value.
    [[nodiscard]] static platform::Value
    slibUserDefaultForKey_ofType(platform::Host& host, std::string_view key, std::int32_t type);
};
