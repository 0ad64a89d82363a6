// SPDX-License-Identifier: MIT
#include "desktop/controls/Controls.h"

#include <gtest/gtest.h>

namespace {

TEST(Text, ShowsNoCharacterThatDisguisesIt) {
    struct {
        const char* name;
        std::string_view text;
        const char* line;
        const char* lines;
    } const cases[] = {
        {"plain", " a~", " a~", " a~"},
        {"line ends and tabs", "a\nb\r\nc\td\u2028e\u2029f", "a b  c d e f",
         "a\nb\r\nc\td\u2028e\u2029f"},
        {"C0, DEL and C1", {"a\0\x1b[31m\x7f\u0085\u009b\v\fb", 15}, "a[31mb", "a[31mb"},
        {"direction", "a\u061c\u202eb\u2069\u200d", "ab\u200d", "ab\u200d"},
        {"no UTF-8", "a\xff\xc3", "a\uFFFD\uFFFD", "a\uFFFD\uFFFD"},
        {"none", "", "", ""},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        EXPECT_EQ(desktop::shownText(one.text), QString::fromUtf8(one.line));
        EXPECT_EQ(desktop::shownLines(one.text), QString::fromUtf8(one.lines));
        EXPECT_EQ(desktop::exactText(one.text),
                  QString::fromUtf8(one.text.data(), static_cast<qsizetype>(one.text.size())));
    }
}

} // namespace
