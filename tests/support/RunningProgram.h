// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppDelegate.h"
#include "desktop/text/Text.h"
#include "desktop/windows/ProgramMenus.h"
#include "desktop/windows/ProgramWindows.h"
#include "reports/Sessions.h"
#include "tests/support/FakeHost.h"
#include "weather/DataServerRequests.h"
#include "weather/WorldWeather.h"

#include <QApplication>
#include <QMainWindow>
#include <QTest>
#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace support {

/// The program with its real windows on a fake host. Its map sends no requests.
struct RunningProgram {
    void start() { start(fake.urlSessions); }
    /// The sessions are borrowed until `stop`, and stopped before it.
    void start(platform::URLSessions& sessions) {
        desktop::MapSetup map;
        map.baseMap = QStringLiteral(NOSIG_SOURCE_DIR "/resources/map/world.map");
        wired_.emplace(fake, sessions, map);
        delegate().applicationDidFinishLaunching();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window("SCStationWindowController")));
    }
    void stop() {
        delegate().applicationWillTerminate();
        wired_.reset();
    }

    [[nodiscard]] AppDelegate& delegate() { return wired_->delegate; }
    [[nodiscard]] reports::Store& reports() { return wired_->reports; }
    /// The window made from the interface file of that name.
    static QMainWindow& window(const char* name) {
        QMainWindow* found = nullptr;
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->objectName() == QLatin1String(name)) {
                found = qobject_cast<QMainWindow*>(widget);
            }
        }
        if (found == nullptr) {
            throw std::runtime_error(std::string("no window ") + name);
        }
        return *found;
    }
    static QMainWindow& stations() { return window("SCStationWindowController"); }
    template <typename T>
    static T& child(const char* name) {
        auto* found = stations().findChild<T*>(QString::fromUtf8(name));
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }

    FakeHost fake;

private:
    struct Wired {
        Wired(FakeHost& fake, platform::URLSessions& real, const desktop::MapSetup& map)
            : reports(fake.notificationCenter, fake.clock, fake.log,
                      fake.folder / "reports.sqlite"),
              sessions(real, reports, weather::questionIn),
              host(fake.hostWith(sessions, fake.events)),
              world(host, reports),
              windows(host, reports, world, map,
                      desktop::pathText((fake.folder / "windows.ini").string()), menus),
              delegate(host, reports, windows) {
            menus.actOn(delegate);
        }

        reports::Store reports;
        reports::Sessions sessions;
        platform::Host host;
        weather::WorldWeather world;

        desktop::ProgramMenus menus;
        desktop::ProgramWindows windows;
        AppDelegate delegate;
    };

    std::optional<Wired> wired_;
};

} // namespace support
