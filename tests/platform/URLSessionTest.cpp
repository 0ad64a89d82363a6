// SPDX-License-Identifier: MIT
#include "platform/net/URLSession.h"
#include "tests/support/WeatherServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <future>
#include <set>

namespace platform {
namespace {

using std::chrono::seconds;
using support::fetch;
using support::patience;
using support::WeatherServer;
using Lines = std::vector<std::string>;

/// Answers as the request's path says.
void answerByPath(const httplib::Request& request, httplib::Response& response) {
    const std::string path = request.path.substr(1, request.path.find('/', 1) - 1);
    const std::string rest = request.path.substr(path.size() + 1);
    response.set_header("Set-Cookie", "seen=1; Path=/");
    response.set_content("text", "text/plain");
    if (path == "status") {
        response.status = std::stoi(rest.substr(1));
        response.body = response.status == 204 ? "" : response.body;
    } else if (path == "size") {
        // The server compresses "text/plain" only.
        response.set_content(std::string(std::stoul(rest.substr(1)), ' '),
                             rest.ends_with("p") ? "text/plain" : "application/octet-stream");
    } else if (path == "hops") {
        const int left = std::stoi(rest.substr(1));
        response.set_redirect(left > 1 ? "/hops/" + std::to_string(left - 1) : "/");
    } else if (path == "to") {
        response.set_redirect(request.get_param_value("address"));
    } else if (path == "half") {
        response.body.clear();
        response.set_content_provider(1000, "a/b", [](auto, auto, httplib::DataSink& sink) {
            sink.write("half", 4);
            return false;
        });
    } else if (path == "headers") {
        response.body = request.get_header_value("User-Agent") + "|" +
                        request.get_header_value("Accept-Encoding") + "|" +
                        request.get_header_value("Cookie");
    }
}

TEST(URLSession, GivesTheBodyOfACompleteReplyAndNothingElse) {
    WeatherServer plain(answerByPath, WeatherServer::http);
    WeatherServer server(answerByPath);
    WeatherServer stranger(answerByPath);
    NotificationCenter center;
    URLSessionOptions options = server.options();
    options.userAgent = "Tester/1.0";
    options.byteLimit = 1'000'000;
    CurlURLSessions sessions(center, options);
    const std::string secure = "https://" + server.authority();
    const std::string open = "http://" + plain.authority();
    const std::string limit(options.byteLimit, ' ');
    const std::pair<std::string, std::string> cases[] = {
        {secure + "/", "text"},
        {secure + "/status/204", ""},
        {secure + "/status/500", "text"},
        {secure + "/half", "(no data)"},
        {secure + "/size/1000000", limit},
        {secure + "/size/1000001", "(no data)"},
        {secure + "/size/1000001p", "(no data)"},
        {secure + "/hops/5", "text"},
        {secure + "/hops/6", "(no data)"},
        {secure + "/to/?address=" + open + "/", "(no data)"},
        {open + "/", "text"},
        {open + "/to/?address=" + secure + "/", "(no data)"},
        {"https://" + stranger.authority() + "/", "(no data)"},
        {"https://127.0.0.1" + server.authority().substr(9) + "/", "(no data)"},
        {"file:///etc/hostname", "(no data)"},
        {"", "(no data)"},
    };
    for (const auto& [address, expected] : cases) {
        SCOPED_TRACE(address);
        const std::string result = fetch(sessions, address);
        EXPECT_TRUE(result == expected) << result.substr(0, 100);
    }
    EXPECT_EQ(plain.targets().size(), 2U) << "no request was redirected to plain http";
    EXPECT_EQ(fetch(sessions, secure + "/headers"), "Tester/1.0|gzip|");
}

TEST(URLSession, GivesUpOnTransfersThatStallOrNeverEnd) {
    WeatherServer server([&](const httplib::Request& request, httplib::Response& response) {
        const bool isSilent = request.path == "/silent";
        if (isSilent) {
            server.gates.pass("end");
        }
        response.set_chunked_content_provider("a/b", [&, isSilent](auto, httplib::DataSink& sink) {
            return !isSilent && sink.write(".", 1);
        });
    });
    NotificationCenter center;
    URLSessionOptions options = server.options();
    options.idleLimit = std::chrono::milliseconds(300);
    CurlURLSessions idle(center, options);
    EXPECT_EQ(fetch(idle, "https://" + server.authority() + "/silent"), "(no data)");
    options.idleLimit = std::chrono::hours(1);
    options.totalLimit = std::chrono::milliseconds(300);
    options.byteLimit = std::size_t{1} << 40;
    CurlURLSessions total(center, options);
    EXPECT_EQ(fetch(total, "https://" + server.authority() + "/endless"), "(no data)");
    server.gates.openAll();
}

TEST(URLSession, RunsHandlersOnOneThreadAsTransfersCompleteWhichEqualRequestsShare) {
    WeatherServer server([&](const httplib::Request& request, httplib::Response& response) {
        server.gates.pass(request.path);
        response.set_content("text", "text/plain");
    });
    NotificationCenter center;
    std::atomic<int> posts = 0;
    const auto token =
        center.addObserver(URLSessions::openRequestsDidChange, [&](const auto&) { ++posts; });
    CurlURLSessions sessions(center, server.options());
    Lines order;
    std::set<std::thread::id> threads;
    const auto note = [&](const std::string& what) {
        order.push_back(what);
        threads.insert(std::this_thread::get_id());
    };
    const auto ask = [&](const std::string& path, const std::string& name,
                         const std::function<void()>& then) {
        sessions.startDataTask({{"https://" + server.authority() + path}},
                               [&, name, then](const auto& data) {
                                   EXPECT_TRUE(data && data->size() == 4) << name;
                                   note(name + " of " + std::to_string(sessions.openRequests()));
                                   sessions.perform([&note, name] { note("after " + name); });
                                   then();
                               });
    };
    std::promise<void> isOver;
    ask("/b", "other", [&] { sessions.perform([&] { isOver.set_value(); }); });
    ask("/a", "first", [&] { ask("/a", "again", [&] { server.gates.open("/b"); }); });
    ask("/a", "second", [] {});
    EXPECT_EQ(sessions.openRequests(), 3U);
    server.gates.open("/a");
    ASSERT_EQ(isOver.get_future().wait_for(patience), std::future_status::ready);
    sessions.stop();
    EXPECT_EQ(order, (Lines{"first of 3", "second of 3", "after first", "after second",
                            "again of 2", "after again", "other of 1", "after other"}));
    EXPECT_EQ(server.targets().size(), 3U);
    EXPECT_EQ(posts, 8);
    EXPECT_EQ(threads.size(), 1U);
    EXPECT_FALSE(threads.contains(std::this_thread::get_id()));
}

/// Sessions whose requests all go to one server, whatever their host, with clocks that stand still.
/// The server counts its replies and records the requests with their conditions.
struct Reuse : testing::Test {
    void answer(const httplib::Request& request, httplib::Response& response) {
        const std::string tag = request.get_header_value("If-None-Match");
        const std::string control = request.get_header_value("Cache-Control");
        if (request.path == "/held") {
            server.gates.pass("end");
        }
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
        options.hostLimits = {{.host = "AviationWeather.gov", .perMinute = 6, .atOnce = 4}};
        options.successor = [](const URL& address) {
            return address.text.ends_with("/old") ? URL{support::defaultServer + "new"} : address;
        };
        options.now = [this] { return now.load(); };
        options.date = [this] { return date.load(); };
        return options;
    }

