// SPDX-License-Identifier: MIT
#include "platform/net/URLSession.h"
#include "tests/support/WeatherServer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <future>

namespace platform {
namespace {

using std::chrono::seconds;
using support::fetch;
using support::patience;
using support::WeatherServer;
using Lines = std::vector<std::string>;

/// Sessions whose requests all go to one server, whatever their host, with clocks that stand still.
/// The server counts its replies and records the requests with their conditions.
struct Reuse : testing::Test {
    void answer(const httplib::Request& request, httplib::Response& response) {
        const std::string tag = request.get_header_value("If-None-Match");
        const std::string control = request.get_header_value("Cache-Control");
        const std::scoped_lock lock(mutex);
        asked.push_back(request.path + (tag.empty() ? "" : " " + tag) +
                        (control.empty() ? "" : " " + control));
        response.set_header("ETag", "\"" + version + "\"");
        if (request.path == "/fresh" || request.path == "/new") {
            response.set_header("Cache-Control", "max-age=60");
        } else if (request.path == "/hop") {
            response.set_redirect("/fresh");
        } else if (request.path == "/mute") {
            response.headers.erase("ETag");
        }
        response.status = !tag.empty() && tag == "\"" + version + "\"" ? 304 : response.status;
        // Says that nothing has changed, but with the tag of another reply than the kept one.
        response.status = request.path == "/muddled" && !tag.empty() ? 304 : response.status;
        if (response.status != 304 && response.status != 302) {
            response.set_content(version + "." + std::to_string(++replies), "text/plain");
        }
    }
    std::string get(const std::string& path, bool revalidates = false) {
        return fetch(sessions, "https://localhost" + path, revalidates);
    }
    Lines takeAsked() {
        const std::scoped_lock lock(mutex);
        return std::exchange(asked, {});
    }
    URLSessionOptions options() {
        URLSessionOptions options = server.options();
        options.connectTo = server.authority();
        options.hostLimits = {{.host = "aviationweather.gov", .perMinute = 100, .atOnce = 4}};
        options.successor = [](const URL& address) {
            return address.text.ends_with("/old") ? URL{support::defaultServer + "new"} : address;
        };
        options.now = [] { return std::chrono::steady_clock::time_point(std::chrono::hours(1)); };
        options.date = [this] { return date.load(); };
        return options;
    }

