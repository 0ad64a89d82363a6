// SPDX-License-Identifier: MIT
#include "desktop/table/StationTable.h"

#include "catalogue/StationCells.h"
#include "desktop/table/RowPainter.h"

#include <QActionGroup>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMenu>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTableView>

#include <algorithm>
#include <chrono>
#include <utility>

namespace desktop {

namespace {

/// In the settings: the column's identifier, or nothing.
const QString sortedKey = QStringLiteral("sortedBy");
const QString descendingKey = QStringLiteral("sortedDescending");

} // namespace

StationTable::StationTable(QTableView& view) : view_(view), model_(*this), columns_(view, model_) {
    view_.setModel(&model_);
    view_.setItemDelegate(new RowPainter(&view_));
    view_.installEventFilter(this);
    view_.viewport()->installEventFilter(this);
    connect(view_.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { selectionDidChange(); });
    QHeaderView& header = *view_.horizontalHeader();
    header.setSectionsClickable(true);
    header.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&header, &QHeaderView::sectionClicked, this,
            [this](int column) { sortByNext(column); });
    connect(&header, &QHeaderView::customContextMenuRequested, this, [this](const QPoint& place) {
        QHeaderView& clicked = *view_.horizontalHeader();
        const int column = clicked.logicalIndexAt(place);
        QMenu& menu = newMenu();
        addColumnEntries(menu, column < 0 ? columns_.shown().back() : column);
        menu.popup(clicked.mapToGlobal(place));
    });
    columns_.hidden = [this](int column) {
        if (model_.sorting() && model_.sorting()->column == column) {
            sortBy({});
        }
    };
    for (QTimer* soon : {&lossUntold_, &fitting_}) {
        soon->setSingleShot(true);
        soon->setInterval(0);
    }
    connect(&lossUntold_, &QTimer::timeout, this, [this] { selectionDidChange(); });
    connect(&fitting_, &QTimer::timeout, this, [this] { fit(); });
    ageing_.setInterval(std::chrono::minutes(1));
    connect(&ageing_, &QTimer::timeout, view_.viewport(), qOverload<>(&QWidget::update));
    fit();
}

StationTable::~StationTable() {
    view_.setModel(nullptr);
}

void StationTable::setDataSource(platform::TableViewDataSource* source) {
    model_.setDataSource(source);
}

void StationTable::setDelegate(platform::TableViewDelegate* delegate) {
    delegate_ = delegate;
}

void StationTable::setColumnWidth(std::string_view column, double width) {
    if (const auto index = catalogue::stationColumnOf(column)) {
        columns_.setAskedWidth(static_cast<int>(*index), width);
    }
}

void StationTable::reloadData() {
    const auto selected = static_cast<int>(selectedRow());
    const int column = currentColumn();
    {
        const QScopedValueRollback guard(reloading_, true);
        model_.reload();
        if (selected < model_.rowCount()) {
            select(selected, column);
        }
    }
    if (selected >= model_.rowCount()) {
        lossUntold_.start();
    }
    columns_.measureContent();
}

void StationTable::selectRow(std::int64_t row) {
    select(row < model_.rowCount() ? static_cast<int>(std::max<std::int64_t>(row, -1)) : -1,
           currentColumn());
    // The view sees no change when a selection is emptied that a reload has already emptied.
    if (lossUntold_.isActive()) {
        selectionDidChange();
    }
}

std::int64_t StationTable::selectedRow() const {
    const QModelIndexList rows = view_.selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rowAt(rows.first());
}

void StationTable::scrollRowToVisible(std::int64_t row) {
    if (row >= 0 && row < model_.rowCount()) {
        // A view scrolls to cells, and not to hidden ones.
        const int across = view_.horizontalScrollBar()->value();
        view_.scrollTo(model_.index(model_.shownRow(row), currentColumn()));
        view_.horizontalScrollBar()->setValue(across);
    }
}

