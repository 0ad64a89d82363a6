// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/windows/ProgramWindow.h"

namespace app {
class CatalogueKeeper;
}

namespace desktop {

/// What the catalogue's keeper does, asks and has to say. Closing it stops nothing.
class CatalogueWindow final : public ProgramWindow {
public:
    /// What is borrowed must outlive the window.
    CatalogueWindow(app::CatalogueKeeper& keeper, ProgramMenus& menus, QSettings& memory);
    ~CatalogueWindow() override;

private:
    app::CatalogueKeeper& keeper_;
};

} // namespace desktop
