// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"
#include "reports/Store.h"
#include "weather/FavoriteWatch.h"
#include "weather/WorldWeather.h"

#include <QObject>

#include <memory>

class QAction;
class QLabel;
class SCStationWindowController;

namespace desktop {

class ProgramWindow;

/// The main window's part in telling of favourites that get worse: the menu entry that switches
/// that on, a line that says what comes of it, and the place to which a chosen notice leads.
class FavoriteNotices final : public QObject {
public:
    /// Borrowed.
    struct Sources {
        platform::Host& host;
        reports::Store& store;
        weather::WorldWeather& world;
        SCStationWindowController& controller;
    };
    /// Borrowed as well; the window owns this object.
    struct Places {
        ProgramWindow& window;
        QAction& entry;
        QLabel& status;
    };

    FavoriteNotices(const Sources& sources, const Places& places);

    /// There are other favourites, or another way to fetch their weather.
    void favoritesChanged() { watch_.look(); }
    /// There are other stations.
    void refreshSoon() { watch_.lookSoon(); }

private:
    void showState();

    Places places_;
    weather::FavoriteWatch watch_;
    /// Work for this object is dropped once it is gone.
    std::shared_ptr<void> alive_ = std::make_shared<int>();
    platform::NotificationCenter::Token changes_;
};

} // namespace desktop
