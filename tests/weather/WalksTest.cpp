// SPDX-License-Identifier: MIT
#include "tests/support/FakeHost.h"
#include "tests/support/Stations.h"
#include "tests/support/WeatherServer.h"
#include "weather/SCWeatherGrabber.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>

namespace {

using support::patience;
using support::WeatherServer;
using Texts = std::vector<std::string>;

/// A host whose sessions reach one server, and a record of everything that is posted.
struct Walks {
    explicit Walks(const WeatherServer& server)
        : sessions(fake.notificationCenter, server.options()) {
        fake.userDefaults.setObject(server.authority(), "dataserverhost");
        for (const char* name :
             {"updateMetarString", "sealMetarString", "updateTafString", "sealTafString"}) {
            tokens.push_back(fake.notificationCenter.addObserver(
                name, [this](const platform::Notification& one) {
                    const std::scoped_lock lock(mutex);
                    posts.push_back(one.name.substr(0, one.name.size() - 6) + ": " +
                                    std::get<std::string>(one.object));
                    threads.insert(std::this_thread::get_id());
                    changed.notify_all();
                }));
        }
        tokens.push_back(fake.notificationCenter.addObserver(
            platform::URLSessions::openRequestsDidChange, [this](const auto&) {
                const std::scoped_lock lock(mutex);
                changed.notify_all();
            }));
    }

    bool waitFor(const std::function<bool()>& condition) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, patience, condition);
    }
    Texts waitForPosts(std::size_t count) {
        waitFor([&] { return posts.size() >= count; });
        const std::scoped_lock lock(mutex);
        return posts;
    }

    support::FakeHost fake;
    std::mutex mutex;
    std::condition_variable changed;
    Texts posts;
    std::set<std::thread::id> threads;
    platform::CurlURLSessions sessions;
    platform::Host host{fake.notificationCenter,
                        fake.userDefaults,
                        fake.searchPaths,
                        fake.bundle,
                        fake.panels,
                        fake.timers,
                        fake.mainThread,
                        fake.clock,
                        fake.log,
                        sessions,
                        fake.workspace,
                        fake.events};
    std::vector<platform::NotificationCenter::Token> tokens;
};

StationArray stations(const std::vector<std::optional<std::string>>& identifiers) {
    StationArray made;
    for (const auto& identifier : identifiers) {
        made.push_back(makeStation({identifier}));
    }
    return made;
}

/// "METAR" or "TAF" and the station: the text of the report that a request asks for.
std::string reportFor(const httplib::Request& request) {
    return (request.get_param_value("dataSource") == "metars" ? "METAR " : "TAF ") +
           request.get_param_value("stationString");
}

void answerReport(const std::string& report, httplib::Response& response) {
    const std::string kind = report.substr(0, report.find(' '));
    response.set_content("<r><" + kind + "><raw_text>" + report + "</raw_text></" + kind + "></r>",
                         "text/xml");
}

TEST(WeatherWalks, PostEachStationsTextInTheOrderOfTheReplies) {
    struct Reply {
        /// The report, and what its handling posts. Without a post the transfer is cut off.
        std::string report;
        Texts posts;
    };
    const std::string metars = "updateMetar: \nMETARS for Favorites\n------";
    const std::string tafs = "updateTaf: \nTAFs for Favorites\n------";
    const struct {
        const char* what;
        StationArray stations;
        std::vector<Reply> replies;
    } cases[] = {
        {"one station, whose TAF stands behind its METAR's capture",
         stations({"KAAA"}),
         {{"METAR KAAA", {"updateMetar: METAR KAAA", "sealMetar: METAR KAAA"}},
          {"TAF KAAA", {"updateTaf: METAR KAAATAF KAAA", "sealTaf: METAR KAAATAF KAAA"}}}},
        {"three stations, METARs first",
         stations({"KAAA", "KBBB", "KCCC"}),
         {{"METAR KAAA", {"updateMetar: METAR KAAA", metars}},
          {"METAR KBBB", {"updateMetar: METAR KBBB"}},
          {"METAR KCCC", {"updateMetar: METAR KCCC", "sealMetar: METAR KCCC"}},
          {"TAF KAAA", {"updateTaf: METAR KCCCTAF KAAA", tafs}},
          {"TAF KBBB", {"updateTaf: TAF KBBB"}},
          {"TAF KCCC", {"updateTaf: TAF KCCC", "sealTaf: TAF KCCC"}}}},
        {"the same station twice, by turns",
         stations({"KAAA", "KAAA"}),
         {{"TAF KAAA", {"updateTaf: TAF KAAA", tafs}},
          {"METAR KAAA", {"updateMetar: METAR KAAA", metars}},
          {"TAF KAAA", {"updateTaf: TAF KAAA", "sealTaf: TAF KAAA"}},
          {"METAR KAAA", {"updateMetar: TAF KAAAMETAR KAAA", "sealMetar: TAF KAAAMETAR KAAA"}}}},
        {"stations without an identifier",
         stations({"KAAA", "    ", std::nullopt, "KDDD"}),
         {{"METAR KAAA", {"updateMetar: METAR KAAA", metars, "updateMetar: ", "updateMetar: "}},
          {"TAF KAAA", {"updateTaf: TAF KAAA", tafs, "updateTaf: ", "updateTaf: "}},
          {"METAR KDDD", {"updateMetar: METAR KDDD", "sealMetar: METAR KDDD"}},
          {"TAF KDDD", {"updateTaf: METAR KDDDTAF KDDD", "sealTaf: METAR KDDDTAF KDDD"}}}},
        {"a failure, which ends one walk",
         stations({"KAAA", "KBBB"}),
         {{"METAR KAAA", {"updateMetar: METAR KAAA", metars}},
          {"METAR KBBB", {}},
          {"TAF KAAA", {"updateTaf: TAF KAAA", tafs}},
          {"TAF KBBB", {"updateTaf: TAF KBBB", "sealTaf: TAF KBBB"}}}},
        {"no station", {}, {}},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.what);
        std::mutex mutex;
        std::map<std::string, int> asked;
        std::map<std::string, bool> isCut;
        WeatherServer server([&](const httplib::Request& request, httplib::Response& response) {
            const std::string report = reportFor(request);
            std::unique_lock lock(mutex);
            const std::string gate = report + std::to_string(++asked[report]);
            const bool cut = isCut[report];
            lock.unlock();
            server.gates.pass(gate);
            answerReport(report, response);
            if (cut) {
                response.body.clear();
                response.set_content_provider(9, "a/b", [](auto, auto, auto&) { return false; });
            }
        });
        Walks walks(server);
        Texts expected;
        for (const Reply& reply : one.replies) {
            isCut[reply.report] = reply.posts.empty();
        }
        SCWeatherGrabber::init(walks.host)->getNewMessages(one.stations);
        std::map<std::string, int> opened;
        for (const Reply& reply : one.replies) {
            server.gates.open(reply.report + std::to_string(++opened[reply.report]));
            expected.insert(expected.end(), reply.posts.begin(), reply.posts.end());
            ASSERT_EQ(walks.waitForPosts(expected.size()), expected);
        }
        EXPECT_TRUE(walks.waitFor([&] { return walks.sessions.openRequests() == 0; }));
        EXPECT_EQ(server.targets().size(), one.replies.size());
        EXPECT_EQ(walks.posts, expected);
    }
}

