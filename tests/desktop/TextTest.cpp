// SPDX-License-Identifier: MIT
#include "desktop/text/Text.h"
#include "desktop/text/RichText.h"

#include <QTextDocument>
#include <gtest/gtest.h>

#include <utility>

namespace {

TEST(Text, OnOneLineHasNeitherLineEndsNorControls) {
    const std::pair<std::string_view, const char*> cases[] = {
        {" a~", " a~"},
        {"a\nb\r\nc\td\u2028e\u2029f", "a b  c d e f"},
        {"a\x1b[31m\x7f\u202eb", "a[31mb"},
        {"a\x7f", "a"},
        {"a\xff\xc3", "a\uFFFD\uFFFD"},
    };
    for (const auto& [text, line] : cases) {
        EXPECT_EQ(desktop::shownText(text), line) << line;
    }
}

std::string textOf(const QByteArray& rtf) {
    QTextDocument document("before");
    desktop::showRTF(document, rtf);
    return document.toPlainText().toStdString();
}

TEST(RichText, ShowsTheTextOfItsControlWords) {
    const std::pair<const char*, const char*> cases[] = {
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
    for (const auto& [rtf, text] : cases) {
        EXPECT_EQ(textOf(rtf), text) << rtf;
    }
}

} // namespace
