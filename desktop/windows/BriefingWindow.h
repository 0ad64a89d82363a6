// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/windows/ProgramWindow.h"

#include <memory>

class QPrinter;

namespace app {
class Briefing;
}

namespace desktop {

/// The weather of several stations on one page: where their identifiers are typed, and what can be
/// done with the page.
class BriefingWindow final : public ProgramWindow {
public:
    /// What is borrowed must outlive the window.
    BriefingWindow(app::Briefing& briefing, ProgramMenus& menus, QSettings& memory);
    ~BriefingWindow() override;

    /// Goes to the list, ready to be replaced.
    void makeKey() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    struct Views;

    void showPage();
    void copy();
    void print();

    app::Briefing& briefing_;
    std::unique_ptr<Views> views_;
    /// Made when it is first needed, since that may take a while.
    std::unique_ptr<QPrinter> printer_;
};

} // namespace desktop
