// SPDX-License-Identifier: MIT
#include "tests/support/FakeHost.h"
#include "tests/support/Stations.h"
#include "tests/weather/Posts.h"
#include "weather/SCWeatherGrabber.h"

#include <gtest/gtest.h>

namespace {

using support::WeatherServer;

/// The default data server with the headers that it sends, at clocks that stand still: whatever
/// goes beyond a minute's budget never comes.
struct Precedence : testing::Test {
    static platform::URLSessionOptions optionsFor(const WeatherServer& server) {
        platform::URLSessionOptions options = server.options();
        options.connectTo = server.authority();
        options.now = [] { return std::chrono::steady_clock::time_point(std::chrono::hours(1)); };
        options.date = [] { return platform::Date(std::chrono::hours(1)); };
        return options;
    }
    /// Selects a station, as the main window does: the one selected before is no longer current.
    void select(const std::string& identifier, int favourites) {
        if (!grabbers.empty()) {
            grabbers.back()->supersede();
        }
        StationArray stations{makeStation({identifier})};
        for (int i = 0; i < favourites; ++i) {
            stations.push_back(makeStation({"F" + std::to_string(100 + i)}));
        }
        grabbers.push_back(SCWeatherGrabber::init(host));
        grabbers.back()->getNewMessages(std::move(stations));
    }
    static std::string targetOf(const std::string& kind, const std::string& identifier) {
        return "/api/data/" + kind + "?ids=" + identifier + "&format=xml";
    }

    WeatherServer server{[this](const httplib::Request& request, httplib::Response& response) {
        server.gates.pass(request.get_param_value("ids").substr(0, 1));
        response.set_header("Cache-Control", "max-age=60");
        response.set_content("<r/>", "text/xml");
    }};
    support::FakeHost fake;
    Posts posts{fake.notificationCenter};
    platform::CurlURLSessions sessions{fake.notificationCenter, optionsFor(server)};
    platform::Host host = fake.hostWith(sessions, fake.events);
    std::vector<std::shared_ptr<SCWeatherGrabber>> grabbers;
};

TEST_F(Precedence, TenSelectionsWithTwentyFavouritesStayWithinAMinutesBudget) {
    server.gates.openAll();
    for (int row = 0; row < 10; ++row) {
        const std::string identifier = "S" + std::to_string(row);
        select(identifier, 20);
        // Its own requests are among the first that go out after it was selected.
        const auto isAsked = [&] {
            const auto targets = server.targets();
            return std::ranges::count(targets, targetOf("metar", identifier)) == 1 &&
                   std::ranges::count(targets, targetOf("taf", identifier)) == 1;
        };
        for (std::size_t count = 1; !isAsked(); ++count) {
            ASSERT_TRUE(server.waitForTargets(count)) << identifier << " waits";
        }
    }
    // Each walk posts 21 texts, a header and a seal, and no station was asked about twice.
    EXPECT_EQ(posts.waitFor(10 * 2 * 23).size(), 460U);
    sessions.stop();
    EXPECT_EQ(server.targets().size(), 2U * (10 + 20));
}

TEST_F(Precedence, AStationSelectedOverAndOverIsAskedAboutOnce) {
    for (int typed = 0; typed < 14; ++typed) {
        select("S0", 0);
        ASSERT_TRUE(server.waitForTargets(2));
    }
    select("T0", 0);
    // Two connections were free.
    EXPECT_TRUE(server.waitForTargets(4));
    server.gates.openAll();
    EXPECT_EQ(posts.waitFor(15 * 2 * 2).size(), 60U);
    EXPECT_EQ(server.targets().size(), 4U);
}

TEST(WeatherPrecedence, AGrabberMarksEveryRequestOfItsOwn) {
    support::FakeHost host;
    const auto grabber = SCWeatherGrabber::init(host.host);
    const auto other = SCWeatherGrabber::init(host.host);
    grabber->revalidates = true;
    grabber->getNewMessages({makeStation({"KAAA"}), makeStation({"KBBB"})});
    other->getNewMessages({makeStation({"KCCC"})});
    const auto waiting = host.urlSessions.requests();
    EXPECT_FALSE(*waiting.front().superseded);
    grabber->supersede();
    host.urlSessions.answer("KAAA", "");
    const auto later = host.urlSessions.requests();
    for (const auto& request : {waiting[0], waiting[1], later.back()}) {
        EXPECT_TRUE(request.revalidates && *request.superseded) << request.address.text;
    }
    EXPECT_NE(later.back().address.text.find("KBBB"), std::string::npos);
    EXPECT_FALSE(waiting[2].revalidates || *waiting[2].superseded);
}

} // namespace
