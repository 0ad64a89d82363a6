// SPDX-License-Identifier: MIT
#include "tests/support/ShownCatalogue.h"

#include <fmt/format.h>

namespace {

using Names = std::vector<std::string>;

class StationFilter : public support::ShownCatalogue {
protected:
    void SetUp() override {
        start({{"KSFO", "SAN FRANCISCO", "CALIFORNIA ", 37.62, -122.37},
               {"KOAK", "OAKLAND", "CALIFORNIA ", 37.72, -122.22},
               {"KSJC", "SAN JOSE", "CALIFORNIA ", 37.37, -121.93},
               {"MROC", "SAN JOSE", "COSTA RICA ", 9.99, -84.2},
               {"KSAC", "SACRAMENTO", "CALIFORNIA ", 38.51, -121.5}});
    }
};

TEST_F(StationFilter, SearchesTermsFromLastToFirstInTheChosenMode) {
    struct {
        int mode;
        const char* text;
        Names found;
    } const rows[] = {
        {0, "sfo", {"KSFO"}},
        {0, "sf, oak", {"KOAK", "KSFO"}},
        {0, "KS,SF", {"KSFO", "KSFO", "KSJC", "KSAC"}},
        {0, "ksfo ", {"KSFO"}},
        {0, "", {}},
        {0, " ,", {}},
        {1, "jose", {"KSJC", "MROC"}},
        {2, "costa", {"MROC"}},
        {2, "san", {}},
        {3, "k", {}},
        {-1, "k", {}},
    };
    controller->searchFieldDidStartSearching();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        window.switchie.segment = row.mode;
        controller->switchieswitche();
        search(row.text);
        EXPECT_EQ(shown(), row.found);
        EXPECT_EQ(window.table.rows, static_cast<std::int64_t>(row.found.size()));
        EXPECT_EQ(controller->workingCollection->numberOfStations, window.table.rows);
        EXPECT_EQ(window.words.text,
                  fmt::format("{} station{}", row.found.size(), row.found.size() < 2 ? "" : "s"));
    }
    controller->searchFieldDidEndSearching();
    search("too late");
    EXPECT_EQ(shown().size(), 5U);
}

TEST_F(StationFilter, DistancesAreMeasuredFromTheSelectedRowOverTheWholeCatalogue) {
    const Names all = shown();
    struct {
        int item;
        Names found;
        std::int64_t miles;
    } const rows[] = {
        {0, {}, 10},
        {1, {"KSFO"}, 25},
        {2, {"KSFO", "KSJC"}, 50},
        {3, {"KSFO", "KSJC", "KSAC"}, 100},
        {4, all, 0},
        {-1, all, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.item);
        controller->searchFieldDidEndSearching();
        window.table.selectRow(1);
        chooseDistance(row.item);
        EXPECT_EQ(shown(), row.found);
        const auto& distance = controller->filter().distance;
        EXPECT_EQ(distance ? distance->miles : 0, row.miles);
    }
    // The selected station is not near itself, so it is not listed and nothing stays selected.
    window.table.selectRow(1);
    chooseDistance(0);
    EXPECT_EQ(window.table.selected, -1);
    chooseDistance(3);
    EXPECT_EQ(shown(), Names{});
}

TEST_F(StationFilter, TheMapShowsTwoKilometresAroundTheSelectedStationInTheChosenType) {
    window.switchieDu.segment = 2;
    controller->switchieswitcheDu();
    EXPECT_EQ(window.mapV.mapType, 2);
    window.mapV.mapType = 0;
    window.table.selectRow(0);
    EXPECT_EQ(window.mapV.mapType, 2);
    EXPECT_EQ(window.mapV.centre->latitude, 37.62);
    // The fake map fits a region by doubling its width.
    EXPECT_NEAR(window.mapV.region->latitudeSpan * 110996, 2000, 2);
    EXPECT_NEAR(window.mapV.region->longitudeSpan * 88269, 4000, 4);
}

} // namespace
