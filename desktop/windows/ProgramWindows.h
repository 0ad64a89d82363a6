// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppDelegate.h"
#include "app/Windows.h"
#include "desktop/map/MapView.h"
#include "desktop/windows/ProgramMenus.h"
#include "platform/host/Host.h"

#include <QSettings>

namespace desktop {

/// Makes the windows of the program on this desktop, and has the delegate that they are made for.
class ProgramWindows final : public app::Windows {
public:
    /// The host is borrowed. Where windows lie is remembered in the file of that path.
    ProgramWindows(platform::Host& host, MapSetup map, const QString& memory);

    [[nodiscard]] AppDelegate& delegate() { return delegate_; }
    /// Shows what is new, once after each change of the program's version.
    void showReleaseNotesOnce();

    [[nodiscard]] std::unique_ptr<platform::Window>
    stationWindow(SCStationWindowController& controller) override;
    [[nodiscard]] std::unique_ptr<platform::Window>
    myStationsWindow(SCMyStationsWindowController& controller) override;
    [[nodiscard]] std::unique_ptr<platform::Window>
    aboutWindow(SCAboutWindowController& controller) override;
    [[nodiscard]] std::unique_ptr<platform::Window> helpWindow(slibHelpWindow& controller) override;
    [[nodiscard]] std::unique_ptr<platform::Window>
    releaseNotesWindow(SLIBReleaseNotesWindowController& controller) override;

private:
    platform::Host& host_;
    MapSetup map_;
    QSettings memory_;
    /// Asks the delegate only once it is there, and outlives its windows.
    ProgramMenus menus_{delegate_};
    AppDelegate delegate_{host_, *this};
};

} // namespace desktop
