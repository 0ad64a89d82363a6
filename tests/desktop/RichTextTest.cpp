// SPDX-License-Identifier: MIT
#include "desktop/text/RichText.h"

#include <QTextDocument>
#include <gtest/gtest.h>

namespace {

std::string shown(const QByteArray& rtf) {
    QTextDocument document(QStringLiteral("before"));
    desktop::showRTF(document, rtf);
    return document.toPlainText().toStdString();
}

TEST(RichText, ShowsTheTextOfItsControlWords) {
    struct {
        const char* rtf;
        const char* text;
    } const cases[] = {
        {R"({\rtf1\ansi One\par Two\par})", "One\nTwo"},
        {"{\\rtf1 a\nb\\line c\\tab d}", "ab\nc\td"},
        {R"({\rtf1 \{\\\}\~x})", "{\\} x"},
        {R"({\rtf1 \'95 \'e9\'80\'92\'9f\u8211? \u-4?x})", "• é€’Ÿ– \xEF\xBF\xBCx"},
        {R"({\rtf1\uc2\u233\'65?!{\uc0\u233 x}})", "é!éx"},
        {R"({\rtf1{\fonttbl{\f0 Helvetica;}}{\*\generator Some;}{\info{\title T}}x})", "x"},
        {R"({\rtf1\unknown12 x\fs-3\fs0\li99999999999999 y})", "xy"},
        {"no rich text", "before"},
        {"{\\rtf1 a}b", "a"},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(shown(one.rtf), one.text) << one.rtf;
    }
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
