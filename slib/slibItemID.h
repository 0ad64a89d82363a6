// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The values by which objects are sorted and distinguished.
struct GRACompare {
    /// A four-character code, or 0.
    std::uint64_t unitType = 0;
    /// Free for subclasses.
    std::uint64_t compare1 = 0;
    std::uint64_t compare2 = 0;
    /// The object's identifier, unique in this process.
    std::uint64_t compare3 = 0;

    friend bool operator==(const GRACompare&, const GRACompare&) = default;
};

/// A four-character code as a number, the first character in its highest byte: "GRLS" is
/// 0x47524C53.
[[nodiscard]] constexpr std::uint64_t unitTypeOf(const char (&code)[5]) {
    std::uint64_t number = 0;
    for (int i = 0; i < 4; ++i) {
        number = number << 8 | static_cast<unsigned char>(code[i]);
    }
    return number;
}

/// A text together with its bytes in an encoding of one byte per character.
class slibTextBlock {
public:
    /// The bytes are ASCII; any other character becomes "?" there but stays in the text.
    explicit slibTextBlock(std::string_view text);
    /// The text of bytes in Mac OS Roman.
    [[nodiscard]] static slibTextBlock fromBytes(std::string_view bytes);

    /// Always valid UTF-8; malformed input becomes U+FFFD.
    [[nodiscard]] const std::string& text() const { return text_; }
    [[nodiscard]] const std::string& bytes() const { return bytes_; }

private:
    slibTextBlock() = default;

    std::string bytes_;
    std::string text_;
};

/// An object's identity record.
struct slibItemID {
    ::GRACompare GRACompare;
    /// Free for users of the object, and archived with it.
    std::array<std::uint32_t, 10> idVal{};
    /// Not used by objects, where it is 0.
    std::int32_t integer = 0;
    std::optional<slibTextBlock> name;
    std::optional<slibTextBlock> description;
    /// For users that chain records into lists; borrowed, and null in objects.
    std::array<slibItemID*, 2> links{};
};