/// A server that answers many requests at once, each after a pause of its own.
void answerInAnyOrder(const httplib::Request& request, httplib::Response& response) {
    std::this_thread::sleep_for(
        std::chrono::microseconds(std::hash<std::string>()(request.target) % 3000));
    answerReport(reportFor(request), response);
}

/// Identifiers that tell the grabber and the place in its list.
StationArray manyStations(char grabber) {
    StationArray made;
    for (int i = 1000; i < 1200; ++i) {
        made.push_back(makeStation({grabber + std::to_string(i)}));
    }
    return made;
}

TEST(WeatherWalks, OfSeveralGrabbersGoOnWhenTheirOwnerLetsThemGo) {
    WeatherServer server(answerInAnyOrder);
    Walks walks(server);
    std::vector<std::weak_ptr<SCWeatherGrabber>> grabbers;
    std::shared_ptr<SCWeatherGrabber> current;
    for (const char name : {'A', 'B', 'C'}) {
        current = SCWeatherGrabber::init(walks.host);
        grabbers.push_back(current);
        current->getNewMessages(manyStations(name));
        // The next one starts in the middle of this one.
        walks.waitForPosts(static_cast<std::size_t>(name - 'A' + 1) * 100);
    }
    current.reset();
    const Texts posts = walks.waitForPosts(3 * 2 * (200 + 1 + 1));
    walks.sessions.stop();
    for (const auto& grabber : grabbers) {
        EXPECT_TRUE(grabber.expired());
    }
    EXPECT_EQ(walks.threads.size(), 1U);
    EXPECT_FALSE(walks.threads.contains(std::this_thread::get_id()));
    EXPECT_EQ(
        std::ranges::count_if(posts, [](const auto& post) { return post.ends_with("------"); }), 6);
    for (const std::string start : {"METAR A", "METAR B", "METAR C", "TAF A", "TAF B", "TAF C"}) {
        const std::string update = start[0] == 'M' ? "updateMetar: " : "updateTaf: ";
        int place = 1000;
        for (const std::string& post : posts) {
            // Behind the last text of the walk that ended first, where that is left.
            if (post.starts_with(update) && post.ends_with(start + std::to_string(place))) {
                ++place;
            }
        }
        EXPECT_EQ(place, 1200) << start;
    }
}

TEST(WeatherWalks, EndWithTheProgramInTheMiddle) {
    WeatherServer server(answerInAnyOrder);
    std::weak_ptr<SCWeatherGrabber> observed;
    Walks walks(server);
    {
        const auto grabber = SCWeatherGrabber::init(walks.host);
        observed = grabber;
        grabber->getNewMessages(manyStations('A'));
    }
    walks.waitForPosts(50);
    walks.sessions.stop();
    const std::size_t posts = walks.posts.size();
    EXPECT_TRUE(observed.expired());
    EXPECT_LT(posts, 400U);
    SCWeatherGrabber::init(walks.host)->getNewMessages(manyStations('B'));
    EXPECT_EQ(walks.posts.size(), posts);
}

TEST(WeatherWalks, StartAgainWhileRepliesOfTheSameGrabberAreHandled) {
    WeatherServer server([](const httplib::Request& request, httplib::Response& response) {
        answerReport(reportFor(request), response);
    });
    Walks walks(server);
    const auto grabber = SCWeatherGrabber::init(walks.host);
    for (std::size_t i = 1; i <= 20; ++i) {
        grabber->getNewMessages(stations({"KAAA", std::nullopt, "KCCC"}));
        walks.waitForPosts(2 * i);
    }
    EXPECT_TRUE(walks.waitFor([&] { return walks.sessions.openRequests() == 0; }));
    walks.sessions.stop();
    EXPECT_TRUE(std::ranges::count_if(
        walks.posts, [](const auto& post) { return post.starts_with("sealTaf"); }));
}

} // namespace
