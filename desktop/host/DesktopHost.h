// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/host/DesktopNotices.h"
#include "desktop/host/FilePanels.h"
#include "desktop/host/Folders.h"
#include "desktop/host/Launcher.h"
#include "desktop/host/MainQueue.h"
#include "desktop/host/Program.h"
#include "desktop/host/RepeatingTimers.h"
#include "desktop/host/Settings.h"
#include "desktop/host/UserEvents.h"
#include "desktop/map/MapView.h"
#include "desktop/text/Text.h"
#include "platform/host/Host.h"
#include "platform/host/System.h"
#include "platform/net/URLSession.h"
#include "product/Product.h"

#include <QCoreApplication>
#include <QStandardPaths>

#include <filesystem>
#include <string>
#include <utility>

namespace desktop {

/// Owns every service of a run of the program on this desktop. Needs the application object, and
/// must be created and destroyed on the main thread.
class DesktopHost {
public:
    /// `requests` says how to ask web servers.
    explicit DesktopHost(platform::URLSessionOptions requests)
        : urlSessions_(notificationCenter_, std::move(requests)) {}

    [[nodiscard]] platform::Host& services() { return services_; }
    /// The same services with other sessions in front of those that `urlSessions` returns.
    [[nodiscard]] platform::Host servicesWith(platform::URLSessions& sessions) {
        return {notificationCenter_,
                settings_,
                folders_,
                program_,
                panels_,
                timers_,
                mainQueue_,
                clock_,
                log_,
                sessions,
                launcher_,
                events_,
                notices_};
    }
    [[nodiscard]] Program& program() { return program_; }
    [[nodiscard]] MainQueue& mainQueue() { return mainQueue_; }
    [[nodiscard]] platform::CurlURLSessions& urlSessions() { return urlSessions_; }
    /// The folder of the user's files that only this program writes.
    [[nodiscard]] std::string programFolder() const {
        using platform::SearchPaths;
        return folders_.paths(SearchPaths::applicationSupport, SearchPaths::userDomain).front() +
               "/nosig";
    }
    /// The file in which reports are kept; empty if the user has no folders to write to.
    [[nodiscard]] std::filesystem::path reportsFile() const {
        return folders_.areThere() ? cacheFolder() / "reports.sqlite" : std::filesystem::path();
    }
    [[nodiscard]] QString settingsFile() const { return settings_.fileName(); }
    /// The outlines come with the program. All maps share one tile loader.
    [[nodiscard]] MapSetup mapSetup() const {
        return {pathText(program_.resourcePath() + "/world.map"), tiles_};
    }

private:
    /// The folder of what can be fetched again.
    [[nodiscard]] static std::filesystem::path cacheFolder() {
        return QStandardPaths::writableLocation(QStandardPaths::CacheLocation).toStdString();
    }

    platform::StandardErrorLog log_;
    platform::SystemClock clock_;
    platform::NotificationCenter notificationCenter_;
    Folders folders_{log_};
    /// Gets no log if the folders have already logged their failure.
    Settings settings_{folders_.areThere() ? &log_ : nullptr};
    Program program_{QCoreApplication::applicationDirPath()};
    FilePanels panels_{settings_};
    RepeatingTimers timers_;
    MainQueue mainQueue_;
    platform::CurlURLSessions urlSessions_;
    /// Keeps its files in the user's cache folder.
    std::shared_ptr<TileLoader> tiles_ = std::make_shared<TileLoader>(TileSources{
        map::worldTileServers(), product::userAgent, pathText(cacheFolder() / "tiles")});
    Launcher launcher_;
    UserEvents events_;
    DesktopNotices notices_{notificationCenter_, mainQueue_, log_};
    platform::Host services_ = servicesWith(urlSessions_);
};

} // namespace desktop
