// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"
#include "reports/Store.h"
#include "weather/WorldWeather.h"

#include <QObject>

#include <memory>

class QAction;
class QLabel;
class QMainWindow;
class QProgressBar;
class QPushButton;
class QTimer;

namespace desktop {

class TableWithMap;

/// The main window's switch for the weather of the world: a menu entry and a button that go
/// together, what they show in table and map, and a line that says how old it is or why it is.
class WorldSwitch final : public QObject {
public:
    /// Borrowed.
    struct Sources {
        platform::Host& host;
        reports::Store& store;
        weather::WorldWeather& world;
    };
    /// Borrowed as well; the window owns this object.
    struct Places {
        QMainWindow& window;
        QAction& entry;
        QPushButton& button;
        QLabel& status;
        QProgressBar& working;
        TableWithMap& stations;
    };

    WorldSwitch(const Sources& sources, const Places& places);

protected:
    /// Sees whether the window can be seen.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void turn(bool on);
    void showState();
    void showReports();

    Sources sources_;
    Places places_;
    QTimer* reportsSoon_;
    /// Work for this object is dropped once it is gone.
    std::shared_ptr<void> alive_ = std::make_shared<int>();
    /// Absent while it is off.
    std::unique_ptr<platform::Timer> minutes_;
    platform::NotificationCenter::Token changes_;
};

} // namespace desktop
