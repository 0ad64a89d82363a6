// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// A table of rows, its data source and its delegate. Main thread only.
namespace platform {

class TableView;

/// Supplies a table's cells.
class TableViewDataSource {
public:
    virtual ~TableViewDataSource() = default;
    [[nodiscard]] virtual std::int64_t numberOfRowsInTableView(const TableView& table) const = 0;
    /// A cell's text; absent for an empty cell.
    [[nodiscard]] virtual std::optional<std::string>
    tableView_objectValueForTableColumn_row(const TableView& table, std::string_view column,
                                            std::int64_t row) const = 0;
};

/// Is told what the user does with a table.
class TableViewDelegate {
public:
    virtual ~TableViewDelegate() = default;
    virtual void tableViewSelectionDidChange(const TableView& table) = 0;
    [[nodiscard]] virtual bool tableView_shouldEditTableColumn_row(const TableView& table,
                                                                   std::string_view column,
                                                                   std::int64_t row) const = 0;
};

/// A table of rows, of which at most one is selected. It asks its data source for the number of
/// rows only when it is reloaded.
class TableView {
public:
    virtual ~TableView() = default;
    /// Both are borrowed; null detaches them.
    virtual void setDataSource(TableViewDataSource* source) = 0;
    virtual void setDelegate(TableViewDelegate* delegate) = 0;
    /// Sets the minimum width of a column's content, in points; an unknown column is ignored.
    virtual void setColumnWidth(std::string_view column, double width) = 0;
    /// Never calls the delegate. The selection stays at its row index, whatever that row now shows.
    /// If there is no such row any more, the selection becomes empty and the loss is pending: the
    /// delegate is told of it once the current operation has returned, or by the next `selectRow`,
    /// whichever comes first.
    virtual void reloadData() = 0;
    /// Selects one row only; a row outside the table empties the selection. Tells the delegate,
    /// once and before returning, if this changed the selection or a loss was pending. Selecting
    /// the selected row again changes nothing.
    virtual void selectRow(std::int64_t row) = 0;
    /// -1 for none.
    [[nodiscard]] virtual std::int64_t selectedRow() const = 0;
    /// A row outside the table is ignored.
    virtual void scrollRowToVisible(std::int64_t row) = 0;
};

} // namespace platform
