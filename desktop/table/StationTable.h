// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/StationCells.h"
#include "desktop/table/StationTableModel.h"
#include "platform/views/TableView.h"

#include <QObject>
#include <QSettings>
#include <QTimer>

#include <array>
#include <functional>

class QTableView;

namespace desktop {

/// The logic's station table on a Qt table view.
///
/// A column opens wide enough for its heading, for the width that the logic asks for and for its
/// content, as far as a limited sample of rows shows. From then on it only grows, and once the user
/// has set its width it does not change at all.
class StationTable final : public QObject, public platform::TableView {
public:
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

    /// Rows for which `isMarked` returns true carry a star.
    void setMarked(std::function<bool(int row)> isMarked);
    /// Must be called when that answer has changed for a row without a reload.
    void markChanged(int row) { model_.markChanged(row); }

    /// The width of all columns and the scroll bar, in pixels.
    [[nodiscard]] int widthOfColumns() const;
    /// Restore and save the widths that the user has set.
    void recall(const QSettings& memory);
    void remember(QSettings& memory) const;

    [[nodiscard]] const StationTableModel& model() const { return model_; }

protected:
    /// Fits rows and columns again when the view's font or style changes.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Width {
        /// The least width that the logic asks for, and the width of the widest text seen, both
        /// without margins.
        double asked = 0;
        double content = 0;
        bool setByUser = false;
    };

    void select(int row);
    void selectionDidChange();
    void measureContent();
    void openColumn(int column);
    void fit();

    QTableView& view_;
    StationTableModel model_;
    platform::TableViewDelegate* delegate_ = nullptr;
    std::array<Width, std::tuple_size_v<decltype(catalogue::stationColumns)>> widths_;
    int mostRowsMeasured_ = 0;
    bool reloading_ = false;
    bool resizing_ = false;
    /// Runs from a reload that has emptied the selection until the delegate is told.
    QTimer lossUntold_;
    QTimer fitting_;
};

} // namespace desktop
