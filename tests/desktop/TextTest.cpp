// SPDX-License-Identifier: MIT
#include "desktop/Controls.h"
#include "desktop/FadingLabel.h"

#include <gtest/gtest.h>

namespace {

TEST(Text, ShowsNothingThatDisguisesIt) {
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

TEST(Text, OfLabelsAndPanesIsPlain) {
    const std::string text = "<h1>x\u202e</h1>\n&amp;";
    QLabel label;
    desktop::Label(label).setText(text);
    QLabel fading;
    desktop::FadingLabel(fading).setText(text);
    for (const QLabel* one : {&label, &fading}) {
        EXPECT_EQ(one->text(), QStringLiteral("<h1>x</h1> &amp;"));
        EXPECT_EQ(one->textFormat(), Qt::PlainText);
    }
    QPlainTextEdit pane;
    desktop::TextPane(pane).setString(text);
    EXPECT_EQ(pane.toPlainText(), QStringLiteral("<h1>x</h1>\n&amp;"));
}

} // namespace
