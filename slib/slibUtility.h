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

    /// The address that a text spells: its UTF-8 bytes are percent-escaped unless they are ASCII
    /// and none of control characters, blank and " # % < > [ \ ] ^ ` { | }. Nothing for an absent
    /// text, or one that even so is no URI reference of RFC 3986.
    [[nodiscard]] static std::optional<platform::URL>
    slibNSStringToNSURL(const std::optional<std::string>& text);

    /// A setting: for type 1 as it is stored, for type 0 as text, numbers in decimal digits.
    /// Absent when nothing is set, or nothing that has a text; any other type is logged and gives
    /// an absent value.
    [[nodiscard]] static platform::Value
    slibUserDefaultForKey_ofType(platform::Host& host, std::string_view key, std::int32_t type);
};
