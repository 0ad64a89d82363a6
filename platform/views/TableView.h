// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// A table of rows, and whom it asks and tells. Main thread only.
namespace platform {

class TableView;

/// Where a table takes its cells from.
class TableViewDataSource {
public:
    virtual ~TableViewDataSource() = default;
    [[nodiscard]] virtual std::int64_t numberOfRowsInTableView(const TableView& table) const = 0;
    /// A cell's text; absent for an empty cell.
    [[nodiscard]] virtual std::optional<std::string>
    tableView_objectValueForTableColumn_row(const TableView& table, std::string_view column,
                                            std::int64_t row) const = 0;
};

/// Whom a table tells what the user does.
class TableViewDelegate {
public:
    virtual ~TableViewDelegate() = default;
    virtual void tableViewSelectionDidChange(const TableView& table) = 0;
    [[nodiscard]] virtual bool tableView_shouldEditTableColumn_row(const TableView& table,
                                                                   std::string_view column,
                                                                   std::int64_t row) const = 0;
};

/// A table of rows of which at most one is selected. It asks its data source for the number of
/// rows at a reload only.
class TableView {
public:
    virtual ~TableView() = default;
    /// Both are borrowed; null lets go of them.
    virtual void setDataSource(TableViewDataSource* source) = 0;
    virtual void setDelegate(TableViewDelegate* delegate) = 0;
    /// The least width of a column's content, in points; an unknown column is ignored.
    virtual void setColumnWidth(std::string_view column, double width) = 0;
    /// Never calls the delegate. The selection stays with the row's number while there is such a
    /// row, whatever it shows now; where it is gone the selection is empty, and the loss untold:
    /// the delegate hears of it once the current operation has returned, or from the next
    /// `selectRow`, whichever comes first.
    virtual void reloadData() = 0;
    /// Selects one row alone; a row outside the table empties the selection. Before it returns it
    /// tells the delegate, once, if the selection changed by it or a loss was untold. Selecting the
    /// row that is selected changes nothing.
    virtual void selectRow(std::int64_t row) = 0;
    /// -1 for none.
    [[nodiscard]] virtual std::int64_t selectedRow() const = 0;
    /// A row outside the table is ignored.
    virtual void scrollRowToVisible(std::int64_t row) = 0;
};

} // namespace platform
