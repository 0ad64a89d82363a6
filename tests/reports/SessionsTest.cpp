// SPDX-License-Identifier: MIT
#include "reports/Sessions.h"
#include "platform/net/URLSession.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WeatherServer.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

namespace reports {
namespace {

using Ending = Answer::Ending;
using support::WeatherServer;

std::string metarOf(const std::string& station, const std::string& raw) {
    return "<response><data><METAR><raw_text>" + raw + "</raw_text><station_id>" + station +
           "</station_id><observation_time>2024-03-01T12:00:00Z</observation_time></METAR></data>"
           "</response>";
}

std::string tafOf(const std::string& station) {
    return "<response><data><TAF><raw_text>TAF</raw_text><station_id>" + station +
           "</station_id><issue_time>2024-03-01T12:00:00Z</issue_time></TAF></data></response>";
}

/// Sessions that understand the addresses "/mKAAA", the METAR of KAAA, and "/tKAAA", its TAF, and
/// such with several stations, "/mKAAAKBBB".
struct SessionsTest : testing::Test {
    static std::optional<Question> questionIn(const platform::URL& address) {
        const std::string last = address.text.substr(address.text.rfind('/') + 1);
        Question question{last.front() == 'm' ? Kind::metar : Kind::taf, {}};
        for (std::size_t at = 1; at + 4 <= last.size(); at += 4) {
            question.stations.push_back(last.substr(at, 4));
        }
        return last.size() % 4 == 1 ? std::optional(question) : std::nullopt;
    }
    std::string get(const std::string& path) {
        return support::fetch(sessions, "https://" + server.authority() + path);
    }

    WeatherServer server{[](const httplib::Request& request, httplib::Response& response) {
        // Of a list, the reply has the first station's report.
        const std::string station = request.path.substr(2, 4);
        std::string body = request.path[1] == 'm' ? metarOf(station, "raw") : tafOf(station);
        if (station == "K204") {
            body.clear();
        } else if (station == "KHTM") {
            body = "<html><p>Busy</html>";
        } else if (station == "KNIL") {
            body = "<response><data num_results=\"0\"/></response>";
        } else if (station == "KOTH") {
            body = metarOf("KAAA", "of another question");
        } else if (request.path.ends_with("KCUT")) {
            body.resize(body.size() - 3);
        }
        response.set_content(body, "text/xml");
        const int status = std::atoi(&station[1]);
        response.status = status > 200 ? status : 200;
    }};
    support::TemporaryFolder folder;
    support::FakeHost host;
    Store store{host.notificationCenter, host.clock, host.log, folder / "reports.sqlite"};
    platform::CurlURLSessions real{host.notificationCenter, server.options()};
    Sessions sessions{real, store, questionIn};
};

TEST_F(SessionsTest, GiveTheStoreWhatRepliesBringAndHandThemOn) {
    const struct {
        const char* path;
        Ending ending;
        int status;
        bool hasReport;
    } cases[] = {
        {"/mKAAA", Ending::whole, 200, true},          {"/tKAAA", Ending::whole, 200, true},
        {"/mK429", Ending::refused, 429, false},       {"/mK204", Ending::nothing, 204, false},
        {"/mKHTM", Ending::notUnderstood, 200, false}, {"/mKNIL", Ending::nothing, 200, false},
        {"/tKOTH", Ending::nothing, 200, false},       {"/mKOTH", Ending::nothing, 200, false},
        {"/mKCUT", Ending::whole, 200, true},          {"/mK299", Ending::whole, 299, true},
        {"/mK300", Ending::refused, 300, false},
    };
    for (const auto& [path, ending, status, hasReport] : cases) {
        SCOPED_TRACE(path);
        const std::string plain = support::fetch(real, "https://" + server.authority() + path);
        EXPECT_EQ(get(path), plain);
        const bool isMetar = path[1] == 'm';
        const StationReports kept = store.reportsOf(path + 2);
        const auto& answer = isMetar ? kept.metarAnswer : kept.tafAnswer;
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->ending, ending);
        EXPECT_EQ(answer->status, status);
        EXPECT_EQ(isMetar ? kept.metar != nullptr : kept.taf != nullptr, hasReport);
    }
    EXPECT_EQ(store.reportsOf("KAAA").metar->raw, "of another question");
    EXPECT_EQ(get("/other"), support::fetch(real, "https://" + server.authority() + "/other"));
    EXPECT_EQ(support::fetch(sessions, "https://localhost:1/mKOFF"), "(no data)");
    EXPECT_EQ(store.reportsOf("KOFF").metarAnswer->ending, Ending::notReached);
}

TEST_F(SessionsTest, AnswerForEveryStationOfAList) {
    const struct {
        const char* path;
        Ending first;
        Ending second;
    } cases[] = {
        {"/mKAAAKNIL", Ending::whole, Ending::nothing},
        {"/tKAAAKNIL", Ending::whole, Ending::nothing},
        {"/mKBBBKCUT", Ending::whole, Ending::notUnderstood},
        {"/mKOTHKNIL", Ending::nothing, Ending::nothing},
        {"/mKHTMKNIL", Ending::notUnderstood, Ending::notUnderstood},
        {"/mK204KNIL", Ending::nothing, Ending::nothing},
        {"/mK429KNIL", Ending::refused, Ending::refused},
    };
    for (const auto& [path, first, second] : cases) {
        SCOPED_TRACE(path);
        EXPECT_EQ(get(path), support::fetch(real, "https://" + server.authority() + path));
        const std::string stations = path + 2;
        for (const auto& [station, ending] :
             {std::pair(stations.substr(0, 4), first), std::pair(stations.substr(4), second)}) {
            const StationReports kept = store.reportsOf(station);
            const auto& answer = path[1] == 'm' ? kept.metarAnswer : kept.tafAnswer;
            ASSERT_TRUE(answer) << station;
            EXPECT_EQ(answer->ending, ending) << station;
            EXPECT_EQ(kept.openQuestions, 0);
        }
    }
    EXPECT_FALSE(store.reportsOf("KNIL").metar);
}

TEST_F(SessionsTest, TellTheStoreBeforeTheHandlerFromAnyThread) {
    std::vector<std::jthread> threads;
    std::atomic<int> early = 0;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&, thread] {
            for (int i = 0; i < 10; ++i) {
                const std::string station = "K" + std::to_string(100 + 10 * thread + i);
                std::promise<void> handled;
                platform::URLSessions::Request request{
                    {"https://" + server.authority() + "/m" + station}};
                early += 1;
                request.ended = [&](const auto&) {
                    early -= store.reportsOf(station).metar ? 1 : 0;
                };
                sessions.startDataTask(request, [&](const auto&) { handled.set_value(); });
                EXPECT_EQ(handled.get_future().wait_for(support::patience),
                          std::future_status::ready)
                    << station;
            }
        });
    }
    threads.clear();
    EXPECT_EQ(early, 0);
    EXPECT_EQ(store.allMetars().size(), 40U);
}

} // namespace
} // namespace reports
