// SPDX-License-Identifier: MIT
#include "platform/text/XMLParser.h"
#include "tests/support/TemporaryFolder.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <functional>
#include <span>
#include <string>

namespace platform {
namespace {

/// Records the events on one line: "<name" for a start, "name>" for an end, text in quotes.
struct Transcript final : XMLParserDelegate {
    void parser_didStartElement(std::string_view name) override {
        line += "<" + std::string(name) + " ";
    }
    void parser_foundCharacters(std::string_view text) override {
        line += "'" + std::string(text) + "' ";
        characters += text.size();
    }
    void parser_didEndElement(std::string_view name) override { line += std::string(name) + "> "; }

    std::string line;
    std::size_t characters = 0;
};

bool parse(std::string_view document, Transcript& transcript) {
    return parseXML(std::as_bytes(std::span(document)), transcript);
}

TEST(XMLParser, ReportsLocalNamesAndJoinedCharacters) {
    const support::TemporaryFolder folder;
    const std::string secret = folder.write("secret", "secret").string();
    const struct {
        std::string_view document;
        bool isWhole;
        std::string_view events;
    } cases[] = {
        {"<a><b>x</b>\n  <b/></a>", true, "<a <b 'x' b> '\n  ' <b b> a> "},
        {"<p:a xmlns:p='urn:x' xmlns='urn:y'><b p:c='d'/></p:a>", true, "<a <b b> a> "},
        {"<a>1 &lt; 2 <![CDATA[& <b>]]>&#65;<!-- -->&#x1F6EB;<?pi?>!</a>", true,
         "<a '1 < 2 & <b>A\U0001F6EB!' a> "},
        {"<!DOCTYPE a [<!ENTITY e 'in <b>side</b>'>]><a>&e;.</a>", true,
         "<a 'in ' <b 'side' b> '.' a> "},
        {"<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</a>", true, "<a '\u00E9' a> "},
        {{"\xFF\xFE<\0a\0/\0>\0", 10}, true, "<a a> "},
        {"<a>cut", false, "<a 'cut' "},
        {"<a>\xE9</a>", false, "<a "},
        {"<a>&unknown;</a>", false, "<a "},
        {"", false, ""},
    };
    for (const auto& [document, isWhole, events] : cases) {
        SCOPED_TRACE(document);
        Transcript transcript;
        EXPECT_EQ(parse(document, transcript), isWhole);
        EXPECT_EQ(transcript.line, events);
    }
    Transcript outside;
    parse("<!DOCTYPE a [<!ENTITY e SYSTEM 'file://" + secret + "'>]><a>&e;</a>", outside);
    EXPECT_EQ(outside.line, "<a a> ");
}

TEST(XMLParser, BoundsWhatHostileDocumentsCost) {
    const auto series = [](int length, const std::function<std::string(int)>& part) {
        std::string whole;
        for (int i = 0; i < length; ++i) {
            whole += part(i);
        }
        return whole;
    };
    const auto laugh = [](int i) {
        return fmt::format("<!ENTITY e{} '&e{};&e{};&e{};'>", i + 1, i, i, i);
    };
    const auto attribute = [](int i) { return fmt::format("<!ATTLIST a a{} CDATA 'x'>", i); };
    const auto nested = [&](int depth) {
        return series(depth, [](int) { return "<a>"; }) + series(depth, [](int) { return "</a>"; });
    };
    const std::string cases[] = {
        "<!DOCTYPE a [<!ENTITY e0 'ha'>" + series(29, laugh) + "]><a>&e29;</a>",
        "<!DOCTYPE a [<!ENTITY e '" + std::string(100'000, 'x') + "'>]><a>" +
            series(1000, [](int) { return "&e;"; }) + "</a>",
        "<!DOCTYPE a [" + series(10'000, attribute) + "]><a/>",
        "<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]><a>&e;</a>",
    };
    for (const std::string& document : cases) {
        SCOPED_TRACE(document.substr(0, 60));
        Transcript transcript;
        EXPECT_FALSE(parse(document, transcript));
        EXPECT_LE(transcript.characters, std::size_t{9} << 20);
        EXPECT_LE(transcript.line.size(), (std::size_t{9} << 20) + 3'000);
    }
    Transcript bearable;
    EXPECT_TRUE(parse(nested(1000), bearable));
    Transcript deep;
    EXPECT_FALSE(parse(nested(1001), deep));
    EXPECT_EQ(deep.line.find('>'), deep.line.npos);
}

} // namespace
} // namespace platform
