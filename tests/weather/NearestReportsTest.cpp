// SPDX-License-Identifier: MIT
#include "weather/NearestReports.h"
#include "tests/support/FakeHost.h"
#include "tests/support/Stations.h"

#include <gtest/gtest.h>

namespace weather {
namespace {

using namespace std::chrono_literals;
using Ending = reports::Answer::Ending;
using reports::Kind;

/// HERE, and to its north NEAR, which the catalogue lists for nothing, and FAR, listed for both.
class NearestReportsTest : public testing::Test {
protected:
    NearestReportsTest() {
        stations.back()->METAR = 'X';
        stations.back()->aviationFlag = 'U';
        world.setOn(true);
    }

    void take(const char* station, std::optional<platform::Date> observed,
              std::optional<platform::Date> until = {}) {
        reports::Batch batch;
        if (observed) {
            auto metar = std::make_shared<reports::Metar>();
            metar->station = station;
            metar->observed = *observed;
            batch.metars.push_back({metar, false});
        }
        if (until) {
            auto taf = std::make_shared<reports::Taf>();
            taf->station = station;
            taf->issued = now - 30min;
            taf->ends = *until;
            batch.tafs.push_back(taf);
        }
        store.take(batch);
    }
    void answer(const char* station, Kind kind, Ending ending, platform::Date asked) {
        reports::Answer one{asked, ending};
        one.renewed = asked;
        store.take({.metars = {}, .tafs = {}, .answers = {{station, kind, one}}});
    }
    std::string nearestIn(Kind kind) {
        const auto found = nearest.from(*stations.front(), kind, stations, now);
        return found ? stationInWords(*found->neighbor.station) + ", " + wayInWords(*found, now)
                     : "none";
    }

    support::FakeHost fake;
    reports::Store store{fake.notificationCenter, fake.clock, fake.log, {}};
    WorldWeather world{fake.host, store};
    NearestReports nearest{store, world};
    StationArray stations = *makeCollection({{"HERE", {}, {}, 50, 8},
                                             {"NEAR", "NEAR & SMALL  ", {}, 51, 8},
                                             {"FAR", {}, {}, 52, 8}})
                                 ->stations;
    const platform::Date now = fake.clock.now();
};

TEST_F(NearestReportsTest, GoesByTheWeatherOfTheWorldWhileThatIsFresh) {
    const std::string listed = "FAR, 138 mi N, 360° true (listed as reporting)";
    take("NEAR", now - 12min, now + 1h);
    EXPECT_EQ(nearestIn(Kind::metar), listed) << "the world was never renewed";
    answer("", Kind::metar, Ending::whole, now - 75min);
    EXPECT_EQ(nearestIn(Kind::metar), listed) << "its file is old";
    answer("", Kind::metar, Ending::whole, now - 5min);
    EXPECT_EQ(nearestIn(Kind::metar),
              "NEAR NEAR & SMALL, 69 mi N, 360° true (reported 12 minutes ago)");
    EXPECT_EQ(nearestIn(Kind::taf), listed) << "its file of TAFs was never renewed";
    answer("", Kind::taf, Ending::whole, now - 5min);
    EXPECT_EQ(nearestIn(Kind::taf),
              "NEAR NEAR & SMALL, 69 mi N, 360° true (reported 30 minutes ago)");
    world.setOn(false);
    EXPECT_EQ(nearestIn(Kind::metar), listed);
}

TEST_F(NearestReportsTest, CountsOnlyCurrentReports) {
    answer("", Kind::metar, Ending::whole, now);
    answer("", Kind::taf, Ending::whole, now);
    take("NEAR", now - 75min, now);
    take("FAR", now - 74min, now + 1min);
    EXPECT_EQ(nearestIn(Kind::metar), "FAR, 138 mi N, 360° true (reported 74 minutes ago)");
    EXPECT_EQ(nearestIn(Kind::taf), "FAR, 138 mi N, 360° true (reported 30 minutes ago)");
    stations.pop_back();
    EXPECT_EQ(nearestIn(Kind::metar), "none");
}

TEST_F(NearestReportsTest, AStationLacksWhatItDoesNotSend) {
    const auto lacks = [&](std::size_t station, Kind kind = Kind::metar) {
        return nearest.isLacking(*stations[station], kind, now);
    };
    EXPECT_TRUE(lacks(0)) << "not listed";
    EXPECT_FALSE(lacks(2)) << "listed, and not asked yet";
    EXPECT_FALSE(lacks(2, Kind::taf));
    for (const auto& [ending, expected] :
         {std::pair(Ending::notReached, false), std::pair(Ending::nothing, true)}) {
        answer("FAR", Kind::metar, ending, now - 1min);
        EXPECT_EQ(lacks(2), expected);
    }
    take("FAR", now - 80min);
    EXPECT_TRUE(lacks(2)) << "what it sent is old";
    take("FAR", now - 20min);
    EXPECT_FALSE(lacks(2));
    take("HERE", now - 20min);
    EXPECT_FALSE(lacks(0)) << "sends without being listed";
    answer("", Kind::taf, Ending::whole, now);
    EXPECT_TRUE(lacks(2, Kind::taf)) << "not in the file of all";
}

} // namespace
} // namespace weather
