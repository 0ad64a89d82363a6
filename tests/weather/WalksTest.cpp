// SPDX-License-Identifier: MIT
#include "tests/support/FakeHost.h"
#include "tests/support/Stations.h"
#include "tests/weather/Posts.h"
#include "weather/DataServerSessions.h"
#include "weather/SCWeatherGrabber.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using support::WeatherServer;
using Texts = std::vector<std::string>;

/// A host whose data server is the given one, reached through real sessions.
struct Walks {
    explicit Walks(const WeatherServer& server)
        : sessions(fake.notificationCenter, server.options()) {
        fake.userDefaults.setObject(server.authority(), "dataserverhost");
    }

    support::FakeHost fake;
    Posts posts{fake.notificationCenter};
    platform::CurlURLSessions sessions;
    platform::Host host = fake.hostWith(sessions, fake.events);
};

StationArray stations(const std::vector<std::optional<std::string>>& identifiers) {
    StationArray made;
    for (const auto& identifier : identifiers) {
        made.push_back(makeStation({identifier}));
    }
    return made;
}

/// A reply with the report of one station; `kind` is "METAR" or "TAF".
std::string replyOf(const std::string& kind, const std::string& station) {
    return "<r><" + kind + "><raw_text>" + kind + " " + station + "</raw_text></" + kind + "></r>";
}

TEST(WeatherWalks, PostEachStationsTextInTheOrderOfTheReplies) {
    struct Reply {
        std::string kind, station;
        /// What handling it posts. If empty, the transfer fails.
        Texts posts;
    };
    const std::string metars = "updateMetar: \nMETARS for Favorites\n------";
    const std::string tafs = "updateTaf: \nTAFs for Favorites\n------";
    const struct {
        const char* what;
        StationArray stations;
        std::vector<Reply> replies;
    } cases[] = {
        {"one station, whose TAF is appended to its METAR",
         stations({"KAAA"}),
         {{"METAR", "KAAA", {"updateMetar: METAR KAAA", "sealMetar: METAR KAAA"}},
          {"TAF", "KAAA", {"updateTaf: METAR KAAATAF KAAA", "sealTaf: METAR KAAATAF KAAA"}}}},
        {"three stations, METARs first",
         stations({"KAAA", "KBBB", "KCCC"}),
         {{"METAR", "KAAA", {"updateMetar: METAR KAAA", metars}},
          {"METAR", "KBBB", {"updateMetar: METAR KBBB"}},
          {"METAR", "KCCC", {"updateMetar: METAR KCCC", "sealMetar: METAR KCCC"}},
          {"TAF", "KAAA", {"updateTaf: METAR KCCCTAF KAAA", tafs}},
          {"TAF", "KBBB", {"updateTaf: TAF KBBB"}},
          {"TAF", "KCCC", {"updateTaf: TAF KCCC", "sealTaf: TAF KCCC"}}}},
        {"stations without an identifier",
         stations({"KAAA", "    ", std::nullopt, "KDDD"}),
         {{"METAR", "KAAA", {"updateMetar: METAR KAAA", metars, "updateMetar: ", "updateMetar: "}},
          {"TAF", "KAAA", {"updateTaf: TAF KAAA", tafs, "updateTaf: ", "updateTaf: "}},
          {"METAR", "KDDD", {"updateMetar: METAR KDDD", "sealMetar: METAR KDDD"}},
          {"TAF", "KDDD", {"updateTaf: METAR KDDDTAF KDDD", "sealTaf: METAR KDDDTAF KDDD"}}}},
        {"a failure, which ends one walk",
         stations({"KAAA", "KBBB"}),
         {{"METAR", "KAAA", {"updateMetar: METAR KAAA", metars}},
          {"METAR", "KBBB", {}},
          {"TAF", "KAAA", {"updateTaf: TAF KAAA", tafs}},
          {"TAF", "KBBB", {"updateTaf: TAF KBBB", "sealTaf: TAF KBBB"}}}},
        {"no station", {}, {}},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.what);
        support::FakeHost host;
        Posts posts(host.notificationCenter);
        Texts expected;
        SCWeatherGrabber::init(host.host)->getNewMessages(one.stations);
        for (const auto& [kind, station, itsPosts] : one.replies) {
            const std::string source = kind == "METAR" ? "metars" : "TAFs";
            const std::string reply = replyOf(kind, station);
            EXPECT_TRUE(host.urlSessions.answer(
                source + "&requestType=retrieve&format=xml&stationString=" + station,
                itsPosts.empty() ? std::nullopt : std::optional<std::string_view>(reply)));
            host.urlSessions.runWork();
            expected.insert(expected.end(), itsPosts.begin(), itsPosts.end());
            EXPECT_EQ(posts.texts, expected);
        }
        EXPECT_EQ(host.urlSessions.openRequests(), 0U);
    }
}

