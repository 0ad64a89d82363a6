// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/MapView.h"
#include "platform/Host.h"

#include <QMainWindow>

#include <memory>

class SCStationWindowController;

namespace desktop {

/// The main window: binds the controls of its interface file to the controller's outlets and the
/// user's actions to its operations. Decides nothing itself.
class SCStationWindow final : public QMainWindow {
public:
    /// Fills the outlets; the controller is borrowed and outlives the window.
    SCStationWindow(SCStationWindowController& controller, platform::Host& host, MapSetup map);
    /// Empties the outlets.
    ~SCStationWindow() override;

    /// Shows the window, wide enough for its columns as far as the screen has room.
    void present();

protected:
    /// Keys that lead from the search to the table and back.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Views;

    void bindSearch();
    void bindMap(platform::Host& host);
    void bindWeather(platform::Host& host);
    void searchTextDidChange(bool isEmpty);
    void showAll();
    void showTableOrHint();

    SCStationWindowController& controller_;
    std::unique_ptr<Views> views_;
    bool isSearching_ = false;
};

} // namespace desktop
