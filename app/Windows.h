// SPDX-License-Identifier: MIT
#pragma once

#include "platform/views/Views.h"

#include <memory>

class SCAboutWindowController;
class SCMyStationsWindowController;
class SCStationWindowController;
class SLIBReleaseNotesWindowController;
class slibHelpWindow;

namespace app {

class Briefing;
class CatalogueKeeper;

/// Creates the program's windows from their interface files, hidden at first. Each factory fills
/// the outlets of its controller, which the window borrows and which must outlive it. Main thread
/// only.
class Windows {
public:
    virtual ~Windows() = default;
    [[nodiscard]] virtual std::unique_ptr<platform::Window>
    stationWindow(SCStationWindowController& controller) = 0;
    [[nodiscard]] virtual std::unique_ptr<platform::Window>
    myStationsWindow(SCMyStationsWindowController& controller) = 0;
    [[nodiscard]] virtual std::unique_ptr<platform::Window>
    aboutWindow(SCAboutWindowController& controller) = 0;
    [[nodiscard]] virtual std::unique_ptr<platform::Window>
    helpWindow(slibHelpWindow& controller) = 0;
    [[nodiscard]] virtual std::unique_ptr<platform::Window>
    releaseNotesWindow(SLIBReleaseNotesWindowController& controller) = 0;
    [[nodiscard]] virtual std::unique_ptr<platform::Window>
    catalogueWindow(CatalogueKeeper& keeper) = 0;
    [[nodiscard]] virtual std::unique_ptr<platform::Window> briefingWindow(Briefing& briefing) = 0;
};

} // namespace app