void StationTable::keepInSight(int heightBefore) {
    const std::int64_t row = selectedRow();
    if (row < 0) {
        return;
    }
    const int top = view_.rowViewportPosition(model_.shownRow(row));
    if (top >= 0 && top < heightBefore) {
        // Deferred until the view has taken up its new size.
        QMetaObject::invokeMethod(
            this,
            [this, row] {
                if (row == selectedRow()) {
                    scrollRowToVisible(row);
                }
            },
            Qt::QueuedConnection);
    }
}

void StationTable::setStations(StationTableModel::StationOfRow stationOfRow) {
    model_.setStations(std::move(stationOfRow));
}

void StationTable::setWeather(std::optional<Weather> weather) {
    const auto selected = static_cast<int>(selectedRow());
    const int column = currentColumn();
    const QScopedValueRollback guard(reloading_, true);
    if (weather) {
        ageing_.start();
    } else {
        ageing_.stop();
    }
    model_.setWeather(std::move(weather));
    columns_.measureContent();
    columns_.apply();
    showSorting();
    // Other columns make a selected row an incomplete one.
    if (selected >= 0) {
        select(selected, std::min(column, model_.columnCount() - 1));
    }
}

void StationTable::weatherChanged() {
    const QScopedValueRollback guard(reloading_, true);
    model_.weatherChanged();
}

void StationTable::sortBy(std::optional<Sort> sort) {
    const QScopedValueRollback guard(reloading_, true);
    const auto before = model_.sorting();
    model_.sortBy(sort);
    showSorting();
    if (before) {
        columns_.open(before->column);
    }
}

void StationTable::showSorting() {
    QHeaderView& header = *view_.horizontalHeader();
    const auto& sort = model_.sorting();
    const bool isSorted = sort && sort->column < model_.columnCount();
    header.setSortIndicatorShown(isSorted);
    if (!isSorted) {
        view_.setAccessibleDescription({});
        return;
    }
    header.setSortIndicator(sort->column, sort->order == SortOrder::ascending
                                              ? Qt::AscendingOrder
                                              : Qt::DescendingOrder);
    // The arrow needs room.
    columns_.open(sort->column);
    view_.setAccessibleDescription(
        model_.headerData(sort->column, Qt::Horizontal, Qt::AccessibleTextRole).toString());
}

void StationTable::sortByNext(int column) {
    const auto& now = model_.sorting();
    if (!now || now->column != column) {
        sortBy(Sort{column, SortOrder::ascending});
    } else if (now->order == SortOrder::ascending) {
        sortBy(Sort{column, SortOrder::descending});
    } else {
        sortBy({});
    }
}

void StationTable::setMarked(std::function<bool(int row)> isMarked) {
    model_.setMarked(std::move(isMarked));
}

std::int64_t StationTable::rowAt(const QModelIndex& index) const {
    return model_.sourceRow(index.row());
}

int StationTable::widthOfColumns() const {
    return view_.horizontalHeader()->length() +
           view_.style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, &view_);
}

void StationTable::recall(const QSettings& memory) {
    columns_.recall(memory);
    const int column = StationTableModel::columnOf(memory.value(sortedKey).toString());
    if (column >= 0 && !columns_.isHidden(column)) {
        sortBy(Sort{column, memory.value(descendingKey).toBool() ? SortOrder::descending
                                                                 : SortOrder::ascending});
    }
}

void StationTable::remember(QSettings& memory) const {
    columns_.remember(memory);
    const auto& sort = model_.sorting();
    memory.setValue(sortedKey, sort ? StationTableModel::identifierOf(sort->column) : QString());
    memory.setValue(descendingKey, sort && sort->order == SortOrder::descending);
}

