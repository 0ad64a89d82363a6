// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// Text is UTF-8. Where a length or a position is meant, it counts UTF-16 units, as the formats
/// and contracts of the program do.
namespace platform {

[[nodiscard]] constexpr bool isAscii(char byte) {
    return static_cast<unsigned char>(byte) < 0x80;
}
[[nodiscard]] bool isAscii(std::string_view bytes);
/// A letter from A to Z in lower case; any other byte as it is.
[[nodiscard]] constexpr char asciiLower(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

[[nodiscard]] bool isValidUtf8(std::string_view bytes);
/// Each byte sequence that is not UTF-8 becomes one U+FFFD, cut as Unicode recommends.
[[nodiscard]] std::string repairedUtf8(std::string_view bytes);

/// Unicode's default lower-casing, independent of the locale.
[[nodiscard]] std::string lowerCased(std::string_view text);
[[nodiscard]] bool equalIgnoringCase(std::string_view one, std::string_view other);

[[nodiscard]] std::int64_t utf16Length(std::string_view text);
/// The first `units` UTF-16 units, widened so that no user-perceived character is cut.
[[nodiscard]] std::string_view wholeCharacterPrefix(std::string_view text, std::int64_t units);

/// Without white space and line ends at both ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// Text as it may be shown: control characters other than line ends and tabs, and characters that
/// change the direction of writing, are dropped. Both kinds as Unicode has them (Cc, and
/// Bidi_Control); the line ends that stay are LF and CR. Bytes that are not UTF-8 stay as they are.
[[nodiscard]] std::string withoutControls(std::string_view utf8);
/// The same characters, line ends, tabs and backslashes escaped instead, so that the text stands on
/// one line and can be had back: `\t`, `\n`, `\r`, `\\`, `\u` and the four hexadecimal digits of a
/// character, `\x` and the two of a byte that is not UTF-8.
[[nodiscard]] std::string escapedControls(std::string_view utf8);

/// All bytes but ASCII letters, digits and those of `kept` as "%" and two hexadecimal digits.
[[nodiscard]] std::string percentEscaped(std::string_view text, std::string_view kept);

/// One character a byte; a character that the encoding lacks becomes "?".
[[nodiscard]] std::string macRomanFromUtf8(std::string_view text);
[[nodiscard]] std::string utf8FromMacRoman(std::string_view bytes);

/// From an encoding that ICU knows by name, such as "UTF-16LE"; what is malformed becomes U+FFFD.
/// Nothing for bytes beyond 2 GiB or an encoding that is unknown.
[[nodiscard]] std::string utf8FromEncoding(std::string_view bytes, const char* encoding);

/// The text of a raw one-byte code: nothing for 0, U+FFFD from 128 up.
[[nodiscard]] std::string textOfCode(char code);

} // namespace platform
