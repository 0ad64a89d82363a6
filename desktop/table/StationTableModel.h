// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStation.h"
#include "desktop/table/SortKey.h"
#include "platform/views/TableView.h"
#include "reports/Report.h"

#include <QAbstractTableModel>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace desktop {

/// The station columns for a Qt view, and after them the weather columns while weather is shown. It
/// stores no cells: it asks for each cell that is shown, and for the number of rows only at a
/// reload.
///
/// Rows have two numbers, which differ while the table is sorted: those of the data source, which
/// are simply called rows here, and those of the view, which are in model indexes.
class StationTableModel final : public QAbstractTableModel {
public:
    /// A cell shows at most this many characters, ellipsis included, so that a damaged catalogue
    /// cannot make drawing slow. Valid cells have at most 16.
    static constexpr int longestCell = 64;

    /// The role that says whether a row is marked; only the name's column answers it.
    static constexpr int markedRole = Qt::UserRole;
    static constexpr int markedColumn = 1;
    /// The role of a report's flight category, as a number; only the category's column answers it.
    static constexpr int categoryRole = Qt::UserRole + 1;

    using StationOfRow = std::function<std::shared_ptr<const AviationWeatherStation>(int row)>;

    /// The reports to show, and the time that their age is counted to. Both are called on the main
    /// thread, for every cell that is shown or sorted.
    struct Weather {
        /// Null for a station without a report. The identifier has no blanks around it.
        std::function<std::shared_ptr<const reports::Metar>(const std::string& identifier)> metarOf;
        std::function<platform::Date()> now;
    };

    struct Sort {
        int column = 0;
        SortOrder order = SortOrder::ascending;

        friend bool operator==(const Sort&, const Sort&) = default;
    };

    /// The data source is told that `table` is asking; it is borrowed.
    explicit StationTableModel(const platform::TableView& table);

    /// How many columns there are with and without weather. The weather columns come last.
    [[nodiscard]] static int allColumns();
    [[nodiscard]] static int stationColumns();
    /// What a column is called in the settings, and the column of that name; -1 for any other.
    [[nodiscard]] static QString identifierOf(int column);
    [[nodiscard]] static int columnOf(const QString& identifier);
    /// A text about as wide as a weather column's cells get; empty for other columns.
    [[nodiscard]] static QString sampleOf(int column);

    /// Borrowed; null gives empty cells. The rows change only at the next reload.
    void setDataSource(platform::TableViewDataSource* source) { source_ = source; }
    /// Says which station a row shows, or null. Without it no row has any weather, and sorting
    /// changes nothing.
    void setStations(StationOfRow stationOfRow) { stationOfRow_ = std::move(stationOfRow); }
    void reload();
    void setMarked(std::function<bool(int row)> isMarked) { isMarked_ = std::move(isMarked); }
    /// Tells the views; a row outside the table is ignored.
    void markChanged(int row);

    /// Adds the weather columns, or removes them.
    void setWeather(std::optional<Weather> weather);
    /// Must be called when reports have changed: sorts again if that depends on them.
    void weatherChanged();
    /// Sorts by the values of a column, or not at all. Rows with equal values stay in their order,
    /// those without a value are last. Every reload sorts anew. A column that is not there leaves
    /// the rows in their order until it is.
    void sortBy(std::optional<Sort> sort);
    /// As it was asked for.
    [[nodiscard]] const std::optional<Sort>& sorting() const { return sort_; }

    /// Between the two kinds of row numbers; -1 for a row outside the table.
    [[nodiscard]] int shownRow(std::int64_t row) const;
    [[nodiscard]] int sourceRow(int shownRow) const;

    [[nodiscard]] QString cellText(int row, int column) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;

private:
    [[nodiscard]] std::shared_ptr<const reports::Metar> metarIn(int row) const;
    [[nodiscard]] QString weatherText(int row, int column) const;
    [[nodiscard]] SortKey sortKey(int row, int column) const;
    [[nodiscard]] std::vector<int> sortedRows() const;
    void setOrder(std::vector<int> order);
    void arrange();

    const platform::TableView& table_;
    platform::TableViewDataSource* source_ = nullptr;
    StationOfRow stationOfRow_;
    std::function<bool(int row)> isMarked_;
    std::optional<Weather> weather_;
    std::optional<Sort> sort_;
    int rows_ = 0;
    /// The row at each place of the view, and the place of each row; both are empty while the
    /// table is not sorted.
    std::vector<int> order_;
    std::vector<int> places_;
};

} // namespace desktop
