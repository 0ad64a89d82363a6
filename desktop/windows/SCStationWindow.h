// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/MapView.h"
#include "desktop/windows/ProgramWindow.h"
#include "platform/host/Host.h"
#include "reports/Store.h"
#include "weather/WorldWeather.h"

#include <memory>

class AviationWeatherStation;
class SCStationWindowController;

namespace desktop {

/// The main window: binds the controls of its interface file to the controller's outlets and the
/// user's actions to its operations. It decides only appearance itself: the layout, where keys move
/// the focus, which page replaces an empty table and how long the chart's hint blinks.
class SCStationWindow final : public ProgramWindow {
public:
    /// Fills the outlets; what is borrowed must outlive the window.
    SCStationWindow(SCStationWindowController& controller, platform::Host& host,
                    reports::Store& reports, weather::WorldWeather& world, const MapSetup& map,
                    ProgramMenus& menus, QSettings& memory);
    /// Empties the outlets.
    ~SCStationWindow() override;

protected:
    /// Gives the table the width of its columns, as far as there is room.
    void arrange() override;
    void recall(const QSettings& memory) override;
    void remember(QSettings& memory) const override;
    /// Keys in the search field: Escape clears it; Return, Enter and Down move to the table.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Views;

    void bindFilterLine();
    void bindSearch(platform::Host& host);
    void bindMap(platform::Host& host);
    void bindWeather(platform::Host& host);
    void bindReports(platform::Host& host, reports::Store& reports);
    void bindRowMenu(reports::Store& reports);
    void favoritesChanged();
    void showReportsOf(const AviationWeatherStation* station);
    void showTableOrHint();
    void goToTable();

    SCStationWindowController& controller_;
    ProgramMenus& menus_;
    std::unique_ptr<Views> views_;
};

} // namespace desktop
