// SPDX-License-Identifier: MIT
#include "catalogue/Suggestions.h"
#include "tests/support/Stations.h"

#include <gtest/gtest.h>

namespace {

using catalogue::SearchField;
using Lines = std::vector<std::string>;

class Suggestions : public testing::Test {
protected:
    Suggestions() {
        const auto airport = [this](std::size_t row, const char* code, const char* facts) {
            auto& station = *stations->stations->at(row);
            station.IATA = code;
            station.aviationFlag = facts[0];
            station.METAR = facts[1];
            station.plottingPriority = facts[2];
        };
        airport(0, "LOZ ", " X ");
        airport(1, "    ", "U  ");
        airport(2, "LHR ", "TX0");
        airport(3, "LGW ", " X9");
        airport(4, "JFK ", "TX1");
        airport(6, "ORD ", "TX0");
    }
    [[nodiscard]] Lines linesFor(const std::string& text) const {
        Lines lines;
        for (const auto& one : catalogue::SuggestionIndex(stations.get()).find(text)) {
            lines.push_back(catalogue::suggestionLine(one));
        }
        return lines;
    }

    std::shared_ptr<AviationWeatherStationCollection> stations =
        makeCollection({{"KLOZ", "LONDON-CORBIN   ", "KENTUCKY  "},
                        {"EGRB", "LONDON WEATHER  ", "UNITED KINGDOM  "},
                        {"EGLL", "LONDON/HEATHROW ", "UNITED KINGDOM  "},
                        {"EGKK", "LONDON/GATWICK  ", "UNITED KINGDOM  "},
                        {"KJFK", "NEW YORK/JF KENN", "NEW YORK  "},
                        {"JFKX", "CAPE JFK        ", "FLORIDA  "},
                        {"KORD", "CHICAGO/O'HARE  ", "ILLINOIS  "},
                        {"FAEL", "EAST LONDON ARPT", "SOUTH AFRICA  "},
                        {"BLON", "LONDONDERRY     ", "IRELAND  "},
                        {"ALON", "NEWLONDON       ", "IRELAND  "},
                        {"ESSA", "MALMÖ           ", "SWEDEN  "},
                        {"LLBG", "תל אביב         ", "ISRAEL  "},
                        {"    ", "DALES           ", "IRELAND  "},
                        {"ZUL9", "LONDON-A 90Z    ", "CHAD  "},
                        {{}, {}, {}}});
};

TEST_F(Suggestions, ComeInTheOrderOfTheirLikelihood) {
    const std::string jfk = "JFK → KJFK NEW YORK/JF KENN · IATA";
    struct {
        const char* text;
        Lines lines;
    } const rows[] = {
        {"egll", {"EGLL  LONDON/HEATHROW · ICAO"}},
        {" EGLL ", {"EGLL  LONDON/HEATHROW · ICAO"}},
        // The code itself, then an identifier that begins with it, then a name.
        {"jfk", {jfk, "JFKX  CAPE JFK · ICAO"}},
        {"jf", {"JFKX  CAPE JFK · ICAO", jfk}},
        // Whole words at the start of a name, elsewhere, the start of a word, inside; within these,
        // those that issue TAFs first, then those that report METARs, then by priority.
        {"london",
         {"EGLL  LONDON/HEATHROW · name", "EGRB  LONDON WEATHER · name",
          "EGKK  LONDON/GATWICK · name", "KLOZ  LONDON-CORBIN · name", "ZUL9  LONDON-A 90Z · name",
          "FAEL  EAST LONDON ARPT · name", "BLON  LONDONDERRY · name", "ALON  NEWLONDON · name"}},
        // The same for the worst of words that stand elsewhere.
        {"a london",
         {"ZUL9  LONDON-A 90Z · name", "FAEL  EAST LONDON ARPT · name",
          "EGLL  LONDON/HEATHROW · name", "EGRB  LONDON WEATHER · name",
          "EGKK  LONDON/GATWICK · name"}},
        {"london web", {}},
        {"0", {"ZUL9  LONDON-A 90Z · name"}},
        {"9", {"ZUL9  LONDON-A 90Z · name"}},
        {"z", {"ZUL9  LONDON-A 90Z · ICAO"}},
        {"ohare", {"KORD  CHICAGO/O'HARE · name"}},
        {"o’hare", {"KORD  CHICAGO/O'HARE · name"}},
        {"malmo", {"ESSA  MALMÖ · name"}},
        {"Malmø", {"ESSA  MALMÖ · name"}},
        {"אביב", {"LLBG  תל אביב · name"}},
        {"new york", {"KJFK  NEW YORK/JF KENN · name", "NEW YORK · region"}},
        {"IRELAND", {"IRELAND · region"}},
        // At most eight, of which two are kept for regions.
        {"e",
         {"EGLL  LONDON/HEATHROW · ICAO", "EGRB  LONDON WEATHER · ICAO",
          "FAEL  EAST LONDON ARPT · name", "KORD  CHICAGO/O'HARE · name",
          "KJFK  NEW YORK/JF KENN · name", "JFKX  CAPE JFK · name", "KENTUCKY · region",
          "UNITED KINGDOM · region"}},
        {"", {}},
        {" ,/'", {}},
        {"\xFF", {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(linesFor(row.text), row.lines);
    }
    EXPECT_TRUE(catalogue::SuggestionIndex(nullptr).find("egll").empty());
}

TEST_F(Suggestions, AreSearchedForByTheirRarestPart) {
    struct {
        const char* text;
        SearchField field;
        const char* term;
        Lines found;
    } const rows[] = {
        {"egll", SearchField::identifiers, "EGLL", {"EGLL"}},
        {"jfk", SearchField::identifiers, "KJFK", {"KJFK"}},
        {"heathrow", SearchField::names, "LONDON/HEATHROW", {"EGLL"}},
        {"london weather", SearchField::names, "WEATHER", {"EGRB"}},
        {"east london", SearchField::names, "EAST", {"FAEL"}},
        {"dales", SearchField::names, "DALES", {"    "}},
        {"kingdom", SearchField::regions, "KINGDOM", {"EGRB", "EGLL", "EGKK"}},
        {"ireland", SearchField::regions, "IRELAND", {"BLON", "ALON", "    "}},
    };
    const catalogue::SuggestionIndex index(stations.get());
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        const auto suggestions = index.find(row.text);
        ASSERT_FALSE(suggestions.empty());
        const auto [field, term] = catalogue::searchFor(suggestions.front(), *stations);
        EXPECT_EQ(field, row.field);
        EXPECT_EQ(term, row.term);
        EXPECT_EQ(identifiers(catalogue::stationsWith(term, field, *stations)), row.found);
    }
}

} // namespace
