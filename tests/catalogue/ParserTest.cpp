// SPDX-License-Identifier: MIT
#include "catalogue/ListFile.h"
#include "catalogue/stationparser.h"
#include "tests/support/FakeHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <string>
#include <vector>

namespace {

using namespace std::string_literals;

const std::string sample =
    "ZZ SAMPLE FIELD     KZZQ ZZQ   72999   39 52N  104 40W 1656   X     T     A    7 US";

/// `line` with `text` written over it from `column` on.
std::string with(std::size_t column, const std::string& text, std::string line = sample) {
    return line.replace(column, text.size(), text);
}

class StationParser : public testing::Test {
protected:
    std::shared_ptr<stationparser> parse(const std::optional<std::string>& text) {
        auto parser = stationparser::initWithNSString(host.notificationCenter, host.log, text);
        parser->main();
        return parser;
    }

    std::shared_ptr<AviationWeatherStation> station(const std::string& line) {
        const auto parser = parse("!\n" + line + "\n\n\n" + std::string(90, '0'));
        EXPECT_EQ(parser->stationArray()->size(), 1U);
        return parser->stationArray()->at(0);
    }

    [[nodiscard]] auto timesErred() const {
        return std::ranges::count(host.log.lines(), "Errored out");
    }

    support::FakeHost host;
};

TEST_F(StationParser, ReadsEachFieldFromItsOwnColumnsOnly) {
    // No two neighbouring columns hold the same character.
    const std::string line =
        "ABcDEFGHIJKLMNOPQRStUVWXyZabdef123456hi67j18Skl123m24W98760nopqrstuvwxyz!#"
        "$%&()*+,-/";
    const auto parser =
        parse("! list\n\nSOMEWHERE NICE     19-DEC-18\nCD  STATION\n" + line + "\n");
    ASSERT_TRUE(parser->theCollection());
    EXPECT_EQ(parser->theCollection()->stations, parser->stationArray());
    EXPECT_FALSE(parser->error());
    ASSERT_EQ(parser->stationArray()->size(), 1U);
    const auto& station = *parser->stationArray()->front();
    EXPECT_EQ(station.stateName, "SOMEWHERE NICE     ");
    EXPECT_EQ(station.stateAbbreviation, "AB");
    EXPECT_EQ(station.stationName, "DEFGHIJKLMNOPQRS");
    EXPECT_EQ(station.ICAO, "UVWX");
    EXPECT_EQ(station.IATA, "Zabd");
    EXPECT_EQ(station.SYNOPIndex, 12345);
    EXPECT_DOUBLE_EQ(station.latitude, -(67 + 18 / 60.0));
    EXPECT_DOUBLE_EQ(station.longitude, -(123 + 24 / 60.0));
    EXPECT_EQ(station.ELEV, 98760);
    EXPECT_EQ(
        (std::string{station.METAR, station.NEXRAD, station.aviationFlag, station.upperAirOrWind,
                     station.observationType, station.officeType, station.plottingPriority}),
        "qtwz$(*");
    EXPECT_EQ(station.countryCode, ",-");
    EXPECT_FALSE(station.refCon);
}

TEST_F(StationParser, NumbersAreDigitsBetweenBlanksWithAnOptionalSignAndFraction) {
    struct {
        const char* field;
        std::int64_t elevation;
    } const rows[] = {{"    4", 4}, {"4    ", 4}, {"  -30", -30}, {"12.9 ", 12},     {"     ", 0},
                      {"12a  ", 0}, {"+12  ", 0}, {" -   ", 0},   {"\xC3\xA9 12", 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.field);
        EXPECT_EQ(station(with(54, row.field))->ELEV, row.elevation);
    }
}

TEST_F(StationParser, OnlyCapitalHemisphereLettersAreNegative) {
    EXPECT_LT(station(with(44, "S"))->latitude, 0);
    EXPECT_GT(station(with(44, "s"))->latitude, 0);
    EXPECT_GT(station(with(53, "w"))->longitude, 0);
    EXPECT_GT(station(with(53, " "))->longitude, 0);
    EXPECT_EQ(stationparser::coordinateString_lon(38.5, -122.25), "38°30'0\"N 122°15'0\"W");
    EXPECT_DOUBLE_EQ(stationparser::ConvertDegreeAngleToDouble_mins_secs(1, 30, 36), 1.51);
}

TEST_F(StationParser, LogsAndLeavesOutStationsOutsideTheGlobe) {
    const auto parser = parse("!\n" + with(39, "90 00N  180 00E") + "\n" + with(39, "90 01N") +
                              "\n" + with(47, "180 01W") + "\n" + sample + "\n");
    EXPECT_EQ(parser->stationArray()->size(), 2U);
    EXPECT_EQ(host.log.lines(), (std::vector<std::string>{"KZZQ", "KZZQ"}));
}

TEST_F(StationParser, TextCutInTheMiddleOfACharacterIsAbsent) {
    const auto cut = station(with(18, "\xC3\xA9"));
    EXPECT_FALSE(cut->stationName);
    EXPECT_EQ(cut->ICAO, "KZZQ");
    EXPECT_EQ(station(with(17, "\xC3\xA9"))->stationName, "SAMPLE FIELD  \xC3\xA9");
    StationArray ended;
    parse("")->captureStation(sample.substr(0, 62), ended);
    EXPECT_EQ(ended.at(0)->METAR, ' ') << "missing bytes read as blanks";
    EXPECT_EQ(ended.at(0)->countryCode, "  ");
}

TEST_F(StationParser, ClassifiesLinesByHowTheyBeginAndWhatPrecedesThem) {
    struct {
        const char* what;
        std::string text;                 // "~" is a station line
        std::vector<std::string> regions; // of the stations kept; "-" is none
        bool error = false;
    } const rows[] = {
        {"the first line is not read", "~~", {"-"}},
        {"comments and headings are skipped", "!\n! x\nCD y\n~", {"-"}},
        {"a header needs a blank line before it", "!\n\nAA 1\n~BB 2~", {"AA ", "AA "}},
        {"a second blank line begins the name", "!\n\n\nAA 1\n~", {"\nAA "}},
        {"without a digit the name runs on", "!\n\nAA\nSTAT 7\n~", {"AA\nSTAT "}},
        {"no header without a digit", "!\n~\n" + std::string(90, 'A'), {"-"}, true},
        {"a short last line is not read", "!\n~\n1\n~ZZ SHORT", {"-", ""}, true},
        {"one byte short of a line and its end", "!\n~" + sample, {"-"}, true},
        {"a long last line needs no line feed", "!\n~" + sample + " ", {"-", "-"}},
        {"a carriage return is like others", "!\r\n\r\nAA 1\r\n~", {"-", "-"}},
        {"a NUL ends the text", "! list\n~\n1\n\0~"s, {"-"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const auto hasErredBefore = timesErred();
        const auto parser = parse(std::regex_replace(row.text, std::regex("~"), sample + "\n"));
        std::vector<std::string> regions;
        for (const auto& station : *parser->stationArray()) {
            regions.push_back(station->stateName.value_or("-"));
        }
        EXPECT_EQ(regions, row.regions);
        EXPECT_EQ(parser->error(), row.error);
        EXPECT_EQ(timesErred() - hasErredBefore, row.error ? 1 : 0);
        EXPECT_TRUE(parser->theCollection());
    }
}

TEST_F(StationParser, IgnoresAHeaderAtOneOddPlace) {
    // The place where the first byte, taken as signed, plus the digit's offset minus one is 32.
    const std::string list = "\n\nAA 1\n" + sample + "\n";
    EXPECT_EQ(parse("\x1c"s + list)->stationArray()->at(0)->stateName, "AA ");
    EXPECT_FALSE(parse("\x1b"s + list)->stationArray()->at(0)->stateName);
}

TEST_F(StationParser, TooShortATextMakesNoCollectionButItsEndIsAnnounced) {
    int announcements = 0;
    const auto token = host.notificationCenter.addObserver(stationparser::StationParseDone,
                                                           [&](const auto&) { ++announcements; });
    for (const auto& text :
         {std::optional<std::string>(), {"\n"}, {"!\n" + std::string(87, ' ')}}) {
        const auto parser = parse(text);
        EXPECT_FALSE(parser->theCollection());
        EXPECT_TRUE(parser->stationArray()->empty());
        EXPECT_FALSE(parser->error());
    }
    EXPECT_TRUE(parse("!\n" + std::string(88, ' '))->theCollection());
    EXPECT_EQ(announcements, 4);
    EXPECT_TRUE(host.log.lines().empty());
}

TEST_F(StationParser, ReadsThePublicList) {
    const std::filesystem::path path = NOSIG_SHARED_DATA "/stations.txt";
    if (!std::filesystem::exists(path)) {
        GTEST_SKIP() << "the public list is not at " << path;
    }
    const auto parser = parse(catalogue::readListFile(path));
    EXPECT_FALSE(parser->error());
    const auto& collection = *parser->theCollection();
    ASSERT_EQ(collection.stations->size(), 9289U);
    EXPECT_EQ(collection.stationsWithMETARCapability().size(), 8168U);
    EXPECT_EQ(collection.stationsWithTAFCapability().size(), 3273U);
    EXPECT_EQ(collection.stationWithICAOID("PADK")->SYNOPIndex, 70454);
}

TEST_F(StationParser, SurvivesAListCutAnywhereAndForeignBytes) {
    const std::string list =
        "!\n\nAA 1\n" + sample + "\n" + with(0, "CD") + "\n\nBB 2\n" + sample + "\n";
    for (std::size_t length = 0; length <= list.size(); ++length) {
        EXPECT_LE(parse(list.substr(0, length))->stationArray()->size(), 2U);
    }
    for (std::size_t at = 0; at < list.size(); ++at) {
        for (const char byte : {'\0', '\n', '9', '\xff'}) {
            std::string changed = list;
            changed[at] = byte;
            EXPECT_LE(parse(changed)->stationArray()->size(), 4U);
        }
    }
}

} // namespace
