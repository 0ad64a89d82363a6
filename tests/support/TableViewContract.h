// SPDX-License-Identifier: MIT
#pragma once

#include "platform/views/TableView.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

/// What the logic relies on in every table. The real table and the fake one run the same tests. A
/// stage has a `table` and a `settle()` that returns to the event loop.
namespace support {

struct CountedRows : platform::TableViewDataSource, platform::TableViewDelegate {
    [[nodiscard]] std::int64_t
    numberOfRowsInTableView(const platform::TableView& /*table*/) const override {
        return rows;
    }
    [[nodiscard]] std::optional<std::string>
    tableView_objectValueForTableColumn_row(const platform::TableView& /*table*/,
                                            std::string_view column,
                                            std::int64_t row) const override {
        return std::string(column) + "." + std::to_string(row);
    }
    void tableViewSelectionDidChange(const platform::TableView& table) override {
        told.push_back(table.selectedRow());
    }
    [[nodiscard]] bool tableView_shouldEditTableColumn_row(const platform::TableView& /*table*/,
                                                           std::string_view /*column*/,
                                                           std::int64_t /*row*/) const override {
        return false;
    }

    std::int64_t rows = 5;
    /// The selected row each time the delegate was notified.
    std::vector<std::int64_t> told;
};

template <typename Stage>
struct TableViewContract : testing::Test {
    CountedRows source;
    Stage stage;
};

TYPED_TEST_SUITE_P(TableViewContract);

TYPED_TEST_P(TableViewContract, NotifiesTheDelegateOfSelectionChangesOnly) {
    using Told = std::vector<std::int64_t>;
    platform::TableView& table = this->stage.table;
    const auto reload = [&](std::int64_t rows) {
        this->source.rows = rows;
        table.reloadData();
    };
    struct Case {
        const char* name;
        std::function<void()> act;
        std::int64_t selected;
        Told toldAtOnce;
        Told toldInAll;
    };
    // Each case starts with five rows, of which row 3 is selected.
    const std::vector<Case> cases{
        {"reload", [&] { reload(5); }, 3, {}, {}},
        {"reload to more", [&] { reload(50); }, 3, {}, {}},
        {"reload without the row", [&] { reload(3); }, -1, {}, {-1}},
        {"twice", [&] { reload(3), reload(1); }, -1, {}, {-1}},
        {"lost, not found again", [&] { reload(3), reload(5); }, -1, {}, {-1}},
        {"lost, settled by another", [&] { reload(3), table.selectRow(2); }, 2, {2}, {2}},
        {"lost, settled by its number",
         [&] { reload(3), reload(5), table.selectRow(3); },
         3,
         {3},
         {3}},
        {"lost, none selected", [&] { reload(3), table.selectRow(3); }, -1, {-1}, {-1}},
        {"lost, none selected twice",
         [&] { reload(0), table.selectRow(0), table.selectRow(0); },
         -1,
         {-1},
         {-1}},
        {"source let go", [&] { table.setDataSource(nullptr), table.reloadData(); }, -1, {}, {-1}},
        {"same row", [&] { table.selectRow(3); }, 3, {}, {}},
        {"other row", [&] { table.selectRow(0); }, 0, {0}, {0}},
        {"past the end", [&] { table.selectRow(5); }, -1, {-1}, {-1}},
        {"negative", [&] { table.selectRow(-9); }, -1, {-1}, {-1}},
        {"far past the end", [&] { table.selectRow((std::int64_t{1} << 32) + 1); }, -1, {-1}, {-1}},
        {"farthest",
         [&] { table.selectRow(std::numeric_limits<std::int64_t>::max()); },
         -1,
         {-1},
         {-1}},
        {"row not loaded yet", [&] { this->source.rows = 9, table.selectRow(7); }, -1, {-1}, {-1}},
    };
    table.setDelegate(&this->source);
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name);
        table.setDataSource(&this->source);
        reload(5);
        table.selectRow(3);
        this->stage.settle();
        this->source.told.clear();

        one.act();
        EXPECT_EQ(table.selectedRow(), one.selected);
        EXPECT_EQ(this->source.told, one.toldAtOnce);
        this->stage.settle();
        EXPECT_EQ(table.selectedRow(), one.selected);
        EXPECT_EQ(this->source.told, one.toldInAll);
    }
}

REGISTER_TYPED_TEST_SUITE_P(TableViewContract, NotifiesTheDelegateOfSelectionChangesOnly);

} // namespace support
