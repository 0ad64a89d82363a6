// SPDX-License-Identifier: MIT
#pragma once

#include "app/Windows.h"
#include "desktop/map/MapView.h"
#include "desktop/windows/ProgramMenus.h"
#include "platform/host/Host.h"
#include "reports/Store.h"
#include "weather/WorldWeather.h"

#include <QSettings>

namespace desktop {

/// Makes the program's windows on this desktop; must outlive them.
class ProgramWindows final : public app::Windows {
public:
    /// All but the map's setup is borrowed. `memory` is the file in which windows store their
    /// positions.
    ProgramWindows(platform::Host& host, reports::Store& reports, weather::WorldWeather& world,
                   MapSetup map, const QString& memory, ProgramMenus& menus);

    [[nodiscard]] std::unique_ptr<platform::Window>
    stationWindow(SCStationWindowController& controller) override;
    [[nodiscard]] std::unique_ptr<platform::Window>
    myStationsWindow(SCMyStationsWindowController& controller) override;
    [[nodiscard]] std::unique_ptr<platform::Window>
    aboutWindow(SCAboutWindowController& controller) override;
    [[nodiscard]] std::unique_ptr<platform::Window> helpWindow(slibHelpWindow& controller) override;
    [[nodiscard]] std::unique_ptr<platform::Window>
    releaseNotesWindow(SLIBReleaseNotesWindowController& controller) override;
    [[nodiscard]] std::unique_ptr<platform::Window>
    catalogueWindow(app::CatalogueKeeper& keeper) override;
    [[nodiscard]] std::unique_ptr<platform::Window>
    briefingWindow(app::Briefing& briefing) override;

private:
    platform::Host& host_;
    reports::Store& reports_;
    weather::WorldWeather& world_;
    MapSetup map_;
    QSettings memory_;
    ProgramMenus& menus_;
};

} // namespace desktop
