// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/table/StationTableModel.h"

#include <QObject>
#include <QSettings>

#include <functional>
#include <optional>
#include <vector>

class QHeaderView;
class QMenu;
class QTableView;

namespace desktop {

/// The columns of a station table as the user has arranged them: widths, order, and which are
/// hidden. At least one is shown. Weather columns keep their arrangement while they are away.
///
/// A column opens wide enough for its heading, for the width that the logic asks for and for its
/// content, as far as a limited sample of rows shows. From then on it only grows, and once the user
/// has set its width it does not change at all.
class TableColumns final : public QObject {
public:
    /// Both are borrowed; the view shows the model.
    TableColumns(QTableView& view, const StationTableModel& model);

    /// Sets the least width of a column's content, in pixels.
    void setAskedWidth(int column, double width);
    /// Widens the columns for the rows that the table has now.
    void measureContent();
    /// Measures everything anew, in the view's font and style.
    void fit();
    /// Makes a column as wide as it should be, unless the user has set its width.
    void open(int column);
    /// Must be called when the model has other columns.
    void apply();

    /// From left to right, without those that are hidden.
    [[nodiscard]] std::vector<int> shown() const;
    /// Also of a column that is away.
    [[nodiscard]] bool isHidden(int column) const;
    /// Adds the entries that hide, move, show and reset columns; `column` is the one concerned.
    void addTo(QMenu& menu, int column);
    /// Called when the user has hidden a column.
    std::function<void(int column)> hidden = [](int) {};

    /// Whatever is odd in the settings is ignored.
    void recall(const QSettings& memory);
    void remember(QSettings& memory) const;

private:
    struct Column {
        /// The least width that the logic asks for, and the width of the widest text seen, both
        /// without margins.
        double asked = 0;
        double content = 0;
        /// In pixels; absent until the user sets it.
        std::optional<int> setByUser;
        bool isHidden = false;
    };

    [[nodiscard]] Column& at(int column) { return columns_[static_cast<std::size_t>(column)]; }
    [[nodiscard]] QHeaderView& header() const;
    void setHidden(int column, bool isHidden);
    void move(int column, int places);
    void noteOrder();
    void reset();

    QTableView& view_;
    const StationTableModel& model_;
    std::vector<Column> columns_;
    /// All columns from left to right, also those that are hidden or away.
    std::vector<int> order_;
    int mostRowsMeasured_ = 0;
    /// While the header changes at our own request.
    bool applying_ = false;
};

} // namespace desktop
