// SPDX-License-Identifier: MIT
#include "catalogue/table/Editions.h"
#include "catalogue/table/Figures.h"
#include "catalogue/table/ListMaker.h"
#include "catalogue/table/PackageMaker.h"
#include "catalogue/table/StationNames.h"
#include "platform/text/Text.h"
#include "tests/support/FakeHost.h"
#include "tests/support/Stations.h"

#include <fmt/chrono.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

namespace {

using namespace std::string_literals;
using namespace std::chrono_literals;
using catalogue::readTable;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr auto edition = 2026y / 2 / 1;

platform::Data bytesOf(const std::string& text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

/// A row of the table; `fields` come after, and so count more than, those of a sound one.
std::string row(const std::string& fields) {
    return R"({"id":"ZZZZ","iataId":null,"faaId":"ZQ1","wmoId":null,"site":"Sample Fld","lat":1.5,)"
           R"("lon":2.5,"elev":3,"state":"","country":"FR","priority":4,"siteType":["METAR"],)" +
           fields + "}";
}

catalogue::MadeList made(const std::vector<std::string>& rows) {
    std::string text = "[";
    for (const auto& fields : rows) {
        text += (text.size() > 1 ? "," : "") + row(fields);
    }
    const auto table = readTable(bytesOf(text + "]"));
    EXPECT_EQ(table.fault, "");
    return catalogue::makeList(table, catalogue::Places::ours(), edition);
}

TEST(StationTable, KnowsARowWithoutWhatItNeedsAndDistrustsTheRest) {
    const struct {
        const char* fields;
        /// What is left of the row: "identifier", "position", or its fields.
        std::string kept;
    } rows[] = {
        {R"("icaoId":"LFZZ","iataId":"ZZQ","wmoId":"07000")", "LFZZ ZZQ 07000 3 4"},
        {R"("icaoId":null)", "identifier"},
        {R"("icaoId":"ABANG")", "identifier"},
        {R"("icaoId":"9AAA")", "identifier"},
        {R"("icaoId":["LFZZ"])", "identifier"},
        {R"("icaoId":"LFZZ","lat":-99.99,"lon":-99.99)", "position"},
        {R"("icaoId":"LFZZ","lat":0,"lon":0)", "position"},
        {R"("icaoId":"LFZZ","lat":"1.5")", "position"},
        {R"("icaoId":"LFZZ","lat":null)", "position"},
        {R"("icaoId":"LFZZ","lat":0,"lon":-180,"elev":5999,"priority":9)", "LFZZ   5999 9"},
        {R"("icaoId":"LFZZ","elev":6000,"priority":10)", "LFZZ   - -"},
        {R"("icaoId":"LFZZ","iataId":"ZZQ","iataId":null,"elev":-499)", "LFZZ   -499 4"},
        {R"("icaoId":"LFZZ","elev":-500,"priority":-1)", "LFZZ   - -"},
        {R"("icaoId":"LFZZ","elev":-3.6,"iataId":"9A","wmoId":"7000","priority":0)", "LFZZ   -4 0"},
        {R"("icaoId":"LFZZ","more":{"icaoId":"LFAA","a":[{"lat":9}]})", "LFZZ   3 4"},
    };
    for (const auto& [fields, kept] : rows) {
        SCOPED_TRACE(fields);
        const auto table = readTable(bytesOf("[" + row(fields) + "," + row(R"("icaoId":"LFYY")") +
                                             "," + row(R"("icaoId":"LFYY")") + "]"));
        EXPECT_EQ(table.fault, "");
        EXPECT_EQ(table.repeated, 1U);
        EXPECT_EQ(table.withoutElevation, kept.ends_with("- -") ? 1U : 0U);
        std::string found;
        if (table.rows.size() == 2) {
            const auto& one = table.rows.front();
            const auto text = [](auto number) { return number ? std::to_string(*number) : "-"; };
            found = one.icao + " " + one.iata + " " + one.wmo + " " + text(one.elevation) + " " +
                    text(one.priority);
        } else {
            found = table.withoutIdentifier == 1 ? "identifier"
                    : table.withoutPosition == 1 ? "position"
                                                 : "";
        }
        EXPECT_EQ(found, kept);
    }
}

TEST(StationTable, ReadsEachRowByItself) {
    const auto table = readTable(bytesOf("[" + row(R"("icaoId":"LFZZ")") +
                                         R"(,{"icaoId":"LFXX","lon":1},{"icaoId":"LFWW","lat":1},)"
                                         R"({"icaoId":"LFVV","lat":7,"lon":8,"more":["TAF"]}])"));
    EXPECT_EQ(table.withoutPosition, 2U);
    ASSERT_EQ(table.rows.size(), 2U);
    const auto& bare = table.rows.back();
    EXPECT_EQ(bare.icao + bare.site + bare.country, "LFVV");
    EXPECT_FALSE(bare.elevation || bare.priority || bare.reportsMetars || bare.issuesTafs);
    for (const std::size_t length : {200U, 201U}) {
        const auto site = R"("icaoId":"LFZZ","site":")" + std::string(length, 'A') + '"';
        EXPECT_EQ(readTable(bytesOf("[" + row(site) + "]")).rows.at(0).site.size(),
                  length == 200 ? length : 0U);
    }
}

TEST(StationTable, RefusesWhatIsNoWholeTable) {
    const std::string sound = "[" + row(R"("icaoId":"LFZZ")") + "]";
    for (std::size_t length = 0; length < sound.size(); ++length) {
        EXPECT_NE(readTable(bytesOf(sound.substr(0, length))).fault, "") << length;
    }
    const std::pair<std::string, const char*> rows[] = {
        {"<!DOCTYPE html><html lang=\"fr\"><p>Indisponible</p></html>", "is no table of stations"},
        {row(R"("icaoId":"LFZZ")"), "is no table of stations"},
        {"\"LFZZ\"", "is no table of stations"},
        {"null", "is no table of stations"},
        {"true", "is no table of stations"},
        {"1", "is no table of stations"},
        {R"([null,true,"LFZZ",1])", "holds no station"},
        {"[" + sound + "]", "holds no station"},
        {"[]", "holds no station"},
        {std::string(1'000'000, '['), "is no table of stations"},
        {"[" + row("\"icaoId\":\"LF\xFFZ\"") + "]", "is no table of stations"},
        {"[" + row(R"("icaoId":"LFZZ","lat":1e999)") + "]", "is no table of stations"},
        {"[{}" +
             [] {
                 std::string empty;
                 for (int i = 0; i < 100'000; ++i) {
                     empty += ",{}";
                 }
                 return empty;
             }() +
             "]",
         "holds too many rows"},
        {std::string(32 << 20, '?'), "is no table of stations"},
        {std::string((32 << 20) + 1, '?'), "is too large"},
        {"\x1f\x8b", "is cut short, damaged or too large"},
        {"\x1f?", "is no table of stations"},
    };
    for (const auto& [text, fault] : rows) {
        const auto table = readTable(bytesOf(text));
        EXPECT_EQ(table.fault, fault) << text.substr(0, 40);
        EXPECT_TRUE(table.rows.empty());
    }
}

TEST(StationNames, ArePlainShortAndTelling) {
    const struct {
        std::vector<std::string> sites, names;
    } regions[] = {
        {{"Ingolstadt-Manching Arpt", "Åre Östersund Arpt", "Sørvágur/Vágar Arpt"},
         {"INGOLSTADT-MANCH", "ARE OSTERSUND", "SORVAGUR/VAGAR"}},
        {{"Boulder/Denver-WFO", "St Anicet", "Hanau ", "Kiel/Holtenau)", "\t\n"},
         {"BOULDER/DENVER", "ST ANICET", "HANAU", "KIEL/HOLTENAU)", ""}},
        {{"Winner, Wiley F", "Courtland (AA", "Barin Fld(NAS)", "Birmingham/NEXRAD"},
         {"WINNER", "COURTLAND", "BARIN FLD (NAS)", "BIRMINGHAM/RADAR"}},
        {{"Reserve/Port of South Louisiana Exec", "Saint Pierre Island Arpt",
          "Kuala (Old) Airport"},
         {"RESERVE/PT OF S", "ST PIERRE ISL", "KUALA (OLD)"}},
        {{"Great Harbour Mountain Regional Airport", "East Springs County Valley West",
          "Mount Fort Junction National North", "Beach Islands Point International",
          "Harbor South Valley West Regional"},
         {"GRT HBR MTN RGNL", "E SPGS CNTY VLY", "MT FT JCT NATL N", "BCH ISLS PT INTL",
          "HBR S VLY W RGNL"}},
        // Each would be "SAN ANTONIO/KELL", or "MINNEAPOLIS/ST P".
        {{"San Antonio/Kelly Field Annex", "San Antonio/Kelly Airstrip", "Minneapolis/St Paul Intl",
          "Minneapolis/St Paul South"},
         {"SAN ANTON/KELLY", "SAN ANTON/KELLY", "MINNEAPOL/ST PAU", "MINNEAPOL/ST PAU"}},
        // No stump of one or two letters stays, except of a town whose rest is longer.
        {{"Cape Girardeau Xenia", "Prince George Xenia", "Grand Canyon Xenia",
          "Prince George Xe Nia", "Prince Georg (Xenia) Oa", "Ingolstad N (Altona)",
          "Ingolst (A) Nordo)", "Kuala South Arpt", "Zz 90"},
         {"CAPE GIRARDEAU", "PRINCE GEORGE", "GRAND CANYON XEN", "PRINCE GEORGE XE", "PRINCE GEORG",
          "INGOLSTAD N", "INGOLST (A) NORD", "KUALA SOUTH ARPT", "ZZ 90"}},
        {{"Big Lake Xenia/Norda", "Big Lake Xenia/Nordb", "Big Lak Xenia/Northern",
          "Big Lak Xenia/Northend"},
         {"BIG LAKE/NORDA", "BIG LAKE/NORDB", "BIG LAK X/NORTHE", "BIG LAK X/NORTHE"}},
        {{"Papa Alpha Quebec Nord", "Papa Alpha Quebec Sud"},
         {"PAPA ALPHA NORD", "PAPA ALPHA SUD"}},
        {{"Nuiqsut Arpt", "Nuiqsut"}, {"NUIQSUT ARPT", "NUIQSUT"}},
        {{"北京", "ΑΘΗΝΑ-Athina", "½ Mile"}, {"", "ATHINA", "1 2 MILE"}},
    };
    for (const auto& region : regions) {
        std::vector<std::string> full;
        for (const auto& site : region.sites) {
            full.push_back(catalogue::fullName(site));
        }
        EXPECT_EQ(catalogue::listNames(full), region.names);
    }
    for (const char* word :
         {"arpt",  "aprt",   "arpr",  "arpto",   "airp", "airpo",  "airpor", "airport",
          "intl",  "rgnl",   "rngl",  "muni",    "cnty", "mem",    "exec",   "fld",
          "field", "afld",   "arfld", "airfld",  "apk",  "arpk",   "aprk",   "airfield",
          "astrp", "arstrp", "metro", "airpark", "term", "jetport"}) {
        EXPECT_EQ(
            catalogue::listNames({catalogue::fullName(std::string("Ingolstadter Muni ") + word)}),
            std::vector<std::string>{"INGOLSTADTER"})
            << word;
    }
}

TEST(ListMaker, PutsEachFactIntoItsColumn) {
    const struct {
        const char* fields;
        std::string region, line;
        std::size_t corrected = 0;
    } rows[] = {
        {R"("icaoId":"LFZZ","iataId":"ZZQ","wmoId":"07000")", "FRANCE",
         "   SAMPLE FLD       LFZZ ZZQ   07000   01 30N  002 30E    3   X                4 FR"},
        {R"("icaoId":"KZZQ","country":"US","state":"CO","siteType":["TAF","METAR"],"elev":1032)",
         "COLORADO",
         "CO SAMPLE FLD       KZZQ               01 30N  002 30E 1032   X     T          4 US"},
        {R"("icaoId":"KZZQ","country":"US","state":"DC","siteType":["OTHER"],"elev":null)",
         "UNITED STATES",
         "   SAMPLE FLD       KZZQ               01 30N  002 30E                         4 US"},
        {R"("icaoId":"CZZQ","country":"CA","state":"QC","site":"Sample/NEXRAD","priority":null)",
         "QUEBEC",
         "QC SAMPLE/NEXRAD    CZZQ               01 30N  002 30E    3   X  X               CA"},
        {R"("icaoId":"KZZQ","country":"US","state":"CO","site":"Sample WFO")", "COLORADO",
         "CO SAMPLE WFO       KZZQ               01 30N  002 30E    3   X              F 4 US"},
        {R"("icaoId":"LFZZ","site":"AWFO/NEXRADZ","lat":0)", "FRANCE",
         "   AWFO/NEXRADZ     LFZZ               00 00N  002 30E    3   X                4 FR"},
        // Corrected by hand, unknown, and states of other countries.
        {R"("icaoId":"ENSB","country":"NO","state":"SV")", "SVALBARD AND JAN MAYEN",
         "   SAMPLE FLD       ENSB               01 30N  002 30E    3   X                4 SJ", 1},
        {R"("icaoId":"CWFV","country":"CA","state":"BC")", "NORTHWEST TERRITORIES",
         "NT SAMPLE FLD       CWFV               01 30N  002 30E    3   X                4 CA", 1},
        {R"("icaoId":"ZZZA","country":"KV","state":"US")", "COUNTRY UNKNOWN",
         "   SAMPLE FLD       ZZZA               01 30N  002 30E    3   X                4   ", 1},
        {R"("icaoId":"ZZZA","country":"ENSB","site":"***")", "COUNTRY UNKNOWN",
         "   ZZZA             ZZZA               01 30N  002 30E    3   X                4   ", 1},
        {R"("icaoId":"RJZZ","country":"JP","state":"1","lat":-0.0083,"lon":-179.9999)", "JAPAN",
         "   SAMPLE FLD       RJZZ               00 00S  180 00W    3   X                4 JP"},
        {R"("icaoId":"RJZZ","country":"JP","lat":-89.99999,"lon":9.9917,"elev":-55)", "JAPAN",
         "   SAMPLE FLD       RJZZ               90 00S  010 00E  -55   X                4 JP"},
    };
    for (const auto& [fields, region, line, corrected] : rows) {
        const auto list = made({fields});
        EXPECT_EQ(list.placesCorrected, corrected) << fields;
        EXPECT_THAT(list.list, testing::EndsWith(
                                   "\n\n" + region +
                                   std::string(18 - std::min<std::size_t>(18, region.size()), ' ') +
                                   " 01-FEB-26\nCD  STATION         ICAO IATA  SYNOP   LAT  "
                                   "   LONG    ELEV   M  N  V  U  A  C\n" +
                                   line + "\n"))
            << fields;
    }
}

TEST(ListMaker, LeavesEachCodeToOneStationAndEachStationToOneIdentifier) {
    const auto list = made({
        R"("icaoId":"LFAA","iataId":"ZZQ","wmoId":"07000","site":"One","lat":1)",
        R"("icaoId":"LFBB","iataId":"ZZQ","siteType":["METAR","TAF"],"site":"Two","lat":2)",
        R"("icaoId":"LFCC","iataId":"ZZQ","wmoId":"07000","siteType":["TAF","METAR"],"lat":3)",
        R"("icaoId":"LFDD","siteType":[],"site":"One Arpt","lat":1.019)",
        R"("icaoId":"LFEE","siteType":[],"site":"One Arpt","lat":1.021)",
        R"("icaoId":"LFFF","siteType":["TAF"],"site":"One","lat":1)",
        R"("icaoId":"LFGG","siteType":[],"site":"***","lat":1)",
        R"("icaoId":"KGGG","country":"US","state":"WY","site":"Sample WFO")",
        R"("icaoId":"CGGG","country":"CA","state":"QC","site":"Sample NEXRAD")",
        // Across the date line, a little less and a little more than two hundredths of a degree.
        R"("icaoId":"LFHH","site":"Three","lat":60,"lon":179.98)",
        R"("icaoId":"LFII","siteType":[],"site":"Three","lat":60,"lon":-179.9801)",
        R"("icaoId":"LFJJ","siteType":[],"site":"Three","lat":60,"lon":-179.9799)",
    });
    EXPECT_EQ(list.formerIdentifiers, 2U);
    std::vector<std::string> found;
    for (std::size_t at = 0; (at = list.list.find('\n', at)) != std::string::npos;) {
        ++at;
        if (list.list.size() - at > 83 && list.list[at + 83] == '\n' && list.list[at] != '!') {
            found.push_back(list.list.substr(at + 20, 16));
        } else if (list.list.compare(at, 11, "CD  STATION") == 0) {
            found.emplace_back("region");
        }
    }
    EXPECT_THAT(found, ElementsAre("region", "KGGG            ", "region", "CGGG            ",
                                   "region", "LFGG            ", "LFAA            ",
                                   "LFFF            ", "LFEE            ", "LFCC       07000",
                                   "LFHH            ", "LFJJ            ", "LFBB ZZQ        "));
    support::FakeHost host;
    const auto all =
        catalogue::figuresOf(*catalogue::packageOf(list.list, host.log, {}).collection);
    EXPECT_THAT((std::vector{all.stations, all.metars, all.tafs, all.iata, all.synop, all.radars,
                             all.offices, all.regions}),
                ElementsAre(10U, 6U, 3U, 1U, 1U, 1U, 1U, 3U));
}

TEST(PackageMaker, KeepsTheTablesOwnPositions) {
    const auto both = made({R"("icaoId":"LFBB","lat":-48.00001,"lon":179.99999)",
                            R"("icaoId":"LFAA","lat":48.71649,"lon":-0.00834)"});
    support::FakeHost host;
    const auto package = [&] { return catalogue::packageOf(both.list, host.log, {}).collection; };
    EXPECT_THAT(both.positions, testing::EndsWith("both files were made.\nLFAA 48.71649 -0.00834\n"
                                                  "LFBB -48.00001 179.99999\n"));
    const auto collection = package();
    ASSERT_EQ(collection->stations->size(), 2U);
    EXPECT_EQ(collection->numberOfStations, 2);
    EXPECT_EQ(collection->lastUpdated, platform::Date(std::chrono::sys_days(edition)));
    EXPECT_EQ(catalogue::setPositions(*collection, both.positions), "");
    EXPECT_EQ(collection->stations->at(0)->latitude, 48.71649);
    EXPECT_EQ(collection->stations->at(0)->longitude, -0.00834);
    EXPECT_EQ(collection->stations->at(1)->longitude, 179.99999);
    for (const auto& [line, fault] : std::vector<std::pair<std::string, std::string>>{
             {"LFAA 48.72", "holds no position"},
             {"LFAA 48.72 x", "holds no position"},
             {"LFAA 48.72 0 0", "holds no position"},
             {"LFAA  48.72 0", "holds no position"},
             {"LFAA nan 0", "holds no position"},
             {"LFCC 48.72 0", "contradicts the list"},
             // The list has 48 43N, 000 01W.
             {"LFAA 48.7251 -0.0167", "contradicts the list"},
             {"LFAA -48.72 -0.0167", "contradicts the list"},
             {"LFAA 48.72 -0.0082", "contradicts the list"}}) {
        EXPECT_EQ(catalogue::setPositions(*package(), "!\n\n" + line), "line 3 " + fault) << line;
    }
}

TEST(PackageMaker, DatesAPackageByItsListOrNow) {
    const auto lineOf = [](const std::string& header) { return "!\n\n" + header + "\n\n!\n"; };
    for (const auto& [header, day] : std::vector<std::pair<std::string, std::string>>{
             {"FRANCE             01-FEB-26", "01-FEB-26"},
             {"GUINEA-BISSAU 31-DEC-18  ", "31-DEC-18"},
             {"01-FEB-26", "01-FEB-26"},
             {"FRANCE 31-FEB-26", ""},
             {"FRANCE 0?-FEB-26", ""},
             {"FRANCE 01-FEB-2?", ""},
             {"FRANCE 01.FEB-26", ""},
             {"FRANCE 01-FEB.26", ""},
             {"FRANCE 01-FEV-26", ""},
             {"FRANCE 1", ""},
             {"", ""}}) {
        const auto found = catalogue::editionOf(lineOf(header));
        EXPECT_EQ(found ? catalogue::textOfEdition(*found) : "", day) << header;
    }
    EXPECT_FALSE(catalogue::editionOf("! no region 01-FEB-26"));
    for (int month = 1; month <= 12; ++month) {
        const auto day = std::chrono::sys_days(2026y / month / 9);
        const std::string text = fmt::format("09-{:%b}-26", day);
        EXPECT_TRUE(platform::equalIgnoringCase(catalogue::textOfEdition(day), text)) << text;
    }
}

TEST(Figures, KnowACatalogueThatHasShrunk) {
    const auto shrunk = [](std::size_t stations, std::size_t metars, std::size_t tafs) {
        return catalogue::shrinkage({.stations = 1000, .metars = 100, .tafs = 10},
                                    {.stations = stations, .metars = metars, .tafs = tafs});
    };
    EXPECT_EQ(shrunk(800, 80, 8), "");
    EXPECT_EQ(shrunk(799, 100, 10), "has only 799 stations, where there were 1000");
    EXPECT_EQ(shrunk(1000, 79, 10), "has only 79 stations with METARs, where there were 100");
    EXPECT_EQ(shrunk(1000, 100, 7), "has only 7 stations with TAFs, where there were 10");
    EXPECT_EQ(catalogue::shrinkage({}, {}), "");
}

} // namespace
