// SPDX-License-Identifier: MIT
#include "platform/net/URLSession.h"
#include "tests/support/WeatherServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <future>

namespace platform {
namespace {

using support::fetch;
using support::patience;
using support::WeatherServer;
using TimePoint = std::chrono::steady_clock::time_point;

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
    CurlURLSessions usual(center, options);
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
    EXPECT_EQ(fetch(usual, secure + "/size/104857600"), "(no data)");
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

TEST(URLSession, RunsEverythingOnOneThreadInOrderOfCompletionAndCountsOpenRequests) {
    WeatherServer server([&](const httplib::Request& request, httplib::Response& response) {
        server.gates.pass(request.path);
        response.set_content("text", "text/plain");
    });
    NotificationCenter center;
    CurlURLSessions sessions(center, server.options());
    std::promise<void> isOver;
    const auto token = center.addObserver(URLSessions::openRequestsDidChange, [&](const auto&) {
        if (sessions.openRequests() == 0) {
            isOver.set_value();
        }
    });
    std::vector<std::string> order;
    std::vector<std::thread::id> threads;
    const auto note = [&](const std::string& what) {
        order.push_back(what);
        threads.push_back(std::this_thread::get_id());
    };
    const auto start = [&](const std::string& path, const std::string& opensNext) {
        sessions.startDataTask({{"https://" + server.authority() + path}},
                               [=, &server, &sessions](auto&) {
                                   note(path + " of " + std::to_string(sessions.openRequests()));
                                   sessions.perform([=] { note("after " + path); });
                                   sessions.perform([=, &server] { server.gates.open(opensNext); });
                               });
    };
    start("/1", "");
    start("/2", "/1");
    start("/3", "/2");
    EXPECT_EQ(sessions.openRequests(), 3U);
    server.gates.open("/3");
    ASSERT_EQ(isOver.get_future().wait_for(patience), std::future_status::ready);
    std::promise<void> isLast;
    sessions.perform([&isLast] { isLast.set_value(); });
    ASSERT_EQ(isLast.get_future().wait_for(patience), std::future_status::ready);
    sessions.stop();
    EXPECT_EQ(order, (std::vector<std::string>{"/3 of 3", "after /3", "/2 of 2", "after /2",
                                               "/1 of 1", "after /1"}));
    EXPECT_EQ(std::ranges::count(threads, threads.front()), 6);
    EXPECT_NE(threads.front(), std::this_thread::get_id());
}

TEST(URLSession, StoppingDropsHandlersAndLaterWork) {
    WeatherServer server([&](const httplib::Request& request, httplib::Response&) {
        server.gates.pass(request.path);
    });
    NotificationCenter center;
    CurlURLSessions sessions(center, server.options());
    std::atomic<int> calls = 0;
    const auto held = std::make_shared<int>();
    const auto start = [&](const std::string& path) {
        sessions.startDataTask({{"https://" + server.authority() + path}},
                               [&calls, held](const auto&) { ++calls; });
    };
    start("/1");
    start("/2");
    ASSERT_TRUE(server.waitForTargets(2));
    sessions.stop();
    start("/3");
    sessions.perform([&calls, held] { ++calls; });
    server.gates.openAll();
    sessions.stop();
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_EQ(sessions.openRequests(), 0U);
}

/// Options that send requests for the default data server, and all others, to a test server.
URLSessionOptions leadingTo(const WeatherServer& server) {
    URLSessionOptions options = server.options();
    options.connectTo = server.authority();
    return options;
}

TEST(URLSession, KeepsToAServersLimitPerMinuteNewestRequestsFirst) {
    WeatherServer server(answerByPath);
    std::atomic<TimePoint> now = TimePoint(std::chrono::hours(1));
    URLSessionOptions options = leadingTo(server);
    options.now = [&] { return now.load(); };
    options.hostLimits = {{.host = "AviationWeather.gov", .perMinute = 3, .atOnce = 4}};
    NotificationCenter center;
    CurlURLSessions sessions(center, options);
    for (const char* number : {"1", "2", "3"}) {
        EXPECT_EQ(fetch(sessions, support::defaultServer + number), "text");
    }
    for (const char* number : {"4", "5", "6", "7", "8"}) {
        sessions.startDataTask({{support::defaultServer + number}}, [](const auto&) {});
    }
    // Other hosts are not held up. Their requests also make the sessions look at the clock.
    const std::string other = "https://localhost/";
    EXPECT_EQ(fetch(sessions, other), "text");
    EXPECT_EQ(server.targets().size(), 4U);
    now = now.load() + std::chrono::minutes(1);
    EXPECT_EQ(fetch(sessions, other), "text");
    EXPECT_TRUE(server.waitForTargets(8));
    EXPECT_EQ(fetch(sessions, other), "text");
    std::vector<std::string> targets = server.targets();
    std::erase(targets, "/");
    std::ranges::sort(targets);
    EXPECT_EQ(targets, (std::vector<std::string>{"/1", "/2", "/3", "/6", "/7", "/8"}));
}

} // namespace
} // namespace platform