    std::mutex mutex;
    std::string version = "A";
    int replies = 0;
    Lines asked;
    std::atomic<std::chrono::steady_clock::time_point> now{
        std::chrono::steady_clock::time_point(std::chrono::hours(1))};
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

TEST_F(Reuse, StoppingDropsHandlersAndLaterWork) {
    std::atomic<int> calls = 0;
    const auto guard = std::make_shared<int>();
    const auto count = [&calls, guard](const auto&...) { ++calls; };
    sessions.startDataTask({{"https://localhost/held"}}, count);
    ASSERT_TRUE(server.waitForTargets(1));
    sessions.stop();
    sessions.startDataTask({{"https://localhost/late"}}, count);
    sessions.perform(count);
    server.gates.openAll();
    sessions.stop();
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(guard.use_count(), 2) << "but for `count`, all are released";
    EXPECT_EQ(sessions.openRequests(), 0U);
}

TEST_F(Reuse, AServersLimitPerMinuteIsForCurrentRequestsTheNewestFirst) {
    const auto ask = [&](int number, const std::shared_ptr<std::atomic<bool>>& superseded) {
        sessions.startDataTask(
            {{support::defaultServer + std::to_string(number)}, false, superseded},
            [](const auto&) {});
    };
    for (int i = 0; i < 200; ++i) {
        ask(i, std::make_shared<std::atomic<bool>>(true));
    }
    const auto isAnswered = [this](const std::string& address) {
        return fetch(sessions, address).starts_with("A.");
    };
    // Superseded ones leave half of the minute to the current ones. A new request for one that is
    // waiting makes it current again.
    ASSERT_TRUE(server.waitForTargets(3));
    for (const std::string name : {"current", "another", "7"}) {
        EXPECT_TRUE(isAnswered(support::defaultServer + name));
        EXPECT_EQ(server.targets().back(), "/" + name);
    }
    for (int i = 301; i <= 308; ++i) {
        ask(i, nullptr);
    }
    // Other hosts are not held up. Their requests also make the sessions look at the clock.
    const std::string other = "https://localhost/";
    EXPECT_TRUE(isAnswered(other));
    EXPECT_EQ(server.targets().size(), 7U);
    now = now.load() + std::chrono::minutes(1);
    EXPECT_TRUE(isAnswered(other));
    EXPECT_TRUE(server.waitForTargets(14));
    EXPECT_TRUE(isAnswered(other));
    const Lines targets = server.targets();
    EXPECT_THAT(
        Lines(targets.begin() + 7, targets.end()),
        testing::UnorderedElementsAre("/", "/303", "/304", "/305", "/306", "/307", "/308", "/"));
}

} // namespace
} // namespace platform
