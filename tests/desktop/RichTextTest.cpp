// SPDX-License-Identifier: MIT
#include "desktop/RichText.h"

#include <QFile>
#include <QTextBlock>
#include <QTextDocument>
#include <gtest/gtest.h>

namespace {

std::string shown(const QByteArray& rtf) {
    QTextDocument document(QStringLiteral("before"));
    desktop::showRTF(document, rtf);
    return document.toPlainText().toStdString();
}

TEST(RichText, ShowsTheTextOfItsWords) {
    struct {
        const char* rtf;
        const char* text;
    } const cases[] = {
        {R"({\rtf1\ansi One\par Two\par})", "One\nTwo"},
        {R"({\rtf1 One\par\par Two})", "One\n\nTwo"},
        {"{\\rtf1 a\nb\\line c\\tab d}", "ab\nc\td"},
        {R"({\rtf1 \{\\\}\~x})", "{\\} x"},
        {R"({\rtf1 \'95 \'e9\'80\'92\'9f\u8211? \u-4?x})", "• é€’Ÿ– \xEF\xBF\xBCx"},
        {R"({\rtf1\uc2\u233\'65?!{\uc0\u233 x}})", "é!éx"},
        {R"({\rtf1{\fonttbl{\f0 Helvetica;}}{\*\generator Some;}{\info{\title T}}x})", "x"},
        {R"({\rtf1\unknown12 x\fs-3\fs0\li99999999999999 y})", "xy"},
        {"no rich text", "before"},
        {"", "before"},
        {"{\\rtf1 a}b", "a"},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(shown(one.rtf), one.text) << one.rtf;
    }
}

TEST(RichText, GroupsTakeTheirStyleBack) {
    QTextDocument document;
    desktop::showRTF(document, R"({\rtf1\fs24 a{\b\i\fs36 b}c\par\pard\li360\fi-180 d\par})");
    const auto style = [&](int position) {
        QTextCursor cursor(&document);
        cursor.setPosition(position + 1);
        return cursor.charFormat();
    };
    EXPECT_EQ(style(0).fontPointSize(), 12);
    EXPECT_EQ(style(1).fontPointSize(), 18);
    EXPECT_TRUE(style(1).fontItalic());
    EXPECT_EQ(style(1).fontWeight(), QFont::Bold);
    EXPECT_FALSE(style(2).fontItalic());
    EXPECT_EQ(style(2).fontPointSize(), 12);
    EXPECT_EQ(document.lastBlock().blockFormat().leftMargin(), 18);
    EXPECT_EQ(document.lastBlock().blockFormat().textIndent(), -9);
}

TEST(RichText, BrokenTextIsShownAsFarAsItGoes) {
    const QByteArray whole = R"({\rtf1{\fonttbl{\f0 X;}}\fs24 {\b a}\'e9\u8211\'96\li20 end\par})";
    for (int length = 0; length <= whole.size(); ++length) {
        QByteArray cut = whole.left(length);
        EXPECT_LE(shown(cut).size(), 12U);
        cut.append('\0').append(QByteArray(200'000, '{')).append("\\'");
        shown(cut);
    }
}

} // namespace
