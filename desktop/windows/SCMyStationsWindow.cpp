// SPDX-License-Identifier: MIT
#include "desktop/windows/SCMyStationsWindow.h"

#include "desktop/table/StationTable.h"
#include "desktop/windows/SCWetherSheet.h"
#include "desktop/windows/StationsOnMap.h"
#include "mystations/SCMyStationsWindowController.h"
#include "ui_SCMyStationsWindowController.h"

#include <utility>

namespace desktop {

struct SCMyStationsWindow::Views {
    struct Interface : Ui::SCMyStationsWindowController {
        explicit Interface(QMainWindow& window) { setupUi(&window); }
    };

    Views(QMainWindow& window, MapSetup map)
        : ui(window), mfmapV(*new MapView(std::move(map), ui.tableAndMap)) {
        mfmapV.setObjectName(QStringLiteral("mfmapV"));
        QWidget::setTabOrder(ui.mftable, &mfmapV);
    }

    Interface ui;
    StationTable mftable{*ui.mftable};
    MapView& mfmapV;
};

SCMyStationsWindow::SCMyStationsWindow(SCMyStationsWindowController& controller, MapSetup map,
                                       ProgramMenus& menus, QSettings& memory)
    : ProgramWindow(menus, memory),
      controller_(controller),
      map_(std::move(map)),
      views_(std::make_unique<Views>(*this, map_)) {
    controller_.outlets = {.mftable = &views_->mftable, .mfmapV = &views_->mfmapV};
    QTableView& table = *views_->ui.mftable;
    views_->mfmapV.stationClicked = [this](std::size_t station) {
        const auto row = static_cast<std::int64_t>(station);
        views_->mftable.selectRow(row);
        views_->mftable.scrollRowToVisible(row);
    };
    connect(table.model(), &QAbstractItemModel::modelReset, this, [this] { showStations(); });
    connect(table.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (const auto station = controller_.stationInRow(views_->mftable.selectedRow())) {
            views_->mfmapV.setMarker(onMap(*station));
        }
    });
    connect(&table, &QTableView::activated, this,
            [this](const QModelIndex& index) { openSheet(index.row()); });
}

SCMyStationsWindow::~SCMyStationsWindow() {
    controller_.outlets = {};
}

void SCMyStationsWindow::showStations() {
    views_->mfmapV.setStations(onMap(controller_.myFavotires));
    const bool hasStations = views_->mftable.model().rowCount() > 0;
    views_->ui.tablePlace->setCurrentWidget(hasStations ? static_cast<QWidget*>(views_->ui.mftable)
                                                        : views_->ui.emptyPlace);
}

void SCMyStationsWindow::openSheet(int row) {
    if (const auto station = controller_.stationInRow(row)) {
        (new SCWetherSheet(*this, map_))->begin(station);
    }
}

void SCMyStationsWindow::arrange() {
    const int columns = views_->mftable.widthOfColumns();
    const int forTable = std::min(columns, width() * 2 / 3);
    views_->ui.tableAndMap->setSizes({forTable, width() - forTable});
}

void SCMyStationsWindow::recall(const QSettings& memory) {
    views_->mftable.recall(memory);
}

void SCMyStationsWindow::remember(QSettings& memory) const {
    views_->mftable.remember(memory);
}

} // namespace desktop
