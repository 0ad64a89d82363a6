// SPDX-License-Identifier: MIT
#include "desktop/SCStationWindow.h"

#include "browser/SCStationWindowController.h"
#include "desktop/Controls.h"
#include "desktop/StationTable.h"
#include "ui_SCStationWindowController.h"

#include <QScreen>

namespace desktop {

struct SCStationWindow::Views {
    struct Interface : Ui::SCStationWindowController {
        explicit Interface(QMainWindow& window) { setupUi(&window); }
    };

    explicit Views(QMainWindow& window) : ui(window) {}

    Interface ui;
    StationTable table{*ui.table};
    PushButton saver{*ui.saver};
    PushButton parserIt{*ui.parserIt};
    Label words{*ui.words};
};

SCStationWindow::SCStationWindow(SCStationWindowController& controller)
    : controller_(controller), views_(std::make_unique<Views>(*this)) {
    controller_.outlets.table = &views_->table;
    controller_.outlets.saver = &views_->saver;
    controller_.outlets.parserIt = &views_->parserIt;
    controller_.outlets.words = &views_->words;

    Ui::SCStationWindowController& ui = views_->ui;
    ui.emptyPlace->setBackgroundRole(QPalette::Base);
    ui.emptyHint->setForegroundRole(QPalette::Text);
    connect(ui.saver, &QPushButton::clicked, this, [this] { controller_.saveDocument(); });
    connect(ui.parserIt, &QPushButton::clicked, this, [this] { controller_.parseit(); });
    connect(ui.table->model(), &QAbstractItemModel::modelReset, this,
            [this] { showTableOrHint(); });
    showTableOrHint();
}

SCStationWindow::~SCStationWindow() {
    controller_.outlets = {};
}

void SCStationWindow::present() {
    const QTableView& table = *views_->ui.table;
    const int columns = table.horizontalHeader()->length() +
                        table.style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, &table);
    resize(size().expandedTo({columns, 0}).boundedTo(screen()->availableSize()));
    show();
}

void SCStationWindow::showTableOrHint() {
    Ui::SCStationWindowController& ui = views_->ui;
    if (views_->table.model().rowCount() == 0) {
        ui.tablePlace->setCurrentWidget(ui.emptyPlace);
        return;
    }
    ui.tablePlace->setCurrentWidget(ui.table);
    if (!focusWidget()) {
        ui.table->setFocus();
    }
}

} // namespace desktop
