// SPDX-License-Identifier: MIT
#include "desktop/table/StationTable.h"
#include "tests/support/Stations.h"
#include "tests/support/TableViewContract.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableView>
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <limits>

namespace {

struct RealTable {
    void settle() { QCoreApplication::processEvents(); }

    QTableView view;
    desktop::StationTable table{view};
    QAbstractItemModelTester tester{view.model(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal};
};

/// Sorted in such a way that no row is where the logic has it.
struct SortedTable : RealTable {
    SortedTable() {
        table.setStations([](int row) {
            return makeStation({.stationName = fmt::format("{:03}", (row * 7 + 3) % 101)});
        });
        table.sortBy(desktop::StationTable::Sort{1, desktop::SortOrder::descending});
    }
};

struct Stations final : support::CountedRows {
    [[nodiscard]] std::optional<std::string>
    tableView_objectValueForTableColumn_row(const platform::TableView& shown,
                                            std::string_view column,
                                            std::int64_t row) const override {
        ++cellsAsked;
        return row == longRow
                   ? longText
                   : CountedRows::tableView_objectValueForTableColumn_row(shown, column, row);
    }

    std::int64_t longRow = -1;
    std::string longText;
    mutable std::int64_t cellsAsked = 0;
};

class StationTableTest : public ::testing::Test {
protected:
    StationTableTest() {
        view.setSelectionBehavior(QAbstractItemView::SelectRows);
        view.setSelectionMode(QAbstractItemView::SingleSelection);
        view.resize(900, 400);
        view.show();
        table.setDataSource(&stations);
        table.setDelegate(&stations);
        table.reloadData();
    }

    void expectRoomForEverything() {
        for (int column = 0; column < view.model()->columnCount(); ++column) {
            SCOPED_TRACE(column);
            EXPECT_GE(view.columnWidth(column), view.horizontalHeader()->sectionSizeHint(column));
            for (int row = 0; row < view.model()->rowCount(); ++row) {
                const QModelIndex index = view.model()->index(row, column);
                ASSERT_GE(view.columnWidth(column), view.sizeHintForIndex(index).width());
            }
        }
    }

    QTableView view;
    Stations stations;
    desktop::StationTable table{view};
};

TEST_F(StationTableTest, OpensColumnsWideEnoughInEveryFontAndKeepsTheUsersWidths) {
    stations.rows = 700;
    stations.longRow = 555;
    stations.longText = "WWWWWWWWWWWWWWWW 60°59'59\"N";
    table.reloadData();
    table.setColumnWidth("1", 300);
    table.setColumnWidth("17", 300);
    for (const double width : {-1.0, 1e9, std::numeric_limits<double>::quiet_NaN()}) {
        table.setColumnWidth("2", width);
    }
    expectRoomForEverything();
    EXPECT_GE(view.columnWidth(0), 300);
    EXPECT_LT(view.columnWidth(1), 1000);

    const int before = view.columnWidth(2);
    QFont large = view.font();
    large.setPointSize(2 * large.pointSize());
    view.setFont(large);
    view.horizontalHeader()->setFont(large);
    QCoreApplication::processEvents();
    expectRoomForEverything();
    EXPECT_GT(view.columnWidth(2), before);
    EXPECT_GE(view.rowHeight(0), view.fontMetrics().height());

    view.horizontalHeader()->resizeSection(1, 77);
    table.reloadData();
    table.setColumnWidth("2", 120);
    QCoreApplication::processEvents();
    EXPECT_EQ(view.columnWidth(1), 77);
}

TEST_F(StationTableTest, KeepsTheSelectedRowInSightWhenTheViewShrinks) {
    stations.rows = 1000;
    table.reloadData();
    const QScrollBar& bar = *view.verticalScrollBar();
    const int last = view.rowAt(view.viewport()->height() - 1) - 1;
    for (const bool isInSight : {true, false}) {
        table.selectRow(isInSight ? last : last + 100);
        view.resize(900, 300);
        QCoreApplication::processEvents();
        EXPECT_EQ(bar.value() > 0, isInSight);
        EXPECT_EQ(view.viewport()->rect().contains(view.visualRect(view.model()->index(last, 0))),
                  isInSight);
        view.resize(900, 400);
        view.scrollToTop();
    }
}

TEST_F(StationTableTest, LooksAtABoundedNumberOfCells) {
    stations.rows = 1'000'000;
    table.reloadData();
    (void)view.grab();
    EXPECT_LT(stations.cellsAsked, 200'000);
    // Every keystroke of a search reloads the table.
    stations.cellsAsked = 0;
    stations.rows = 999'999;
    table.reloadData();
    EXPECT_LT(stations.cellsAsked, 1'000);
}

TEST_F(StationTableTest, CutsTextLongerThanAnyStations) {
    stations.longRow = 0;
    for (const std::string_view piece : {"x", "é", "\U0001F326", "\xff"}) {
        stations.longText.clear();
        for (int i = 0; i < 100'000; ++i) {
            stations.longText += piece;
        }
        const QString shown = table.model().cellText(0, 1);
        EXPECT_LE(shown.size(), desktop::StationTableModel::longestCell);
        EXPECT_TRUE(shown.endsWith(QChar(0x2026)));
        EXPECT_TRUE(shown.isValidUtf16());
    }
}

} // namespace

namespace support {
using Tables = testing::Types<RealTable, SortedTable>;
INSTANTIATE_TYPED_TEST_SUITE_P(RealTable, TableViewContract, Tables);
} // namespace support
