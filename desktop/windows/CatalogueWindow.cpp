// SPDX-License-Identifier: MIT
#include "desktop/windows/CatalogueWindow.h"

#include "app/CatalogueKeeper.h"
#include "desktop/text/Text.h"
#include "ui_CatalogueWindow.h"

namespace desktop {

CatalogueWindow::CatalogueWindow(app::CatalogueKeeper& keeper, ProgramMenus& menus,
                                 QSettings& memory)
    : ProgramWindow(menus, memory), keeper_(keeper) {
    Ui::CatalogueWindow ui;
    ui.setupUi(this);
    QSizePolicy keepsItsPlace = ui.working->sizePolicy();
    keepsItsPlace.setRetainSizeWhenHidden(true);
    ui.working->setSizePolicy(keepsItsPlace);
    keeper_.changed = [this, ui] {
        ui.words->setText(shownText(keeper_.words()));
        ui.working->setVisible(keeper_.isUpdating());
        ui.stop->setVisible(keeper_.isUpdating());
        ui.agree->setVisible(keeper_.isAsking());
    };
    keeper_.changed();
    connect(ui.stop, &QPushButton::clicked, this, [this] { keeper_.stop(); });
    connect(ui.agree, &QPushButton::clicked, this, [this] { keeper_.agree(); });
    connect(ui.close, &QPushButton::clicked, this, [this] { close(); });
}

CatalogueWindow::~CatalogueWindow() {
    keeper_.changed = nullptr;
}

} // namespace desktop
