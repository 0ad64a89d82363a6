// SPDX-License-Identifier: MIT
#include "reports/Briefing.h"

#include <gtest/gtest.h>

namespace reports {
namespace {

using namespace std::chrono_literals;
using Ending = Answer::Ending;

const Date evening = Date(std::chrono::sys_days(std::chrono::year(2026) / 11 / 21)) + 21h;

struct BriefingTest : testing::Test {
    void addMetar(Date observed) {
        Metar metar;
        metar.station = "KJFK";
        metar.observed = observed;
        metar.raw = "METAR KJFK";
        metar.category = Category::IFR;
        known.station.metar = std::make_shared<const Metar>(metar);
    }
    void addTaf(Date ends) {
        Taf taf;
        taf.station = "KJFK";
        taf.issued = taf.begins = evening - 3h;
        taf.ends = ends;
        taf.raw = "TAF KJFK 211730Z 2118/2224 9999 BECMG 2120/2122 3000 BR";
        known.station.taf = std::make_shared<const Taf>(taf);
    }
    [[nodiscard]] std::string text() const {
        std::string all;
        for (const auto& line : briefingOf("KJFK", known, "example.org", evening)) {
            all += line.text + "\n";
        }
        return all;
    }

    Known known;
};

const std::string metarLines = "IFR, 20:51 UTC, 9 minutes ago\nMETAR KJFK\n";
const std::string tafLines = "TAF: Issued 21 Nov 18:00 UTC, valid 21 Nov 18:00 to 22 Nov 21:00 "
                             "UTC\nTAF KJFK 211730Z 2118/2224 9999\nBECMG 2120/2122 3000 BR\n";

TEST_F(BriefingTest, TellsWhatIsKnownAndHowEachQuestionEnded) {
    EXPECT_EQ(text(), "No METAR of KJFK is known.\nNo TAF of KJFK is known.\n");
    known.station.openQuestions = 1;
    EXPECT_EQ(text(), "Asking example.org…\n");
    addMetar(evening - 9min);
    EXPECT_EQ(text(), metarLines + "Asking example.org…\n");
    known.station.openQuestions = 0;
    addTaf(evening + 24h);
    EXPECT_EQ(text(), metarLines + tafLines);

    const struct {
        Ending ending;
        int status;
        const char* words;
    } cases[] = {
        {Ending::whole, 200, ""},
        {Ending::notReached, 0,
         "METAR: example.org could not be reached at 20:58 UTC; this is what it sent at 20:51 "
         "UTC.\n"},
        {Ending::refused, 429,
         "METAR: example.org refused at 20:58 UTC (429); this is what it sent at 20:51 UTC.\n"},
        {Ending::nothing, 204, "KJFK has sent no METAR in the last hours; asked at 20:58 UTC.\n"},
    };
    for (const auto& [ending, status, words] : cases) {
        known.station.metarAnswer = Answer{evening - 2min, ending, status};
        EXPECT_EQ(text(), metarLines + words + tafLines);
    }
    // What came later, from the weather of the world or with another station's, counts.
    known.all.metarAnswer = Answer{evening, Ending::whole, 200, evening - 2min, ""};
    EXPECT_EQ(text(), metarLines + cases[3].words + tafLines);
    known.all.metarAnswer = Answer{evening - 1min, Ending::whole, 200, evening - 1min, ""};
    EXPECT_EQ(text(), metarLines + tafLines);
    known.all = {};
    addMetar(evening - 1min);
    EXPECT_EQ(text(), "IFR, 20:59 UTC, 1 minute ago\nMETAR KJFK\n" + tafLines);
    const BriefingLine lines[] = {{BriefingLine::Kind::station, "KJFK"},
                                  {BriefingLine::Kind::words, "No METAR."}};
    EXPECT_EQ(briefingAsText(lines, evening + 51min), "21 Nov 2026 21:51 UTC\n\nKJFK\nNo METAR.\n");
}

TEST_F(BriefingTest, SaysWhereATafIsNoLongerInForce) {
    addTaf(evening - 1min);
    known.station.tafAnswer = Answer{evening, Ending::nothing, 200};
    const std::string all = text();
    EXPECT_NE(all.find("\nTAF: Expired. Issued 21 Nov"), std::string::npos) << all;
    EXPECT_TRUE(all.ends_with("\nNo TAF of KJFK is in force; asked at 21:00 UTC.\n")) << all;
}

TEST_F(BriefingTest, AReportIsMissingUnlessAServerHasJustTold) {
    const auto world = [](std::optional<Date> renewed) {
        return Answer{evening, Ending::refused, 429, renewed, ""};
    };
    const struct {
        const char* name;
        std::optional<Answer> own;
        std::optional<Answer> all;
        bool hasReport;
        bool isMissing;
    } cases[] = {
        {"nobody asked", {}, {}, true, true},
        {"told", Answer{evening - 4min, Ending::whole, 200}, {}, true, false},
        {"told that there is none", Answer{evening - 4min, Ending::nothing, 204}, {}, false, false},
        {"told long ago", Answer{evening - 5min, Ending::whole, 200}, {}, true, true},
        {"told by a clock set back", Answer{evening + 5min, Ending::whole, 200}, {}, true, true},
        {"just refused", Answer{evening - 59s, Ending::refused, 429}, {}, true, false},
        {"refused", Answer{evening - 1min, Ending::refused, 429}, {}, true, true},
        {"not reached", Answer{evening - 1min, Ending::notReached, 0}, {}, false, true},
        {"in the world's weather", {}, world(evening - 4min), true, false},
        {"not in the world's weather", {}, world(evening - 4min), false, true},
        {"the world's weather is old", {}, world(evening - 5min), true, true},
        {"the world's weather never came", {}, world({}), true, true},
        {"refused, then the world's weather", Answer{evening - 3min, Ending::refused, 429},
         world(evening - 2min), true, false},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        for (const Kind kind : {Kind::metar, Kind::taf}) {
            const bool isMetar = kind == Kind::metar;
            known = {};
            (isMetar ? known.station.metarAnswer : known.station.tafAnswer) = one.own;
            (isMetar ? known.all.metarAnswer : known.all.tafAnswer) = one.all;
            if (one.hasReport) {
                isMetar ? addMetar(evening - 9min) : addTaf(evening + 24h);
            }
            EXPECT_EQ(isMissing(kind, known, evening), one.isMissing);
            // The other kind's answers say nothing of this one.
            EXPECT_TRUE(isMissing(isMetar ? Kind::taf : Kind::metar, known, evening));
        }
    }
}

} // namespace
} // namespace reports
