// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// Text is UTF-8. Lengths and positions count UTF-16 units, as the formats and contracts of the
/// program do.
namespace platform {

[[nodiscard]] constexpr bool isAscii(char byte) {
    return static_cast<unsigned char>(byte) < 0x80;
}
[[nodiscard]] bool isAscii(std::string_view bytes);
/// The lower case of a letter from A to Z; any other byte unchanged.
[[nodiscard]] constexpr char asciiLower(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

[[nodiscard]] constexpr bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}
/// Whether it is a letter from A to Z.
[[nodiscard]] constexpr bool isCapital(char byte) {
    return byte >= 'A' && byte <= 'Z';
}

[[nodiscard]] bool isValidUtf8(std::string_view bytes);
/// Replaces each malformed byte sequence, delimited as Unicode recommends, by one U+FFFD.
[[nodiscard]] std::string repairedUtf8(std::string_view bytes);

/// Unicode's default lower-casing, independent of the locale.
[[nodiscard]] std::string lowerCased(std::string_view text);
[[nodiscard]] bool equalIgnoringCase(std::string_view one, std::string_view other);

/// The text in ASCII: letters lose their marks, those such as "Ø" or "æ" become the letters that
/// stand for them, and every other character becomes a blank.
[[nodiscard]] std::string inAsciiLetters(std::string_view text);

/// The text as somebody searches for it: in lower case, and without the marks of letters; those
/// such as "Ø" or "æ" become the letters that stand for them. Letters of other scripts stay.
[[nodiscard]] std::string folded(std::string_view text);

[[nodiscard]] std::int64_t utf16Length(std::string_view text);
/// The first `units` UTF-16 units, extended so that no user-perceived character is cut.
[[nodiscard]] std::string_view wholeCharacterPrefix(std::string_view text, std::int64_t units);

/// Without leading and trailing white space and line ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// Text that is safe to show: without control characters (Unicode's Cc) except LF, CR and tabs, and
/// without characters that change the direction of writing (Bidi_Control). Malformed bytes stay.
[[nodiscard]] std::string withoutControls(std::string_view utf8);
/// Escapes the same characters, and also line ends, tabs and backslashes, so that the text fits on
/// one line and can be recovered: `\t`, `\n`, `\r`, `\\`, `\u` and the four hexadecimal digits of a
/// character, `\x` and the two of a malformed byte.
[[nodiscard]] std::string escapedControls(std::string_view utf8);

/// Escapes all bytes except ASCII letters, digits and those in `kept` as "%" and two hexadecimal
/// digits.
[[nodiscard]] std::string percentEscaped(std::string_view text, std::string_view kept);

/// One byte per character; a character that the encoding lacks becomes "?".
[[nodiscard]] std::string macRomanFromUtf8(std::string_view text);
[[nodiscard]] std::string utf8FromMacRoman(std::string_view bytes);

/// Converts from an encoding that ICU knows by name, such as "UTF-16LE"; malformed input becomes
/// U+FFFD. Empty if there are 2 GiB or more, or if the encoding is unknown.
[[nodiscard]] std::string utf8FromEncoding(std::string_view bytes, const char* encoding);

/// The text of a raw one-byte code: empty for 0, U+FFFD from 128 up.
[[nodiscard]] std::string textOfCode(char code);

} // namespace platform
