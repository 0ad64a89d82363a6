// SPDX-License-Identifier: MIT
#include "product/Addresses.h"
#include "tests/support/ShownCatalogue.h"

namespace {

const std::string site = "https://" + std::string(product::addresses::chartHost);

class Chart : public support::ShownCatalogue {
protected:
    Chart() {
        start({{"KJFK", "KENNEDY", "NEW YORK", 40.6413, -73.7781},
               {"KPAE", "PAINE", "WASHINGTON", 47.5, -122.25},
               {"KXXX", "NOWHERE", "WASHINGTON", 95, 0}});
    }

    void choose(int segment) {
        window.switchieDu.segment = segment;
        controller->switchieswitcheDu();
        const bool isChart = segment == 4;
        EXPECT_EQ(window.mapV.hidden, isChart);
        EXPECT_EQ(window.secView.hidden, !isChart);
        EXPECT_EQ(window.dLcikWords.hidden, !isChart);
    }
};

TEST_F(Chart, FollowsTheSelectionWhileItShows) {
    struct {
        const char* when;
        std::int64_t row;
        const char* query;
    } const cases[] = {{"the first row loads no chart", 0, nullptr},
                       {"the second row", 1, "/?ll=47.500000,-122.250000&zoom="},
                       {"no row", -1, "/?ll=0.000000,0.000000&zoom="}};
    for (const auto& chosen : cases) {
        SCOPED_TRACE(chosen.when);
        restart();
        window.table.selectRow(chosen.row);
        EXPECT_TRUE(window.secView.loaded.empty());
        choose(4);
        EXPECT_EQ(window.secView.place, window.mapV.place);
        if (!chosen.query) {
            EXPECT_TRUE(window.secView.loaded.empty());
            EXPECT_FALSE(window.chart->feedingURLString);
            continue;
        }
        ASSERT_EQ(window.secView.loaded.size(), 1U);
        EXPECT_EQ(window.secView.loaded.back(), site + chosen.query + "1");
        EXPECT_EQ(window.chart->feedingURLString, site + chosen.query + "2");
    }
    window.table.selectRow(0);
    EXPECT_EQ(window.secView.loaded.back(), site + "/?ll=40.641300,-73.778100&zoom=1");
    window.table.selectRow(2);
    EXPECT_EQ(host.log.lines().back(), "Invalid center");
    EXPECT_EQ(window.secView.loaded.size(), 2U);
    choose(0);
    window.table.selectRow(1);
    EXPECT_EQ(window.secView.loaded.size(), 2U);
}

} // namespace
