// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/MapView.h"
#include "desktop/windows/ProgramWindow.h"
#include "platform/host/Host.h"

#include <memory>

class SCStationWindowController;

namespace desktop {

/// The main window: binds the controls of its interface file to the controller's outlets and the
/// user's actions to its operations. Decides nothing itself.
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
    void searchTextDidChange(bool wasEmpty);
    void showAll();
    void save();
    /// Of the selected station, which a search may list more than once, and of those that share its
    /// identifier, of which the first is marked with it.
    void showMarks();
    void showTableOrHint();

    SCStationWindowController& controller_;
    ProgramMenus& menus_;
    std::unique_ptr<Views> views_;
    bool isSearchEmpty_ = true;
};

} // namespace desktop
