// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppDelegate.h"
#include "desktop/text/Text.h"
#include "desktop/windows/ProgramMenus.h"
#include "desktop/windows/ProgramWindows.h"
#include "platform/archive/KeyedArchiver.h"
#include "reports/Sessions.h"
#include "tests/support/FakeHost.h"
#include "tests/support/Menus.h"
#include "tests/support/Stations.h"
#include "weather/DataServerRequests.h"
#include "weather/WorldWeather.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

namespace support {

/// The program with its real windows on a fake host. Its map sends no requests.
struct RunningProgram {
    /// Before the program starts.
    void setCatalogue(std::initializer_list<StationFacts> rows) {
        save(makeCollection(rows), "resources/Stations.STNPKG");
    }
    void save(const std::shared_ptr<AviationWeatherStationCollection>& stations, const char* file) {
        EXPECT_TRUE(platform::KeyedArchiver::archiveRootObject(stations, fake.folder / file));
    }
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
    /// Runs the program until the condition holds.
    template <typename Condition>
    void await(const std::string& what, Condition hasCome) {
        const auto isThere = [&] {
            fake.mainThread.run();
            return hasCome();
        };
        EXPECT_TRUE(QTest::qWaitFor(isThere, 60'000)) << what << " did not come in time";
    }

    /// Lets time pass, at the end of which every timer fires.
    void pass(std::chrono::minutes time) {
        fake.clock.time = fake.clock.now() + time;
        fake.timers.fire();
    }

    [[nodiscard]] AppDelegate& delegate() { return wired_->delegate; }
    [[nodiscard]] reports::Store& reports() { return wired_->reports; }
    /// The window made from the interface file of that name.
    static QMainWindow& window(const char* name) {
        const auto all = QApplication::topLevelWidgets();
        const auto found = std::ranges::find(all, QString(name), &QWidget::objectName);
        if (found == all.end()) {
            throw std::runtime_error(std::string("no window ") + name);
        }
        return dynamic_cast<QMainWindow&>(**found);
    }
    static QMainWindow& stations() { return window("SCStationWindowController"); }
    template <typename T>
    static T& child(const char* name) {
        auto* found = stations().findChild<T*>(name);
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }
    static QTableView& table() { return child<QTableView>("table"); }
    static QLineEdit& search() { return child<QLineEdit>("sf"); }
    static void click(const char* button) {
        QTest::mouseClick(&child<QAbstractButton>(button), Qt::LeftButton);
    }
    static QAction& entry(const QStringList& titles, const QMainWindow& from = stations()) {
        return entryOf(*from.menuBar(), titles);
    }
    /// Opens a list of stations with the main window's button.
    void openList(const std::filesystem::path& file) {
        fake.panels.answers.emplace_back(platform::URL::file(file.string()));
        click("parserIt");
        EXPECT_FALSE(child<QPushButton>("parserIt").isEnabled());
        await("the list", [] { return child<QPushButton>("parserIt").isEnabled(); });
    }
    /// The selected station; empty if there is none.
    [[nodiscard]] std::string selected() {
        const auto station = delegate().sw->selectedStation;
        return station ? station->ICAO.value_or("") : "";
    }
    static std::string copied() { return QApplication::clipboard()->text().toStdString(); }

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
