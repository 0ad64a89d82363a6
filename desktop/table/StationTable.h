// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/table/StationTableModel.h"
#include "desktop/table/TableColumns.h"
#include "platform/views/TableView.h"

#include <QObject>
#include <QSettings>
#include <QTimer>

#include <functional>
#include <optional>

class QMenu;
class QTableView;

namespace desktop {

/// The logic's station table on a Qt table view, with weather beside the stations while that is
/// wanted.
///
/// The user can sort it by any column, and arrange the columns. The logic knows nothing of this:
/// its rows keep their numbers. A click on a heading sorts up, then down, then not at all; the menu
/// of the headings and that of the rows do the same, and the latter can be opened by the keyboard.
/// Ctrl+C copies the selected row.
class StationTable final : public QObject, public platform::TableView {
public:
    using Weather = StationTableModel::Weather;
    using Sort = StationTableModel::Sort;

    /// The view is borrowed and must outlive the table.
    explicit StationTable(QTableView& view);
    ~StationTable() override;

    void setDataSource(platform::TableViewDataSource* source) override;
    void setDelegate(platform::TableViewDelegate* delegate) override;
    void setColumnWidth(std::string_view column, double width) override;
    void reloadData() override;
    void selectRow(std::int64_t row) override;
    [[nodiscard]] std::int64_t selectedRow() const override;
    void scrollRowToVisible(std::int64_t row) override;

    /// Says which station a row shows, or null; needed for sorting and for weather.
    void setStations(StationTableModel::StationOfRow stationOfRow);
    /// Shows weather columns with these reports, or none. Selection and place are kept.
    void setWeather(std::optional<Weather> weather);
    /// Must be called when reports have changed. Selection and place are kept.
    void weatherChanged();
    /// A column that is hidden cannot be sorted by.
    void sortBy(std::optional<Sort> sort);

    /// Rows for which `isMarked` returns true carry a star.
    void setMarked(std::function<bool(int row)> isMarked);
    /// Must be called when that answer has changed for a row without a reload.
    void markChanged(int row) { model_.markChanged(row); }
    /// Adds entries that concern the selected row to its menu, which goes away by itself.
    std::function<void(QMenu& menu, std::int64_t row)> addToRowMenu = [](QMenu&, std::int64_t) {};

    /// The row that the view shows at an index of its model; -1 for none.
    [[nodiscard]] std::int64_t rowAt(const QModelIndex& index) const;
    /// The width of all columns and the scroll bar, in pixels.
    [[nodiscard]] int widthOfColumns() const;
    /// Restore and save how the user has arranged and sorted the table.
    void recall(const QSettings& memory);
    void remember(QSettings& memory) const;

    [[nodiscard]] const StationTableModel& model() const { return model_; }

protected:
    /// Fits rows and columns again when the view's font or style changes, keeps the selected row in
    /// sight when the view shrinks, copies, and opens the menu of a row.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void select(int row, int column);
    void selectionDidChange();
    void fit();
    /// Scrolls to the selected row if it was in sight when the view had this height.
    void keepInSight(int heightBefore);
    void showSorting();
    void sortByNext(int column);
    /// The column of the cell that the keyboard is on, or the first one.
    [[nodiscard]] int currentColumn() const;
    [[nodiscard]] QMenu& newMenu();
    void addColumnEntries(QMenu& menu, int column);
    void openRowMenu(const QModelIndex& index, const QPoint& place);
    void copy(const std::vector<int>& columns);

    QTableView& view_;
    StationTableModel model_;
    TableColumns columns_;
    platform::TableViewDelegate* delegate_ = nullptr;
    bool reloading_ = false;
    /// Runs from a reload that has emptied the selection until the delegate is told.
    QTimer lossUntold_;
    QTimer fitting_;
    /// Reports grow older.
    QTimer ageing_;
};

} // namespace desktop
