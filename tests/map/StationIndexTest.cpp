// SPDX-License-Identifier: MIT
#include "map/StationIndex.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <set>

namespace {

using map::Station;
using map::StationIndex;

std::vector<Station> scattered(int count) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> latitude(-90, 90);
    std::uniform_real_distribution<double> longitude(-180, 180);
    std::vector<Station> stations;
    for (int i = 0; i < count; ++i) {
        stations.push_back({"S" + std::to_string(i), {latitude(random), longitude(random)}});
    }
    return stations;
}

std::set<std::uint32_t> numbers(const StationIndex& index, const map::WorldRect& rect,
                                double cell = 0) {
    std::vector<map::PlacedStation> found;
    index.add(rect, cell, found);
    std::set<std::uint32_t> result;
    for (const auto& station : found) {
        result.insert(station.number);
    }
    EXPECT_EQ(result.size(), found.size());
    return result;
}

TEST(StationIndex, FindsTheStationsInARectangle) {
    const auto stations = scattered(5000);
    const StationIndex index(stations);
    for (const map::WorldRect& rect : {map::WorldRect{0.2, 0.3, 0.4, 0.35},
                                       {0.9, 0, 1.1, 1},
                                       {-0.05, 0.4, 0.05, 0.6},
                                       {0, 0, 1, 1},
                                       {0.5, 0.5, 0.5, 0.5}}) {
        std::set<std::uint32_t> expected;
        for (std::uint32_t i = 0; i < stations.size(); ++i) {
            const map::WorldPoint point = map::project(stations[i].location);
            for (const double turn : {-1.0, 0.0, 1.0}) {
                if (rect.overlaps({point.x + turn, point.y, point.x + turn, point.y})) {
                    expected.insert(i);
                }
            }
        }
        EXPECT_EQ(numbers(index, rect), expected);
    }
}

TEST(StationIndex, ShowsOneStationPerSquare) {
    const auto stations = scattered(20'000);
    const StationIndex index(stations);
    const auto thinned = numbers(index, {0, 0, 1, 1}, 1.0 / 32);
    EXPECT_LE(thinned.size(), 32U * 32U);
    EXPECT_GT(thinned.size(), 1000U);
    // The choice stays the same when the rectangle moves.
    const auto part = numbers(index, {0.5, 0.25, 0.75, 0.5}, 1.0 / 32);
    EXPECT_LE(part.size(), 10U * 10U);
    for (const std::uint32_t number : part) {
        EXPECT_TRUE(thinned.contains(number));
    }
}

TEST(StationIndex, LeavesOutStationsWithoutAValidPosition) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<Station> stations{
        {"NAN", {nan, 0}}, {"FAR", {0, 181}}, {"POLE", {90, 10}}, {"EAST", {0, 180}}, {"", {0, 0}}};
    const StationIndex index(stations);
    EXPECT_EQ(numbers(index, {0, 0, 1, 1}), (std::set<std::uint32_t>{2, 3, 4}));
    EXPECT_TRUE(numbers(StationIndex(), {0, 0, 1, 1}).empty());
}

TEST(StationIndex, TheNearestIsTheFirstOfThoseWithinReach) {
    const StationIndex index(std::vector<Station>{{"", {0, 0}}, {"", {0, 0}}, {"", {0, 1}}});
    map::Camera camera;
    camera.setSize({360, 360});
    EXPECT_EQ(index.nearest(camera, {180, 185.9}, 6), 0U);
    EXPECT_FALSE(index.nearest(camera, {173.9, 180}, 6));
}

} // namespace
