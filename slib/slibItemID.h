// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// What objects are sorted and told apart by.
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

/// A text beside its bytes in an encoding of one byte a character.
class slibTextBlock {
public:
    /// The bytes are ASCII; a character beyond it becomes "?" there, and stays in the text.
    explicit slibTextBlock(std::string_view text);
    /// The text of bytes in Mac OS Roman.
    [[nodiscard]] static slibTextBlock fromBytes(std::string_view bytes);

    /// UTF-8, always valid: what was not becomes U+FFFD.
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
    /// Not used by objects, and 0 there.
    std::int32_t integer = 0;
    std::optional<slibTextBlock> name;
    std::optional<slibTextBlock> description;
    /// For whoever chains records into lists, borrowed; null in objects.
    std::array<slibItemID*, 2> links{};
};
