// SPDX-License-Identifier: MIT
#include "platform/text/Text.h"

#include <gtest/gtest.h>

using namespace platform;

namespace {

const std::string flagOfFrance = "\U0001F1EB\U0001F1F7";
const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";

TEST(Text, BrokenUtf8BecomesReplacementCharacters) {
    const struct {
        std::string bytes, repaired;
    } rows[] = {
        {"Z\u00FCrich \U0001F6E9 plain text to the end",
         "Z\u00FCrich \U0001F6E9 plain text to the end"},
        {"only ascii first \xFF then more", "only ascii first \uFFFD then more"},
        {"\xE2\x82", "\uFFFD"},                           // cut short
        {"\xC0\xAF", "\uFFFD\uFFFD"},                     // overlong
        {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},           // a surrogate
        {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"}, // beyond Unicode
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.repaired);
        EXPECT_EQ(repairedUtf8(row.bytes), row.repaired);
        EXPECT_EQ(isValidUtf8(row.bytes), row.bytes == row.repaired);
        EXPECT_EQ(utf16Length(row.bytes), utf16Length(row.repaired));
    }
}

TEST(Text, LowerCasesByTheUnicodeDefault) {
    EXPECT_EQ(lowerCased("KJFK @[`{ 1"), "kjfk @[`{ 1");
    EXPECT_EQ(lowerCased("Z\u00DCRICH \u0130"), "z\u00FCrich i\u0307");
    EXPECT_EQ(lowerCased("\u03A3\u039F\u03A3"), "\u03C3\u03BF\u03C2");
    EXPECT_TRUE(equalIgnoringCase("\u03C3\u03BF\u03C2", "\u03A3\u039F\u03A3"));
    EXPECT_TRUE(equalIgnoringCase("STRASSE", "stra\u00DFe"));
    EXPECT_FALSE(equalIgnoringCase("KJFK", "KJF"));
}

TEST(Text, PrefixNeverCutsACharacter) {
    const struct {
        std::string text;
        std::int64_t units;
        std::string prefix;
    } rows[] = {
        {"abc", 9, "abc"},
        {"abc", -4, ""},
        {"e\u0301a", 1, "e\u0301"},
        {"a\U0001F6E9b", 2, "a\U0001F6E9"},
        {flagOfFrance + flagOfFrance, 4, flagOfFrance},
        {family + "x", 3, family},
        {"\xFF\xFFz", 1, "\xFF"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(wholeCharacterPrefix(row.text, row.units), row.prefix);
    }
    EXPECT_EQ(utf16Length("a\U0001F6E9\u00E9"), 4);
    EXPECT_EQ(textOfCode('\0'), "");
    EXPECT_EQ(textOfCode('\x80'), "\uFFFD");
}

TEST(Text, TrimsEveryKindOfBlankAtBothEnds) {
    EXPECT_EQ(trimmed(" \t\r\n\u00A0\u2003\u3000\u0085 a b\u2028\u2029 \v\f"), "a b");
    EXPECT_EQ(trimmed("\x80 a \x80"), "\x80 a \x80");
}

TEST(Text, ControlsAndChangesOfDirectionAreDroppedOrEscaped) {
    const struct {
        std::string text, shown, escaped;
    } rows[] = {
        {"S\u00C3O PAULO \U0001F6EB 7\u00B0", "S\u00C3O PAULO \U0001F6EB 7\u00B0",
         "S\u00C3O PAULO \U0001F6EB 7\u00B0"},
        {"a\tb\r\nc\\", "a\tb\r\nc\\", "a\\tb\\r\\nc\\\\"},
        {std::string("\0\a\x1b[2J\x7f", 7), "[2J", "\\u0000\\u0007\\u001b[2J\\u007f"},
        {"\xC2\x80\xC2\x9F\u00A0", "\u00A0", "\\u0080\\u009f\u00A0"},
        {"\u200E\u200F\u061C\u202A\u202E|\u2066\u2069", "|",
         "\\u200e\\u200f\\u061c\\u202a\\u202e|\\u2066\\u2069"},
        {"\u200D\u2029\u202F\u2065\u206A", "\u200D\u2029\u202F\u2065\u206A",
         "\u200D\u2029\u202F\u2065\u206A"},
        {"\xE2\x80\x9B\xE2\x80", "\xE2\x80\x9B\xE2\x80", "\xE2\x80\x9B\\xe2\\x80"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.escaped);
        EXPECT_EQ(withoutControls(row.text), row.shown);
        EXPECT_EQ(escapedControls(row.text), row.escaped);
    }
}

} // namespace
