// SPDX-License-Identifier: MIT
#include "desktop/windows/SCMyStationsWindow.h"

#include "desktop/windows/SCWetherSheet.h"
#include "desktop/windows/TableWithMap.h"
#include "mystations/SCMyStationsWindowController.h"
#include "ui_SCMyStationsWindowController.h"

#include <utility>

namespace desktop {

struct SCMyStationsWindow::Views {
    struct Interface : Ui::SCMyStationsWindowController {
        explicit Interface(QMainWindow& window) { setupUi(&window); }
    };

    Views(QMainWindow& window, const catalogue::StationRows& rows, const MapSetup& map)
        : ui(window),
          stations(rows, {*ui.mftable, *ui.tablePlace, *ui.emptyPlace}, map, *ui.tableAndMap) {
        stations.mapView.setObjectName(QStringLiteral("mfmapV"));
        QWidget::setTabOrder(ui.mftable, &stations.mapView);
    }

    Interface ui;
    TableWithMap stations;
};

SCMyStationsWindow::SCMyStationsWindow(SCMyStationsWindowController& controller, MapSetup map,
                                       ProgramMenus& menus, QSettings& memory)
    : ProgramWindow(menus, memory),
      controller_(controller),
      map_(std::move(map)),
      views_(std::make_unique<Views>(*this, controller, map_)) {
    TableWithMap& stations = views_->stations;
    controller_.outlets = {.mftable = &stations.table, .mfmapV = &stations.mapView};
    QTableView& table = *views_->ui.mftable;
    connect(table.model(), &QAbstractItemModel::modelReset, this,
            [&stations] { stations.showTable(stations.table.model().rowCount() > 0); });
    connect(table.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        views_->stations.mark(controller_.stationInRow(views_->stations.table.selectedRow()).get());
    });
    connect(&table, &QTableView::activated, this,
            [this](const QModelIndex& index) { openSheet(views_->stations.table.rowAt(index)); });
}

SCMyStationsWindow::~SCMyStationsWindow() {
    controller_.outlets = {};
}

void SCMyStationsWindow::openSheet(std::int64_t row) {
    if (const auto station = controller_.stationInRow(row)) {
        (new SCWetherSheet(*this, map_))->begin(station);
    }
}

void SCMyStationsWindow::arrange() {
    const int columns = views_->stations.table.widthOfColumns();
    const int forTable = std::min(columns, width() * 2 / 3);
    views_->ui.tableAndMap->setSizes({forTable, width() - forTable});
}

void SCMyStationsWindow::recall(const QSettings& memory) {
    views_->stations.table.recall(memory);
}

void SCMyStationsWindow::remember(QSettings& memory) const {
    views_->stations.table.remember(memory);
}

} // namespace desktop
