// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/MapView.h"
#include "desktop/windows/ProgramWindow.h"
#include "platform/host/Host.h"

#include <memory>

class SCStationWindowController;

namespace desktop {

/// The main window: binds the controls of its interface file to the controller's outlets and the
/// user's actions to its operations. Of its own it has looks only: where things lie, where the keys
/// lead, which page stands for an empty table and for how long the chart's hint blinks.
class SCStationWindow final : public ProgramWindow {
public:
    /// Fills the outlets; what is borrowed outlives the window.
    SCStationWindow(SCStationWindowController& controller, platform::Host& host, MapSetup map,
                    ProgramMenus& menus, QSettings& memory);
    /// Empties the outlets.
    ~SCStationWindow() override;

protected:
    /// Gives the table the width of its columns, as far as there is room.
    void arrange() override;
    void recall(const QSettings& memory) override;
    void remember(QSettings& memory) const override;
    /// Keys that lead from the search to the table and back.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Views;

    void bindSearch();
    void bindMap(platform::Host& host);
    void bindWeather(platform::Host& host);
    void showTableOrHint();

    SCStationWindowController& controller_;
    ProgramMenus& menus_;
    std::unique_ptr<Views> views_;
};

} // namespace desktop
