// SPDX-License-Identifier: MIT
#include "catalogue/Nearest.h"
#include "tests/support/Stations.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace catalogue {
namespace {

/// The nearest other station that sends METARs, in words; "none" if there is none.
std::string nearestFrom(const StationFacts& from, const std::vector<StationFacts>& others) {
    const auto here = makeStation(from);
    StationArray stations{here};
    for (const StationFacts& facts : others) {
        stations.push_back(makeStation(facts));
    }
    const auto found = nearest(*here, stations,
                               [](const auto& station) { return station.stationName != "silent"; });
    return found ? found->station->ICAO.value_or("") + " " + wayInWords(*found) : "none";
}

TEST(Nearest, IsTheStationThatCountsByTheShortestWay) {
    const double nowhere = std::nan("");
    const struct {
        const char* name;
        StationFacts from;
        std::vector<StationFacts> others;
        const char* expected;
    } cases[] = {
        {"farther east in degrees, but nearer",
         {"HERE", {}, {}, 60, 10},
         {{"NRTH", {}, {}, 61, 10}, {"EAST", {}, {}, 60, 11.5}},
         "EAST 52 mi E, 089° true"},
        {"across the date line",
         {"HERE", {}, {}, 0, 179.9},
         {{"FAR", {}, {}, 0, 178}, {"NEAR", {}, {}, 0, -179.9}},
         "NEAR 13 mi E, 090° true"},
        {"across the pole",
         {"HERE", {}, {}, 89.9, 0},
         {{"FAR", {}, {}, 88, 0}, {"NEAR", {}, {}, 89.9, 180}},
         "NEAR 13 mi N, 360° true"},
        {"equally far, so the first of the list",
         {"HERE", {}, {}, 0, 0},
         {{"WEST", {}, {}, 0, -1}, {"EAST", {}, {}, 0, 1}},
         "WEST 69 mi W, 270° true"},
        {"those that do not count or have no place",
         {"HERE", {}, {}, 50, 8},
         {{"NULL", {}, {}, nowhere, 8},
          {"HIGH", {}, {}, 91, 8},
          {"MUTE", "silent", {}, 50, 8},
          {"HERE", {}, {}, 50, 8},
          {"    ", {}, {}, 50, 8},
          {"SENT", {}, {}, 50, 7.99}},
         "SENT less than 1 mi W, 270° true"},
        {"at the same place",
         {"HERE", {}, {}, 50, 8},
         {{"SAME", {}, {}, 50, 8}},
         "SAME at the same place"},
        {"from nowhere", {"HERE", {}, {}, nowhere, 8}, {{"THER", {}, {}, 50, 8}}, "none"},
        {"nobody else", {"HERE", {}, {}, 50, 8}, {{"MUTE", "silent", {}, 50, 8}}, "none"},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        EXPECT_EQ(nearestFrom(one.from, one.others), one.expected);
    }
}

TEST(Nearest, IsInOneOfSixteenDirections) {
    double middle = 0;
    for (const char* point : {"N", "NNE", "NE", "ENE", "E", "ESE", "SE", "SSE", "S", "SSW", "SW",
                              "WSW", "W", "WNW", "NW", "NNW"}) {
        for (const double bearing : {std::fmod(middle + 348.75, 360), middle, middle + 11.24}) {
            const std::string words = wayInWords({nullptr, 10'000, bearing});
            EXPECT_TRUE(words.starts_with(std::string("6 mi ") + point + ", ")) << words;
        }
        middle += 22.5;
    }
}

TEST(Nearest, TellsTheWayInWholeMilesAndDegrees) {
    EXPECT_EQ(wayInWords({nullptr, 0.99, 0}), "at the same place");
    EXPECT_EQ(wayInWords({nullptr, 1, 0.5}), "less than 1 mi N, 001° true");
    EXPECT_EQ(wayInWords({nullptr, 1609, 359.4}), "less than 1 mi N, 359° true");
    EXPECT_EQ(wayInWords({nullptr, 1610, 359.5}), "1 mi N, 360° true");
}

TEST(Nearest, IsThatOfMeasuringEveryStation) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> latitude(-90, 90);
    std::uniform_real_distribution<double> longitude(-180, 180);
    StationArray stations;
    for (int i = 0; i < 300; ++i) {
        stations.push_back(
            makeStation({std::to_string(i), {}, {}, latitude(random), longitude(random)}));
    }
    for (const auto& from : stations) {
        const auto place = [](const auto& one) {
            return platform::Location{one->latitude, one->longitude};
        };
        double least = INFINITY;
        for (const auto& other : stations) {
            least =
                other == from ? least : std::min(least, distanceMetres(place(from), place(other)));
        }
        const auto found = nearest(*from, stations, [](const auto&) { return true; });
        ASSERT_TRUE(found);
        EXPECT_EQ(found->metres, least);
    }
}

} // namespace
} // namespace catalogue
