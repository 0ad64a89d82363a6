// SPDX-License-Identifier: MIT
#include "catalogue/StationCells.h"
#include "tests/support/Stations.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(StationDescription, NamesThePlaceOnItsRightSideOfZero) {
    const struct {
        double latitude;
        double longitude;
        const char* place;
    } cases[] = {
        {51 + 29 / 60., -28 / 60., "51°29'0\"N 0°28'0\"W"},
        {-33 - 58 / 60., 18 + 36 / 60., "33°58'0\"S 18°36'0\"E"},
        {-1 / 3600., 179.99999, "0°0'1\"S 180°0'0\"E"},
        {0, -180, "0°0'0\"N 180°0'0\"W"},
        {90.5, 0, ""},
        {0, std::numeric_limits<double>::quiet_NaN(), ""},
    };
    for (const auto& [latitude, longitude, place] : cases) {
        const auto station = makeStation({"KAAA", "NAME  ", "REGION", latitude, longitude});
        EXPECT_EQ(catalogue::stationDescription(*station), std::string("KAAA · NAME · REGION · ") +
                                                               place + (*place ? " · " : "") +
                                                               "elevation 0");
    }
    EXPECT_EQ(catalogue::stationDescription(*makeStation({})), "0°0'0\"N 0°0'0\"E · elevation 0");
}

} // namespace