    std::mutex mutex;
    std::string version = "A";
    int replies = 0;
    Lines asked;
    std::atomic<Date> date = Date(std::chrono::sys_days(std::chrono::year(2024) / 3 / 1));
    WeatherServer server{
        [this](const auto& request, auto& response) { answer(request, response); }};
    NotificationCenter center;
    CurlURLSessions sessions{center, options()};
};

TEST_F(Reuse, FollowsTheHeadersOfEachReply) {
    EXPECT_EQ(get("/fresh"), "A.1");
    EXPECT_EQ(get("/fresh"), "A.1");
    EXPECT_EQ(takeAsked(), Lines{"/fresh"});
    date = date.load() + seconds(60);
    EXPECT_EQ(get("/fresh"), "A.1") << "unchanged";
    EXPECT_EQ(get("/fresh"), "A.1") << "and fresh again";
    EXPECT_EQ(takeAsked(), Lines{"/fresh \"A\""});
    EXPECT_EQ(get("/fresh", true), "A.1") << "revalidated, as requested";
    version = "B";
    EXPECT_EQ(get("/fresh"), "A.1");
    EXPECT_EQ(get("/fresh", true), "B.2");
    EXPECT_EQ(get("/fresh"), "B.2");
    EXPECT_EQ(takeAsked(), (Lines(2, "/fresh \"A\" no-cache")));
    EXPECT_EQ(get("/tagged"), "B.3");
    EXPECT_EQ(get("/tagged"), "B.3");
    EXPECT_EQ(takeAsked(), (Lines{"/tagged", "/tagged \"B\""}));
    EXPECT_EQ(get("/mute"), "B.4");
    EXPECT_EQ(get("/mute"), "B.5") << "never reused";
    EXPECT_EQ(get("/mute", true), "B.6");
    EXPECT_EQ(takeAsked(), (Lines{"/mute", "/mute", "/mute no-cache"}));
}

TEST_F(Reuse, GivesTheRightReplyDespiteRedirectsAndMuddledAnswers) {
    EXPECT_EQ(get("/hop"), "A.1");
    EXPECT_EQ(get("/hop"), "A.2") << "a redirected reply is not kept";
    EXPECT_EQ(takeAsked(), (Lines{"/hop", "/fresh", "/hop", "/fresh"}));
    EXPECT_EQ(get("/muddled"), "A.3");
    version = "B";
    EXPECT_EQ(get("/muddled"), "B.4");
    EXPECT_EQ(takeAsked(), (Lines{"/muddled", "/muddled \"A\"", "/muddled"}));
    // A retired address and its successor share one reply.
    for (const char* address : {"http://localhost/old", "https://localhost/old"}) {
        EXPECT_EQ(fetch(sessions, address), "B.5");
    }
    EXPECT_EQ(fetch(sessions, support::defaultServer + "new"), "B.5");
}

TEST_F(Reuse, CompletesLikeATransfer) {
    EXPECT_EQ(get("/fresh"), "A.1");
    std::promise<Lines> promise;
    Lines order;
    sessions.perform([&] {
        const auto ask = [&](const std::string& name, const std::function<void()>& next) {
            sessions.startDataTask(
                {{"https://localhost/fresh"}}, [&, name, next](const std::optional<Data>& data) {
                    order.push_back(name + " of " + std::to_string(sessions.openRequests()));
                    EXPECT_EQ(data->size(), 3U);
                    next();
                });
        };
        ask("first", [&, ask] { ask("third", [&] { promise.set_value(order); }); });
        ask("second", [] {});
        order.emplace_back("nothing yet");
    });
    auto future = promise.get_future();
    ASSERT_EQ(future.wait_for(patience), std::future_status::ready);
    EXPECT_EQ(future.get(), (Lines{"nothing yet", "first of 2", "second of 2", "third of 1"}));
    EXPECT_EQ(takeAsked(), Lines{"/fresh"});
}

TEST_F(Reuse, SupersededRequestsLeaveHalfOfTheMinuteToTheCurrentOnes) {
    const auto superseded = std::make_shared<std::atomic<bool>>(true);
    for (int i = 0; i < 200; ++i) {
        sessions.startDataTask({{support::defaultServer + std::to_string(i)}, false, superseded},
                               [](const auto&) {});
    }
    ASSERT_TRUE(server.waitForTargets(50));
    for (const std::string name : {"current", "another"}) {
        EXPECT_EQ(fetch(sessions, support::defaultServer + name).substr(0, 2), "A.");
        EXPECT_EQ(server.targets().back(), "/" + name);
    }
    // A new request for one that is waiting makes it current again.
    EXPECT_EQ(fetch(sessions, support::defaultServer + "7").substr(0, 2), "A.");
    EXPECT_EQ(server.targets().size(), 53U);
}

TEST(URLSession, EqualRequestsShareATransfer) {
    WeatherServer server([&](const httplib::Request& request, httplib::Response& response) {
        server.gates.pass(request.path);
        response.set_content("x", "text/plain");
    });
    NotificationCenter center;
    std::atomic<int> posts = 0;
    const auto token =
        center.addObserver(URLSessions::openRequestsDidChange, [&](const auto&) { ++posts; });
    CurlURLSessions sessions(center, server.options());
    Lines seen;
    std::promise<void> isOver;
    const std::function<void(const std::string&, const std::string&)> ask =
        [&](const std::string& path, const std::string& name) {
            sessions.startDataTask(
                {{"https://" + server.authority() + path}}, [&, name](auto& data) {
                    if (name == "first") {
                        ask("/a", "again");
                    }
                    seen.push_back(name + ": " + (data ? std::to_string(data->size()) : "none") +
                                   ", open " + std::to_string(sessions.openRequests()));
                    if (name == "again") {
                        server.gates.open("/b");
                    } else if (name == "other") {
                        sessions.perform([&] { isOver.set_value(); });
                    }
                });
        };
    ask("/a", "first");
    ask("/b", "other");
    ask("/a", "second");
    server.gates.open("/a");
    ASSERT_EQ(isOver.get_future().wait_for(patience), std::future_status::ready);
    sessions.stop();
    EXPECT_EQ(seen, (Lines{"first: 1, open 4", "second: 1, open 3", "again: 1, open 2",
                           "other: 1, open 1"}));
    EXPECT_EQ(server.targets().size(), 3U);
    EXPECT_EQ(posts, 8);
}

} // namespace
} // namespace platform