/// Answers many requests at once. In the middle of its list, a grabber waits at the gate of its
/// name.
struct WalkedServer {
    WeatherServer server{[this](const httplib::Request& request, httplib::Response& response) {
        const std::string station = request.get_param_value("stationString");
        if (station.substr(1) == "1100") {
            server.gates.pass(station.substr(0, 1));
        }
        const bool isMetar = request.get_param_value("dataSource") == "metars";
        response.set_content(replyOf(isMetar ? "METAR" : "TAF", station), "text/xml");
    }};
};

/// 200 stations whose identifiers give the grabber and the place in its list.
StationArray manyStations(char grabber) {
    StationArray made;
    for (int i = 1000; i < 1200; ++i) {
        made.push_back(makeStation({grabber + std::to_string(i)}));
    }
    return made;
}

TEST(WeatherWalks, GoOnWhenTheOwnersOfTheirGrabbersReleaseThem) {
    WalkedServer walked;
    Walks walks(walked.server);
    std::vector<std::weak_ptr<SCWeatherGrabber>> grabbers;
    std::shared_ptr<SCWeatherGrabber> current;
    for (const char name : {'A', 'B', 'C'}) {
        current = SCWeatherGrabber::init(walks.host);
        grabbers.push_back(current);
        current->getNewMessages(manyStations(name));
        walks.posts.waitFor(grabbers.size() * 100);
    }
    current.reset();
    // All three are in the middle of their lists, and now go on side by side.
    walked.server.gates.openAll();
    const Texts posts = walks.posts.waitFor(std::size_t{3} * 2 * (200 + 1 + 1));
    walks.sessions.stop();
    for (const auto& grabber : grabbers) {
        EXPECT_TRUE(grabber.expired());
    }
    EXPECT_EQ(walks.posts.threads.size(), 1U);
    EXPECT_FALSE(walks.posts.threads.contains(std::this_thread::get_id()));
    EXPECT_EQ(
        std::ranges::count_if(posts, [](const auto& post) { return post.ends_with("------"); }), 6);
    for (const std::string start : {"METAR A", "METAR B", "METAR C", "TAF A", "TAF B", "TAF C"}) {
        const std::string update = start[0] == 'M' ? "updateMetar: " : "updateTaf: ";
        int place = 1000;
        for (const std::string& post : posts) {
            // The last text of the other walk may precede it, if that walk has ended.
            if (post.starts_with(update) && post.ends_with(start + std::to_string(place))) {
                ++place;
            }
        }
        EXPECT_EQ(place, 1200) << start;
    }
}

TEST(DataServerSessions, NameTheProgramAndKeepToTheDefaultServersLimit) {
    std::mutex mutex;
    std::set<std::string> agents;
    WeatherServer server([&](const httplib::Request& request, httplib::Response& response) {
        const std::scoped_lock lock(mutex);
        agents.insert(request.get_header_value("User-Agent"));
        response.set_content("x", "text/plain");
    });
    platform::URLSessionOptions options = weather::sessionOptions();
    options.certificateFile = server.options().certificateFile;
    options.connectTo = server.authority();
    options.now = [] { return std::chrono::steady_clock::time_point(std::chrono::hours(1)); };
    platform::NotificationCenter center;
    platform::CurlURLSessions sessions(center, options);
    const std::string old = "https://aviationweather.gov/adds/dataserver_current/httpparam"
                            "?dataSource=TAFs&stationString=K";
    for (int i = 0; i < 101; ++i) {
        sessions.startDataTask({{old + std::to_string(i)}}, [](const auto&) {});
    }
    EXPECT_TRUE(server.waitForTargets(100));
    EXPECT_EQ(support::fetch(sessions, "https://localhost/other"), "x");
    const std::vector<std::string> targets = server.targets();
    EXPECT_EQ(targets.size(), 101U);
    EXPECT_EQ(std::ranges::count_if(targets,
                                    [](const std::string& target) {
                                        return target.starts_with("/api/data/taf?ids=K");
                                    }),
              100);
    EXPECT_EQ(agents, std::set<std::string>{"Nosig/1.0"});
}

} // namespace