void StationTable::select(int row, int column) {
    if (row < 0) {
        view_.selectionModel()->clear();
        return;
    }
    // Callers ask for scrolling separately.
    const bool scrolls = view_.hasAutoScroll();
    view_.setAutoScroll(false);
    const QModelIndex index = model_.index(model_.shownRow(row), column);
    view_.selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    view_.setAutoScroll(scrolls);
    // Last, since the delegate may reload the table.
    view_.selectionModel()->select(index,
                                   QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void StationTable::selectionDidChange() {
    if (reloading_) {
        return;
    }
    lossUntold_.stop();
    if (delegate_) {
        delegate_->tableViewSelectionDidChange(*this);
    }
}

int StationTable::currentColumn() const {
    const QModelIndex current = view_.currentIndex();
    if (current.isValid() && !view_.isColumnHidden(current.column())) {
        return current.column();
    }
    return columns_.shown().front();
}

void StationTable::fit() {
    const int margin =
        view_.style()->pixelMetric(QStyle::PM_FocusFrameVMargin, nullptr, &view_) + 1;
    const int row = view_.fontMetrics().height() + 2 * margin;
    view_.verticalHeader()->setMinimumSectionSize(1);
    view_.verticalHeader()->setDefaultSectionSize(row);
    view_.horizontalHeader()->setMinimumHeight(row + 2 * margin);
    columns_.fit();
}

QMenu& StationTable::newMenu() {
    auto* menu = new QMenu(&view_);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    return *menu;
}

void StationTable::addColumnEntries(QMenu& menu, int column) {
    auto* group = new QActionGroup(&menu);
    const auto add = [&](const QString& text, std::optional<Sort> sort) {
        QAction* entry = menu.addAction(text, this, [this, sort] { sortBy(sort); });
        entry->setCheckable(true);
        group->addAction(entry);
        entry->setChecked(sort == model_.sorting());
    };
    add(QStringLiteral("Sort &Ascending"), Sort{column, SortOrder::ascending});
    add(QStringLiteral("Sort &Descending"), Sort{column, SortOrder::descending});
    add(QStringLiteral("Catalogue &Order"), {});
    menu.addSeparator();
    columns_.addTo(menu, column);
}

void StationTable::openRowMenu(const QModelIndex& index, const QPoint& place) {
    QMenu& menu = newMenu();
    int column = currentColumn();
    if (index.isValid()) {
        column = index.column();
        menu.addAction(QStringLiteral("&Copy Cell"), this, [this, column] { copy({column}); });
        menu.addAction(QStringLiteral("Copy &Row"), this, [this] { copy(columns_.shown()); });
        addToRowMenu(menu, rowAt(index));
        menu.addSeparator();
    }
    const QString heading = model_.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    addColumnEntries(*menu.addMenu(QStringLiteral("Column “%1”").arg(heading)), column);
    menu.popup(view_.viewport()->mapToGlobal(place));
}

void StationTable::copy(const std::vector<int>& columns) {
    const auto row = static_cast<int>(selectedRow());
    if (row < 0) {
        return;
    }
    QStringList cells;
    for (const int column : columns) {
        cells.append(model_.cellText(row, column).trimmed());
    }
    QGuiApplication::clipboard()->setText(cells.join(QLatin1Char('\t')));
}

bool StationTable::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::FontChange:
    case QEvent::StyleChange:
        if (watched == &view_) {
            // Deferred until the view and its headers have taken up the change.
            fitting_.start();
        }
        break;
    case QEvent::Resize:
        if (watched == view_.viewport()) {
            keepInSight(static_cast<QResizeEvent*>(event)->oldSize().height());
        }
        break;
    case QEvent::KeyPress:
        if (watched == &view_ && static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
            copy(columns_.shown());
            return true;
        }
        break;
    case QEvent::ContextMenu: {
        const auto& request = *static_cast<QContextMenuEvent*>(event);
        if (request.reason() == QContextMenuEvent::Keyboard) {
            const bool hasRow = selectedRow() >= 0;
            const QModelIndex index =
                hasRow ? model_.index(model_.shownRow(selectedRow()), currentColumn())
                       : QModelIndex();
            const QRect cell = view_.visualRect(index) & view_.viewport()->rect();
            openRowMenu(index, cell.center());
            return true;
        }
        if (watched == view_.viewport()) {
            const QModelIndex index = view_.indexAt(request.pos());
            // The row is selected by the press already, if this comes from a mouse.
            if (index.isValid()) {
                view_.setCurrentIndex(index);
            }
            openRowMenu(index, request.pos());
            return true;
        }
        break;
    }
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace desktop
