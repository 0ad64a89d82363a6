// SPDX-License-Identifier: MIT
#include "catalogue/NamedStations.h"
#include "tests/support/Stations.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace catalogue {
namespace {

/// "KJFK(JFK) KXYZ? | 12 foo +3": the stations, those that the catalogue lacks with a question
/// mark; the words left out; the number beyond.
std::string summary(const NamedStations& list) {
    std::string text;
    for (const auto& [identifier, code, station] : list.stations) {
        text += identifier + (code.empty() ? "" : "(" + code + ")") + (station ? " " : "? ");
    }
    text += "|";
    for (const std::string& word : list.leftOut) {
        text += " " + word;
    }
    return text + (list.beyond > 0 ? fmt::format(" +{}", list.beyond) : "");
}

TEST(NamedStations, IsReadHoweverItIsWritten) {
    const auto catalogue = makeCollection({{"KJFK"}, {"EGLL"}, {"K8A0"}, {"EDDF"}, {"    "}});
    const char* const codes[] = {"JFK ", "LHR ", "    ", "FRA ", "NON "};
    for (std::size_t i = 0; i < std::size(codes); ++i) {
        (*catalogue->stations)[i]->IATA = codes[i];
    }
    const struct {
        const char* text;
        const char* stations;
    } cases[] = {
        {"", "|"},
        {" ,;-\n", "|"},
        {"KJFK EGLL", "KJFK EGLL |"},
        {"kjfk,egll;K8a0", "KJFK EGLL K8A0 |"},
        {"KJFK-EGLL/EDDF\r\n\t(K8A0)", "KJFK EGLL EDDF K8A0 |"},
        {"KJFK→EGLL – EDDF\u00a0“k8a0”", "KJFK EGLL EDDF K8A0 |"},
        {"lhr jfk KJFK LHR EGLL", "EGLL(LHR) KJFK(JFK) |"},
        {"kxyz, KJFK KXYZ", "KXYZ? KJFK |"},
        {"to KJFK at 1200 and 1200 AND 0300Z", "KJFK | to at 1200 and AND 0300Z"},
        {"NON XXX KJFKX ÉGLL 東京 KJF\u0301K", "| NON XXX KJFKX ÉGLL 東京 KJF\u0301K"},
    };
    for (const auto& [text, stations] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(summary(namedStations(text, catalogue.get())), stations);
    }
    EXPECT_EQ(summary(namedStations("KJFK JFK", nullptr)), "KJFK? | JFK");
}

TEST(NamedStations, EndsAtItsLimitAndCountsTheRestOnce) {
    std::string text;
    for (int i = 0; i < 120; ++i) {
        text += fmt::format("K{:03} ", i);
    }
    const NamedStations list = namedStations(text + text, nullptr);
    ASSERT_EQ(list.stations.size(), NamedStations::mostStations);
    EXPECT_EQ(list.stations.back().identifier, "K099");
    EXPECT_EQ(list.beyond, 20U);
}

} // namespace
} // namespace catalogue
