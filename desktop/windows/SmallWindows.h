// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/windows/ProgramWindow.h"
#include "platform/host/Host.h"

#include <memory>

class SCAboutWindowController;
class SLIBReleaseNotesWindowController;
class slibHelpWindow;

/// Windows that show a text. Each fills the outlets that its controller has and empties them when
/// it is destroyed; what is borrowed must outlive it.
namespace desktop {

class AboutWindow final : public ProgramWindow {
public:
    AboutWindow(SCAboutWindowController& controller, const platform::Bundle& bundle,
                ProgramMenus& menus, QSettings& memory);
};

/// Shows the program's own help pages; links to anywhere else open in the user's browser.
class HelpWindow final : public ProgramWindow {
public:
    HelpWindow(slibHelpWindow& controller, ProgramMenus& menus, QSettings& memory);
    ~HelpWindow() override;

private:
    struct Views;

    slibHelpWindow& controller_;
    std::unique_ptr<Views> views_;
};

class ReleaseNotesWindow final : public ProgramWindow {
public:
    ReleaseNotesWindow(SLIBReleaseNotesWindowController& controller, ProgramMenus& menus,
                       QSettings& memory);
    ~ReleaseNotesWindow() override;

private:
    struct Views;

    SLIBReleaseNotesWindowController& controller_;
    std::unique_ptr<Views> views_;
};

} // namespace desktop
