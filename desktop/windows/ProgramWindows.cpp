// SPDX-License-Identifier: MIT
#include "desktop/windows/ProgramWindows.h"

#include "desktop/windows/BriefingWindow.h"
#include "desktop/windows/CatalogueWindow.h"
#include "desktop/windows/SCMyStationsWindow.h"
#include "desktop/windows/SCStationWindow.h"
#include "desktop/windows/SmallWindows.h"

#include <QApplication>

#include <utility>

namespace desktop {

ProgramWindows::ProgramWindows(platform::Host& host, reports::Store& reports,
                               weather::WorldWeather& world, MapSetup map, const QString& memory,
                               ProgramMenus& menus)
    : host_(host),
      reports_(reports),
      world_(world),
      map_(std::move(map)),
      memory_(memory, QSettings::IniFormat),
      menus_(menus) {
    // All texts are English, even where the user's own language runs from right to left.
    QApplication::setLayoutDirection(Qt::LeftToRight);
    memory_.beginGroup(QStringLiteral("windows"));
}

std::unique_ptr<platform::Window>
ProgramWindows::stationWindow(SCStationWindowController& controller) {
    return std::make_unique<SCStationWindow>(controller, host_, reports_, world_, map_, menus_,
                                             memory_);
}

std::unique_ptr<platform::Window>
ProgramWindows::myStationsWindow(SCMyStationsWindowController& controller) {
    return std::make_unique<SCMyStationsWindow>(controller, map_, menus_, memory_);
}

std::unique_ptr<platform::Window> ProgramWindows::aboutWindow(SCAboutWindowController& controller) {
    return std::make_unique<AboutWindow>(controller, host_.bundle, menus_, memory_);
}

std::unique_ptr<platform::Window> ProgramWindows::helpWindow(slibHelpWindow& controller) {
    return std::make_unique<HelpWindow>(controller, menus_, memory_);
}

std::unique_ptr<platform::Window>
ProgramWindows::releaseNotesWindow(SLIBReleaseNotesWindowController& controller) {
    return std::make_unique<ReleaseNotesWindow>(controller, menus_, memory_);
}

std::unique_ptr<platform::Window> ProgramWindows::catalogueWindow(app::CatalogueKeeper& keeper) {
    return std::make_unique<CatalogueWindow>(keeper, menus_, memory_);
}

std::unique_ptr<platform::Window> ProgramWindows::briefingWindow(app::Briefing& briefing) {
    return std::make_unique<BriefingWindow>(briefing, menus_, memory_);
}

} // namespace desktop
