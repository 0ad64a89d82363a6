// SPDX-License-Identifier: MIT
#include "platform/text/Text.h"

#include <fmt/format.h>
#include <unicode/brkiter.h>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/ucnv.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <memory>
#include <utility>

namespace platform {
namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";
constexpr char32_t replacementCode = 0xFFFD;

/// The number of ASCII bytes at the start, examined eight at a time.
std::size_t asciiPrefix(std::string_view text) {
    constexpr std::uint64_t highBits = 0x8080808080808080;
    std::size_t length = 0;
    for (std::uint64_t block = 0; length + sizeof block <= text.size(); length += sizeof block) {
        std::memcpy(&block, text.data() + length, sizeof block);
        if ((block & highBits) != 0) {
            break;
        }
    }
    while (length < text.size() && isAscii(text[length])) {
        ++length;
    }
    return length;
}

/// A decoded character and the number of its bytes. A malformed one decodes to U+FFFD and takes the
/// longest valid start of a character that is there, as Unicode recommends.
struct Character {
    char32_t code;
    std::size_t length;
    bool isWellFormed;
};

Character characterAt(std::string_view text, std::size_t index) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data()) + index;
    const auto available =
        static_cast<int>(std::min<std::size_t>(text.size() - index, U8_MAX_LENGTH));
    int length = 0;
    UChar32 code = 0;
    U8_NEXT(bytes, length, available, code);
    return {code < 0 ? replacementCode : static_cast<char32_t>(code),
            static_cast<std::size_t>(length), code >= 0};
}

std::int64_t utf16Units(const Character& character) {
    return character.code > 0xFFFF ? 2 : 1;
}

void append(std::string& text, char32_t code) {
    std::array<char, U8_MAX_LENGTH> bytes{};
    std::size_t length = 0;
    U8_APPEND_UNSAFE(bytes.data(), length, static_cast<UChar32>(code));
    text.append(bytes.data(), length);
}

/// Runs an ICU conversion, which counts bytes in 32 bits, on text of any length.
template <typename Convert>
std::string converted(std::string_view text, Convert convert) {
    constexpr std::size_t longestPiece = std::numeric_limits<std::int32_t>::max();
    std::string result;
    result.reserve(text.size());
    icu::StringByteSink<std::string> sink(&result);
    while (!text.empty()) {
        std::size_t length = std::min(text.size(), longestPiece);
        for (int back = 0; length < text.size() && U8_IS_TRAIL(text[length]) && back < 3; ++back) {
            --length;
        }
        UErrorCode status = U_ZERO_ERROR;
        convert(icu::StringPiece(text.data(), static_cast<std::int32_t>(length)), sink, status);
        text.remove_prefix(length);
    }
    return result;
}

/// The code points of bytes 128 to 255; below that, Mac OS Roman is ASCII.
using MacRomanTable = std::array<char32_t, 128>;

const MacRomanTable& macRomanTable() {
    static const MacRomanTable table = [] {
        std::array<char, 128> bytes{};
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            bytes[i] = static_cast<char>(128 + i);
        }
        std::array<UChar, 128> units{};
        UErrorCode status = U_ZERO_ERROR;
        UConverter* const converter = ucnv_open("macintosh", &status);
        ucnv_toUChars(converter, units.data(), units.size(), bytes.data(), bytes.size(), &status);
        ucnv_close(converter);
        MacRomanTable codes{};
        std::copy(units.begin(), units.end(), codes.begin());
        return codes;
    }();
    return table;
}

/// Whether a character could alter how the text around it is shown.
bool isControl(char32_t code) {
    const auto point = static_cast<UChar32>(code);
    return u_charType(point) == U_CONTROL_CHAR ||
           u_hasBinaryProperty(point, UCHAR_BIDI_CONTROL) != 0;
}

