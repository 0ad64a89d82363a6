// SPDX-License-Identifier: MIT
#pragma once

#include "platform/views/TableView.h"

#include <QAbstractTableModel>

#include <functional>
#include <utility>

namespace desktop {

/// The sixteen station columns for a Qt view. It stores no cells: it asks the data source for each
/// cell that is shown, and for the number of rows only at a reload.
class StationTableModel final : public QAbstractTableModel {
public:
    /// A cell shows at most this many characters, ellipsis included, so that a damaged catalogue
    /// cannot make drawing slow. Valid cells have at most 16.
    static constexpr int longestCell = 64;

    /// The role that says whether a row is marked; only the name's column answers it.
    static constexpr int markedRole = Qt::UserRole;
    static constexpr int markedColumn = 1;

    /// The data source is told that `table` is asking; it is borrowed.
    explicit StationTableModel(const platform::TableView& table);

    /// Borrowed; null gives empty cells. The rows change only at the next reload.
    void setDataSource(platform::TableViewDataSource* source) { source_ = source; }
    void reload();
    void setMarked(std::function<bool(int row)> isMarked) { isMarked_ = std::move(isMarked); }
    /// Tells the views; a row outside the table is ignored.
    void markChanged(int row);

    [[nodiscard]] QString cellText(int row, int column) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;

private:
    const platform::TableView& table_;
    platform::TableViewDataSource* source_ = nullptr;
    std::function<bool(int row)> isMarked_;
    int rows_ = 0;
};

} // namespace desktop
