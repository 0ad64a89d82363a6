// SPDX-License-Identifier: MIT
#include "platform/Addresses.h"
#include "tests/support/ShownCatalogue.h"

namespace {

using platform::Events;

const std::string site = "https://" + std::string(platform::addresses::chartHost);

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
    }
    void point(Events::Type type, double seconds) {
        host.events.event = {type, seconds};
        window.secView.delegate->webView_mouseDidMoveOverElement_modifierFlags();
    }
};

TEST_F(Chart, TakesTheMapsPlaceAndComesBack) {
    choose(4);
    EXPECT_TRUE(window.mapV.hidden);
    EXPECT_EQ(window.mapV.mapType, 4);
    EXPECT_FALSE(window.secView.hidden);
    EXPECT_FALSE(window.dLcikWords.hidden);
    EXPECT_EQ(window.secView.place, window.mapV.place);
    choose(1);
    EXPECT_FALSE(window.mapV.hidden);
    EXPECT_EQ(window.mapV.mapType, 1);
    EXPECT_TRUE(window.secView.hidden);
    EXPECT_TRUE(window.dLcikWords.hidden);

    choose(4);
    controller->quitting();
    EXPECT_EQ(platform::integerOf(host.userDefaults.objectForKey("curmaptype")), 4);
    restart();
    EXPECT_FALSE(window.mapV.hidden);
    EXPECT_TRUE(window.secView.hidden);
    EXPECT_EQ(window.mapV.mapType, 4);
}

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

TEST_F(Chart, ADoubleClickOpensTheBrowser) {
    const auto clickTwice = [this](double first, double second) {
        host.workspace.opened.clear();
        point(Events::leftMouseUp, first);
        point(Events::mouseMoved, second - 0.01);
        point(Events::leftMouseUp, second);
        return host.workspace.opened;
    };
    EXPECT_TRUE(clickTwice(10, 10.2).empty()) << "nothing was loaded";
    choose(4);
    EXPECT_EQ(clickTwice(20, 20.2),
              (std::vector<std::string>{site + "/?ll=47.500000,-122.250000&zoom=2"}));
    EXPECT_TRUE(clickTwice(30, 30.6).empty());
    EXPECT_EQ(window.secView.loaded.size(), 1U) << "the chart in the window stays";
}

} // namespace