/// The first grapheme boundary at or after `index`, which must be between two characters.
std::size_t graphemeBoundary(std::string_view text, std::size_t index) {
    constexpr std::size_t longest = std::numeric_limits<std::int32_t>::max();
    text = text.substr(0, longest);
    const bool isPlain = index > 0 && index < text.size() && isAscii(text[index - 1]) &&
                         isAscii(text[index]) && text[index] != '\n';
    if (isPlain || index == 0 || index >= text.size()) {
        return index;
    }
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> graphemes(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    UText view = UTEXT_INITIALIZER;
    utext_openUTF8(&view, text.data(), static_cast<std::int64_t>(text.size()), &status);
    if (U_FAILURE(status)) {
        return index;
    }
    graphemes->setText(&view, status);
    const auto position = static_cast<std::int32_t>(index);
    const std::int32_t boundary =
        graphemes->isBoundary(position) ? position : graphemes->following(position);
    utext_close(&view);
    return boundary < 0 ? text.size() : static_cast<std::size_t>(boundary);
}

std::string caseFolded(std::string_view text) {
    return converted(text,
                     [](const icu::StringPiece& piece, icu::ByteSink& sink, UErrorCode& status) {
                         icu::CaseMap::utf8Fold(0, piece, sink, nullptr, status);
                     });
}

/// Letters lose their marks, and those without a decomposition become the ASCII letters that stand
/// for them. `kept` says what becomes of every other character beyond ASCII.
template <typename Kept>
std::string withoutMarks(std::string_view text, Kept kept) {
    if (isAscii(text)) {
        return std::string(text);
    }
    // Letters and signs that have no decomposition.
    static constexpr std::pair<char32_t, std::string_view> letters[] = {
        {U'Æ', "AE"}, {U'æ', "ae"}, {U'Œ', "OE"}, {U'œ', "oe"}, {U'Ø', "O"}, {U'ø', "o"},
        {U'Ł', "L"},  {U'ł', "l"},  {U'Đ', "D"},  {U'đ', "d"},  {U'Ð', "D"}, {U'ð', "d"},
        {U'Þ', "TH"}, {U'þ', "th"}, {U'ß', "ss"}, {U'ı', "i"},  {U'ʻ', "'"}, {U'ʼ', "'"},
        {U'’', "'"},  {U'‘', "'"},  {U'–', "-"},  {U'—', "-"},
    };
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* form = icu::Normalizer2::getNFKDInstance(status);
    std::string decomposed;
    if (form != nullptr) {
        decomposed = converted(text, [&](auto piece, auto& sink, auto& fault) {
            form->normalizeUTF8(0, piece, sink, nullptr, fault);
        });
    }
    std::string result;
    for (std::size_t at = 0; at < decomposed.size();) {
        const Character character = characterAt(decomposed, at);
        const auto bytes = std::string_view(decomposed).substr(at, character.length);
        at += character.length;
        const auto* const letter = std::ranges::find(letters, character.code,
                                                     &std::pair<char32_t, std::string_view>::first);
        if (character.code < 0x80) {
            result += static_cast<char>(character.code);
        } else if (letter != std::end(letters)) {
            result += letter->second;
        } else if (u_charType(static_cast<UChar32>(character.code)) != U_NON_SPACING_MARK) {
            result += kept(bytes);
        }
    }
    return result;
}

} // namespace

bool isAscii(std::string_view bytes) {
    return asciiPrefix(bytes) == bytes.size();
}

bool isValidUtf8(std::string_view bytes) {
    for (std::size_t i = asciiPrefix(bytes); i < bytes.size(); i += asciiPrefix(bytes.substr(i))) {
        const Character character = characterAt(bytes, i);
        if (!character.isWellFormed) {
            return false;
        }
        i += character.length;
    }
    return true;
}

std::string repairedUtf8(std::string_view bytes) {
    if (isValidUtf8(bytes)) {
        return std::string(bytes);
    }
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        const Character character = characterAt(bytes, i);
        text += character.isWellFormed ? bytes.substr(i, character.length) : replacementCharacter;
        i += character.length;
    }
    return text;
}

std::string lowerCased(std::string_view text) {
    if (isAscii(text)) {
        std::string lower(text);
        std::ranges::transform(lower, lower.begin(), asciiLower);
        return lower;
    }
    return converted(text,
                     [](const icu::StringPiece& piece, icu::ByteSink& sink, UErrorCode& status) {
                         icu::CaseMap::utf8ToLower("", 0, piece, sink, nullptr, status);
                     });
}

bool equalIgnoringCase(std::string_view one, std::string_view other) {
    if (isAscii(one) && isAscii(other)) {
        return std::ranges::equal(one, other, {}, asciiLower, asciiLower);
    }
    return caseFolded(one) == caseFolded(other);
}

std::string inAsciiLetters(std::string_view text) {
    return withoutMarks(text, [](std::string_view) { return std::string_view(" "); });
}

