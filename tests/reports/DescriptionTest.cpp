// SPDX-License-Identifier: MIT
#include "reports/Description.h"
#include "reports/Cells.h"
#include "reports/Numbers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace reports {
namespace {

using namespace std::chrono_literals;
using Ending = Answer::Ending;

const Date now = Date(std::chrono::sys_days(std::chrono::year(2026) / 11 / 21)) + 12h;

TEST(Description, Age) {
    const std::pair<Date::duration, const char*> cases[] = {
        {0min, "12:00 UTC, 0 minutes ago"},
        {-30s, "12:00 UTC, 0 minutes ago"},
        {1min, "11:59 UTC, 1 minute ago"},
        {74min, "10:46 UTC, 74 minutes ago"},
        {75min, "10:45 UTC, 75 minutes ago, old"},
        {2h, "10:00 UTC, 2 hours ago, old"},
        {13h, "20 Nov 23:00 UTC, 13 hours ago, old"},
        {48h, "19 Nov 12:00 UTC, 2 days ago, old"},
        {-1min, "12:01 UTC, 1 minute ahead of this computer's clock"},
        {-13h, "22 Nov 01:00 UTC, 13 hours ahead of this computer's clock"},
    };
    for (const auto& [age, words] : cases) {
        EXPECT_EQ(ageInWords(now - age, now), words);
    }
}

TEST(Description, WindsWithArrowsToWhereTheyBlow) {
    const struct {
        std::optional<Wind> wind;
        const char* words;
        const char* arrow;
    } cases[] = {
        {{}, "", ""},
        {Wind{0, false, 0, {}}, "calm", ""},
        {Wind{{}, true, 3, {}}, "variable, 3 kt (2 m/s)", ""},
        {Wind{{}, true, 69, 104}, "variable, 69 kt (35 m/s), gusts 104 kt (54 m/s)", ""},
        {Wind{60, false, 0, 12}, "from 60° at 0 kt (0 m/s), gusts 12 kt (6 m/s)", ""},
        {Wind{{}, false, 12, {}}, "12 kt (6 m/s), direction not reported", ""},
        {Wind{360, false, 10, {}}, "from 360° at 10 kt (5 m/s)", "↓"},
        {Wind{22, false, 10, {}}, "from 22° at 10 kt (5 m/s)", "↓"},
        {Wind{23, false, 10, {}}, "from 23° at 10 kt (5 m/s)", "↙"},
        {Wind{90, false, 10, {}}, "from 90° at 10 kt (5 m/s)", "←"},
        {Wind{135, false, 10, {}}, "from 135° at 10 kt (5 m/s)", "↖"},
        {Wind{180, false, 10, {}}, "from 180° at 10 kt (5 m/s)", "↑"},
        {Wind{225, false, 10, {}}, "from 225° at 10 kt (5 m/s)", "↗"},
        {Wind{270, false, 10, {}}, "from 270° at 10 kt (5 m/s)", "→"},
        {Wind{315, false, 10, {}}, "from 315° at 10 kt (5 m/s)", "↘"},
        {Wind{338, false, 10, {}}, "from 338° at 10 kt (5 m/s)", "↓"},
    };
    for (const auto& [wind, words, arrow] : cases) {
        EXPECT_EQ(windInWords(wind), words);
        EXPECT_EQ(windArrow(wind), arrow) << words;
    }
}

TEST(Description, VisibilityInMilesAndMetres) {
    const std::pair<Visibility, const char*> cases[] = {
        {{10, true}, "10 statute miles or more (16 km)"},
        {{1, false}, "1 statute mile (1,600 m)"},
        {{0.99, false}, "0.99 statute miles (1,600 m)"},
        {{2.98, false}, "2.98 statute miles (4,800 m)"},
        {{3.1, false}, "3.1 statute miles (5 km)"},
        {{11.5, false}, "11.5 statute miles (19 km)"},
        {{0.4, false}, "0.4 statute miles (650 m)"},
        {{0, false}, "0 statute miles (0 m)"},
    };
    for (const auto& [visibility, words] : cases) {
        EXPECT_EQ(visibilityInWords(visibility), words);
    }
    EXPECT_EQ(visibilityInWords({}), "");
}

TEST(Cells, AreShort) {
    const std::pair<Wind, const char*> winds[] = {{{210, false, 10, 20}, "210° 10G20 kt"},
                                                  {{{}, true, 3, {}}, "VRB 3 kt"},
                                                  {{{}, false, 3, {}}, "3 kt"},
                                                  {{0, false, 0, {}}, "calm"},
                                                  {{60, false, 0, 12}, "060° 0G12 kt"}};
    for (const auto& [wind, cell] : winds) {
        EXPECT_EQ(windCell(wind), cell);
    }
    const std::pair<std::chrono::seconds, const char*> ages[] = {
        {-1min, "ahead"}, {-59s, "0 min"},    {119min, "119 min"}, {2h, "2 h"},
        {47h, "47 h"},    {48h - 1s, "47 h"}, {48h, "2 d"},        {71h, "2 d"}};
    for (const auto& [age, cell] : ages) {
        EXPECT_EQ(ageCell(platform::Date(), platform::Date() + age), cell);
    }
    const std::pair<std::vector<Layer>, const char*> skies[] = {
        {{}, ""},
        {{{Cover::few, 800, ""}}, "none"},
        {{{Cover::broken, 2000, ""}}, "2,000 ft"},
        {{{Cover::broken, 2000, ""}, {Cover::overcast, {}, ""}}, "≤ 2,000 ft"}};
    for (const auto& [layers, cell] : skies) {
        EXPECT_EQ(ceilingCell({{}, {}, "", layers, {}}), cell);
    }
    EXPECT_EQ(visibilityCell(Visibility{6, true}) + visibilityCell(Visibility{0.5, false}),
              "6+ SM0.5 SM");
    EXPECT_EQ(temperatureCell(-2.6) + pressureCell(29.92), "-3 °C1013 hPa");
    EXPECT_EQ(windCell({}) + visibilityCell({}) + temperatureCell({}) + pressureCell({}), "");
}

TEST(Description, FactsOfAMetarAreThoseThatItHas) {
    Metar metar;
    EXPECT_EQ(factsOf(metar), std::vector<Fact>());
    metar.raw = "METAR KDEN 211200Z 21010G20KT 180V240 2SM -SHRA BKN020CB 41/30 A2992";
    metar.conditions = {
        Wind{210, false, 10, 20},
        Visibility{2, false},
        "-SHRA BR",
        {{Cover::few, 800, ""}, {Cover::broken, 2000, "CB"}, {Cover::overcast, {}, ""}},
        {}};
    metar.temperature = 41;
    metar.dewPoint = 30;
    metar.altimeter = 29.92;
    metar.elevation = 1656;
    const std::vector<Fact> expected{
        {"Wind", "from 210° at 10 kt (5 m/s), gusts 20 kt (10 m/s), varying 180° to 240°"},
        {"Visibility", "2 statute miles (3,200 m)"},
        {"Weather", "light showers of rain, mist"},
        {"Clouds",
         "few at 800 ft; broken at 2,000 ft, cumulonimbus; overcast at an unknown height"},
        {"Ceiling", "2,000 ft, perhaps lower: a height is missing"},
        {"Temperature", "41 °C (106 °F), dew point 30 °C (86 °F), humidity 54 %"},
        {"Pressure", "1013 hPa (29.92 inHg)"},
        // Dry air would make it 9,500 ft.
        {"Density altitude", "10,100 ft, at an elevation of 5,433 ft"},
    };
    EXPECT_EQ(factsOf(metar), expected);
    metar.elevation.reset();
    metar.dewPoint.reset();
    metar.conditions = {{}, {}, "", {{Cover::CAVOK, {}, ""}}, {}};
    EXPECT_EQ(factsOf(metar), (std::vector<Fact>{{"Clouds", "no significant clouds"},
                                                 {"Ceiling", "none"},
                                                 {"Temperature", "41 °C (106 °F)"},
                                                 {"Pressure", "1013 hPa (29.92 inHg)"}}));
    const struct {
        std::vector<Layer> layers;
        std::optional<int> verticalVisibility;
        const char* words;
    } skies[] = {
        {{{Cover::obscured, {}, ""}}, 200, "sky obscured; vertical visibility 200 ft"},
        {{}, 100'000, "vertical visibility 100,000 ft"},
        {{{Cover::none, {}, ""}, {Cover::few, {}, ""}, {Cover::unknown, {}, "CB"}},
         {},
         "no significant clouds; few at an unknown height; clouds at an unknown height, "
         "cumulonimbus"},
        {{{Cover::scattered, 900, "TCU"}, {Cover::unknown, 1000, ""}},
         {},
         "scattered at 900 ft, towering cumulus; clouds at 1,000 ft"},
    };
    for (const auto& [layers, verticalVisibility, words] : skies) {
        EXPECT_THAT(factsOf(Conditions{{}, {}, "", layers, verticalVisibility}),
                    testing::Contains(Fact{"Clouds", words}));
    }
    Metar unknown;
    unknown.conditions.layers.emplace_back();
    unknown.dewPoint = -0.001;
    EXPECT_EQ(factsOf(unknown), (std::vector<Fact>{{"Clouds", "unknown"},
                                                   {"Ceiling", "unknown"},
                                                   {"Temperature", "dew point 0 °C (32 °F)"}}));
    // In the standard atmosphere the density altitude is the altitude itself.
    Metar standard;
    standard.temperature = 15;
    standard.altimeter = 29.92;
    standard.elevation = 0;
    EXPECT_EQ(factsOf(standard).back().text, "0 ft, at an elevation of 0 ft");
    standard.temperature = standard.elevation = -20;
    EXPECT_EQ(factsOf(standard).back().text, "-4,600 ft, at an elevation of -66 ft");
    EXPECT_EQ(grouped(-1'234'567), "-1,234,567");
}

TEST(Description, PartsOfATaf) {
    using Kind = Forecast::Kind;
    const auto part = [](Kind kind, Date::duration length, std::optional<int> probability) {
        Forecast made;
        made.kind = kind;
        made.begins = now;
        made.ends = now + length;
        made.probability = probability;
        if (kind == Kind::becoming) {
            made.complete = now + 2h;
        }
        return partInWords(made);
    };
    EXPECT_EQ(part(Kind::base, 6h, {}), "At first, 21 Nov 12:00 to 18:00 UTC");
    EXPECT_EQ(part(Kind::from, 6h, {}), "From 21 Nov 12:00 UTC");
    EXPECT_EQ(part(Kind::becoming, 6h, {}), "Becoming 21 Nov 12:00 to 14:00 UTC");
    EXPECT_EQ(part(Kind::temporary, 12h, {}), "Temporarily 21 Nov 12:00 to 22 Nov 00:00 UTC");
    EXPECT_EQ(part(Kind::temporary, 1h, 30),
              "Probability 30 %, temporarily 21 Nov 12:00 to 13:00 UTC");
    EXPECT_EQ(part(Kind::probable, 1h, 40), "Probability 40 %, 21 Nov 12:00 to 13:00 UTC");
    EXPECT_EQ(part(Kind::probable, 1h, {}), "Perhaps 21 Nov 12:00 to 13:00 UTC");

    Taf taf;
    taf.issued = taf.begins = now;
    taf.ends = now + 6h;
    EXPECT_EQ(tafInWords(taf, now + 1h),
              "Issued 21 Nov 12:00 UTC, valid 21 Nov 12:00 to 18:00 UTC");
    taf.revision = Revision::amended;
    EXPECT_THAT(tafInWords(taf, now + 6h), testing::StartsWith("Expired. Amended. Issued"));
    taf.ends = now + std::chrono::days(2'900'000);
    EXPECT_THAT(tafInWords(taf, now), testing::HasSubstr("12:00 UTC, valid 21 Nov 12:00 to "));
    taf.ends = now;
    taf.isCancelled = true;
    taf.revision = Revision::corrected;
    EXPECT_THAT(tafInWords(taf, now + 6h), testing::StartsWith("Cancelled. Corrected. Issued"));
}

TEST(Description, ARunOfReportsIsSummedUp) {
    EXPECT_EQ(trendInWords({}), "");
    std::vector<Metar> run(3);
    run[0].observed = now - 13h;
    run[1].observed = now - 1h;
    run[2].observed = now;
    EXPECT_EQ(trendInWords(run), "3 METARs, 20 Nov 23:00 to 21 Nov 12:00 UTC.");
    run[0].temperature = -0.4;
    run[2].temperature = 7.6;
    run[0].dewPoint = -3;
    run[0].altimeter = run[1].altimeter = 29.92;
    run[1].conditions = {
        Wind{230, false, 12, 22}, Visibility{2, false}, "", {{Cover::broken, 1200, ""}}, {}};
    run[2].conditions = {
        Wind{0, false, 0, {}}, Visibility{10, true}, "", {{Cover::few, 100, ""}}, {}};
    run[1].category = Category::IFR;
    run[2].category = Category::VFR;
    EXPECT_EQ(metarInWords(run[0]),
              "20 Nov 23:00 UTC, category unknown: -0.4 °C; dew point -3 °C; 1013 hPa");
    EXPECT_EQ(metarInWords(run[1]), "21 Nov 11:00 UTC, IFR: wind from 230° at 12 kt, gusts 22 kt; "
                                    "visibility 2 statute miles; ceiling 1,200 ft; 1013 hPa");
    EXPECT_EQ(trendInWords(run),
              "3 METARs, 20 Nov 23:00 to 21 Nov 12:00 UTC; temperature 0 to 8 °C; dew point -3 °C; "
              "wind 0 to 12 kt; gusts 22 kt; lowest ceiling 1,200 ft; lowest visibility 2 statute "
              "miles; pressure 1013 hPa; worst category IFR.");
}

TEST(Description, StatusSaysWhatWasAskedAndWhatIsShownInstead) {
    constexpr auto none = std::nullopt;
    const auto reports = [](std::optional<Ending> metar, std::optional<Ending> taf,
                            std::optional<Date> kept) {
        StationReports all;
        all.metarAnswer = metar ? std::optional(Answer{now, *metar, 429}) : std::nullopt;
        all.tafAnswer = taf ? std::optional(Answer{now, *taf, 429}) : std::nullopt;
        if (kept) {
            Metar report;
            report.observed = *kept;
            all.metar = std::make_shared<const Metar>(report);
        }
        return all;
    };
    const struct {
        std::optional<Ending> metar;
        std::optional<Ending> taf;
        std::optional<Date> kept;
        const char* status;
    } cases[] = {
        {none, none, none, "No METAR of KXYZ has been asked for yet."},
        {none, Ending::whole, none,
         "No METAR of KXYZ has been asked for yet. Asked data.example at 12:00 UTC."},
        {Ending::whole, none, now, "Asked data.example at 12:00 UTC."},
        {Ending::whole, Ending::whole, now, "Asked data.example at 12:00 UTC."},
        {Ending::whole, Ending::nothing, now,
         "Asked data.example at 12:00 UTC. No TAF of KXYZ is in force; asked at 12:00 UTC."},
        {Ending::notReached, Ending::notReached, now - 2h,
         "data.example could not be reached at 12:00 UTC; this is what it sent at 10:00 UTC."},
        {Ending::notReached, none, now - 24h,
         "data.example could not be reached at 12:00 UTC; this is what it sent at 20 Nov 12:00 "
         "UTC."},
        {Ending::refused, Ending::whole, none,
         "data.example refused at 12:00 UTC (429). Asked data.example at 12:00 UTC."},
        {Ending::notUnderstood, none, none,
         "data.example sent something that is no report at 12:00 UTC."},
        {Ending::nothing, Ending::nothing, none,
         "KXYZ has sent no METAR in the last hours; asked at 12:00 UTC. No TAF of KXYZ is in "
         "force; asked at 12:00 UTC."},
    };
    for (const auto& [metar, taf, kept, status] : cases) {
        StationReports asked = reports(metar, taf, kept);
        EXPECT_EQ(statusInWords(asked, "KXYZ", "data.example", now), status);
        asked.openQuestions = 1;
        EXPECT_EQ(statusInWords(asked, "KXYZ", "data.example", now), "Asking data.example…");
    }
}

TEST(Description, TheWholeReportAsText) {
    Metar metar;
    metar.raw = "METAR KXYZ 211200Z";
    metar.observed = now;
    metar.category = Category::VFR;
    metar.temperature = metar.dewPoint = 15;
    Taf taf;
    taf.raw = "TAF KXYZ 211120Z 2112/2212 CAVOK TEMPO 2114/2116 3000";
    taf.issued = taf.begins = now;
    taf.ends = now + 24h;
    Forecast part;
    part.begins = now;
    part.ends = now + 24h;
    part.stated.visibility = Visibility{6.21, true};
    part.stated.weather = "-RA";
    taf.forecasts = {part};
    EXPECT_EQ(reportAsText("KXYZ, Somewhere", &metar, &taf, now),
              "KXYZ, Somewhere\n\nVFR, 12:00 UTC, 0 minutes ago\nMETAR KXYZ 211200Z\n"
              "Temperature: 15 °C (59 °F), dew point 15 °C (59 °F), humidity 100 %\n\n"
              "Issued 21 Nov 12:00 UTC, valid 21 Nov 12:00 to 22 Nov 12:00 UTC\n"
              "TAF KXYZ 211120Z 2112/2212 CAVOK\nTEMPO 2114/2116 3000\n"
              "At first, 21 Nov 12:00 to 22 Nov 12:00 UTC: Visibility: 6.21 statute miles or more "
              "(10 km); Weather: light rain\n");
    EXPECT_EQ(reportAsText("KXYZ", nullptr, nullptr, now), "KXYZ\n");
}

} // namespace
} // namespace reports
