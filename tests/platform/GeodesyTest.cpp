// SPDX-License-Identifier: MIT
#include "platform/values/Geodesy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace platform {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(Geodesy, MeasuresTheShortestLineAlongTheEllipsoid) {
    // Reference values: an equatorial degree of WGS84, half a meridian, and a published example of
    // the inverse problem (Wellington to Salamanca).
    struct {
        Location from, to;
        double metres, bearing;
    } const rows[] = {
        {{0, 179.5}, {0, -179.5}, 111319.491, 90},
        {{0, 0}, {0, 180}, 20003931.459, 0},
        {{-41.32, 174.81}, {40.96, -5.50}, 19959679.267, 161.067669986160},
    };
    for (const auto& row : rows) {
        EXPECT_NEAR(distanceMetres(row.from, row.to), row.metres, 0.01);
        EXPECT_NEAR(initialBearing(row.from, row.to), row.bearing, 1e-9);
    }
    EXPECT_EQ(distanceMetres({52, 13}, {52, 13}), 0);
    // So close to north that a whole turn more is 360 in floating point.
    EXPECT_EQ(initialBearing({0, 0}, {80, -1e-300}), 0);
    EXPECT_TRUE(std::isnan(initialBearing({91, 0}, {0, 0})));
    for (const Location& nowhere : {Location{91, 0}, {nan, 0}}) {
        EXPECT_TRUE(std::isinf(distanceMetres({0, 0}, nowhere)));
        EXPECT_TRUE(std::isinf(DistanceBound(nowhere).leastMetres({0, 0}, 1)));
    }
}

TEST(Geodesy, BoundNeverExceedsTheDistance) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> latitude(-90, 90);
    std::uniform_real_distribution<double> longitude(-180, 180);
    std::uniform_real_distribution<double> near(-0.3, 0.3);
    for (int i = 0; i < 2000; ++i) {
        const Location from{latitude(random), longitude(random)};
        const Location to = i % 2 == 0
                                ? Location{latitude(random), longitude(random)}
                                : Location{std::clamp(from.latitude + near(random), -90., 90.),
                                           from.longitude + near(random)};
        const double metres = distanceMetres(from, to);
        for (const double enough : {0.0, 16093.0, 1e9}) {
            const double least = DistanceBound(from).leastMetres(to, enough);
            EXPECT_LE(least, metres);
            // A bound of 0 would pass the check above, so require a useful one.
            if (enough == 1e9 && metres < 30000) {
                EXPECT_GT(least, metres * 0.999 - 1);
            }
        }
    }
}

} // namespace
} // namespace platform
