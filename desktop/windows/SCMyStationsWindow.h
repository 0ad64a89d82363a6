// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/MapView.h"
#include "desktop/windows/ProgramWindow.h"

#include <memory>

class SCMyStationsWindowController;

namespace desktop {

/// The My Stations window: binds its interface file to the controller, and opens the station sheet
/// over itself when the user opens a row.
class SCMyStationsWindow final : public ProgramWindow {
public:
    /// Fills the outlets; what is borrowed must outlive the window.
    SCMyStationsWindow(SCMyStationsWindowController& controller, MapSetup map, ProgramMenus& menus,
                       QSettings& memory);
    /// Empties the outlets.
    ~SCMyStationsWindow() override;

protected:
    void arrange() override;
    void recall(const QSettings& memory) override;
    void remember(QSettings& memory) const override;

private:
    struct Views;

    void openSheet(std::int64_t row);

    SCMyStationsWindowController& controller_;
    MapSetup map_;
    std::unique_ptr<Views> views_;
};

} // namespace desktop
