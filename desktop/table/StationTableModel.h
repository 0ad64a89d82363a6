// SPDX-License-Identifier: MIT
#pragma once

#include "platform/views/TableView.h"

#include <QAbstractTableModel>

#include <functional>
#include <utility>

namespace desktop {

/// The sixteen columns of stations for a Qt view. It keeps no cell: what is shown is asked of the
/// data source, and the number of rows at a reload only.
class StationTableModel final : public QAbstractTableModel {
public:
    /// A cell shows no more characters than these, an ellipsis included, so that a damaged
    /// catalogue cannot make drawing slow. Honest cells have at most 16.
    static constexpr int longestCell = 64;

    /// Whether a row is marked; answered for the column that shows it, the name's.
    static constexpr int markedRole = Qt::UserRole;
    static constexpr int markedColumn = 1;

    /// The data source is told that it is `table` that asks; borrowed.
    explicit StationTableModel(const platform::TableView& table);

    /// Borrowed; null gives empty cells. Takes no rows: that is for the next reload.
    void setDataSource(platform::TableViewDataSource* source) { source_ = source; }
    void reload();
    void setMarked(std::function<bool(int row)> isMarked) { isMarked_ = std::move(isMarked); }
    /// Tells who shows the row; one outside the table tells nothing.
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
