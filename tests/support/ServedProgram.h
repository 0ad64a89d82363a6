// SPDX-License-Identifier: MIT
#pragma once

#include "platform/net/URLSession.h"
#include "tests/support/Reports.h"
#include "tests/support/RunningProgram.h"
#include "tests/support/WeatherServer.h"

#include <atomic>
#include <optional>
#include <utility>

namespace support {

/// The program with its real windows, which asks a real server. It runs while a test does, so that
/// the server's answers may use what the test's class has.
class ServedProgram : public ::testing::Test, protected RunningProgram {
protected:
    ServedProgram()
        : ServedProgram([this](const auto& request, auto& response) {
              answerWithReports(request, response);
          }) {}
    explicit ServedProgram(WeatherServer::Answer answer) : server(std::move(answer)) {
        fake.userDefaults.setObject(server.authority(), "dataserverhost");
    }
    void SetUp() override { begin(); }
    void TearDown() override {
        end();
        server.stop();
    }

    void begin() {
        auto options = server.options();
        options.date = [this] { return fake.clock.now(); };
        sessions.emplace(fake.notificationCenter, options);
        start(*sessions);
    }
    void end() {
        server.gates.openAll();
        sessions->stop();
        stop();
    }

    /// Of which the texts of all TAFs, but no elements, tell.
    std::atomic<const char*> change = "";
    WeatherServer server;
    std::optional<platform::CurlURLSessions> sessions;

private:
    /// Reports of each station asked for, once the gate of the question is open: "METAR KAAA".
    void answerWithReports(const httplib::Request& request, httplib::Response& response) {
        const bool isMetar = request.target.find("metar") != std::string::npos;
        const bool isList = request.has_param("ids");
        const std::string ids = request.get_param_value(isList ? "ids" : "stationString");
        EXPECT_TRUE(server.gates.pass((isMetar ? "METAR " : "TAF ") + ids));
        std::vector<std::string> replies;
        for (std::size_t at = 0; at < ids.size(); at += 5) {
            const std::string station = ids.substr(at, 4);
            replies.push_back(isMetar ? metarReply(station) : tafReply(station, change));
        }
        response.set_content(joined(replies), "text/xml");
    }
};

} // namespace support