std::string folded(std::string_view text) {
    if (isAscii(text)) {
        return lowerCased(text);
    }
    return caseFolded(withoutMarks(text, [](std::string_view character) { return character; }));
}

std::int64_t utf16Length(std::string_view text) {
    auto units = static_cast<std::int64_t>(asciiPrefix(text));
    for (auto i = static_cast<std::size_t>(units); i < text.size();) {
        const Character character = characterAt(text, i);
        units += utf16Units(character);
        i += character.length;
    }
    return units;
}

std::string_view wholeCharacterPrefix(std::string_view text, std::int64_t units) {
    std::size_t index = 0;
    while (units > 0 && index < text.size()) {
        const Character character = characterAt(text, index);
        units -= utf16Units(character);
        index += character.length;
    }
    return text.substr(0, graphemeBoundary(text, index));
}

std::string_view trimmed(std::string_view text) {
    const auto isBlank = [](const Character& character) {
        return u_isUWhiteSpace(static_cast<UChar32>(character.code)) != 0;
    };
    while (!text.empty()) {
        const Character first = characterAt(text, 0);
        if (!isBlank(first)) {
            break;
        }
        text.remove_prefix(first.length);
    }
    while (!text.empty()) {
        std::size_t start = text.size() - 1;
        while (start > 0 && text.size() - start < 3 && U8_IS_TRAIL(text[start])) {
            --start;
        }
        const Character last = characterAt(text, start);
        if (start + last.length != text.size() || !isBlank(last)) {
            break;
        }
        text.remove_suffix(last.length);
    }
    return text;
}

std::string withoutControls(std::string_view utf8) {
    std::string shown;
    shown.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();) {
        const Character character = characterAt(utf8, i);
        const bool isLineEndOrTab =
            character.code == '\n' || character.code == '\r' || character.code == '\t';
        if (isLineEndOrTab || !isControl(character.code)) {
            shown += utf8.substr(i, character.length);
        }
        i += character.length;
    }
    return shown;
}

std::string escapedControls(std::string_view utf8) {
    std::string text;
    text.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();) {
        const Character character = characterAt(utf8, i);
        const auto bytes = utf8.substr(i, character.length);
        i += character.length;
        if (!character.isWellFormed) {
            for (const char byte : bytes) {
                text += fmt::format("\\x{:02x}", static_cast<unsigned char>(byte));
            }
        } else if (character.code == '\\') {
            text += "\\\\";
        } else if (character.code == '\t') {
            text += "\\t";
        } else if (character.code == '\n') {
            text += "\\n";
        } else if (character.code == '\r') {
            text += "\\r";
        } else if (isControl(character.code)) {
            text += fmt::format("\\u{:04x}", static_cast<std::uint32_t>(character.code));
        } else {
            text += bytes;
        }
    }
    return text;
}

std::string percentEscaped(std::string_view text, std::string_view kept) {
    const auto isKept = [kept](char byte) {
        const char lower = asciiLower(byte);
        return (lower >= 'a' && lower <= 'z') || (byte >= '0' && byte <= '9') ||
               kept.find(byte) != kept.npos;
    };
    std::string escaped;
    for (const char byte : text) {
        escaped += isKept(byte) ? std::string(1, byte)
                                : fmt::format("%{:02X}", static_cast<unsigned char>(byte));
    }
    return escaped;
}

std::string macRomanFromUtf8(std::string_view text) {
    const MacRomanTable& table = macRomanTable();
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const Character character = characterAt(text, i);
        i += character.length;
        if (character.code < 0x80) {
            bytes += static_cast<char>(character.code);
            continue;
        }
        const auto found = std::ranges::find(table, character.code);
        bytes += found == table.end() ? '?' : static_cast<char>(128 + (found - table.begin()));
    }
    return bytes;
}

std::string utf8FromMacRoman(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        append(text, code < 0x80 ? code : macRomanTable()[code - 0x80]);
    }
    return text;
}

std::string utf8FromEncoding(std::string_view bytes, const char* encoding) {
    std::string text;
    if (bytes.size() <= std::numeric_limits<std::int32_t>::max()) {
        const auto length = static_cast<std::int32_t>(bytes.size());
        icu::UnicodeString(bytes.data(), length, encoding).toUTF8String(text);
    }
    return text;
}

std::string textOfCode(char code) {
    if (code == 0) {
        return {};
    }
    return isAscii(code) ? std::string(1, code) : std::string(replacementCharacter);
}

} // namespace platform
