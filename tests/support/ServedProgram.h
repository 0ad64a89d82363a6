// SPDX-License-Identifier: MIT
#pragma once

#include "platform/archive/KeyedArchiver.h"
#include "platform/net/URLSession.h"
#include "tests/support/RunningProgram.h"
#include "tests/support/WeatherServer.h"

#include <QClipboard>

#include <optional>
#include <string>
#include <utility>

namespace support {

/// The program with its real windows, which asks a real server. It runs while a test does, so that
/// the server's answers may use what the test's class has.
class ServedProgram : public ::testing::Test, protected RunningProgram {
protected:
    explicit ServedProgram(WeatherServer::Answer answer) : server(std::move(answer)) {
        fake.userDefaults.setObject(server.authority(), "dataserverhost");
    }
    void SetUp() override { begin(); }
    void TearDown() override {
        end();
        server.stop();
    }

    void setCatalogue(const std::shared_ptr<AviationWeatherStationCollection>& stations) {
        EXPECT_TRUE(platform::KeyedArchiver::archiveRootObject(
            stations, (fake.folder / "resources/Stations.STNPKG").string()));
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
    /// Runs the program until the condition holds.
    template <typename Condition>
    void await(const std::string& what, Condition hasCome) {
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                fake.mainThread.run();
                return hasCome();
            },
            60'000))
            << what << " did not come in time";
    }
    static std::string copied() { return QGuiApplication::clipboard()->text().toStdString(); }

    WeatherServer server;
    std::optional<platform::CurlURLSessions> sessions;
};

} // namespace support
