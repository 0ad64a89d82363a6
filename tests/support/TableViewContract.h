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
    platform::TableView& table = this->stage.table;
    const auto reload = [&](std::int64_t rows) {
        this->source.rows = rows;
        table.reloadData();
    };
    constexpr auto farthest = std::numeric_limits<std::int64_t>::max();
    enum When { never, later, atOnce };
    // Each case starts with five rows, of which row 3 is selected.
    const struct {
        const char* name;
        std::int64_t selected;
        When isTold;
        std::function<void()> act;
    } cases[] = {
        {"reload", 3, never, [&] { reload(5); }},
        {"reload to more", 3, never, [&] { reload(50); }},
        {"reload without the row", -1, later, [&] { reload(3); }},
        {"twice", -1, later, [&] { reload(3), reload(1); }},
        {"lost, not found again", -1, later, [&] { reload(3), reload(5); }},
        {"lost, settled by another", 2, atOnce, [&] { reload(3), table.selectRow(2); }},
        {"lost, settled by its number", 3, atOnce,
         [&] { reload(3), reload(5), table.selectRow(3); }},
        {"lost, none selected", -1, atOnce, [&] { reload(3), table.selectRow(3); }},
        {"lost, none selected twice", -1, atOnce,
         [&] { reload(0), table.selectRow(0), table.selectRow(0); }},
        {"source let go", -1, later, [&] { table.setDataSource(nullptr), table.reloadData(); }},
        {"same row", 3, never, [&] { table.selectRow(3); }},
        {"other row", 0, atOnce, [&] { table.selectRow(0); }},
        {"past the end", -1, atOnce, [&] { table.selectRow(5); }},
        {"negative", -1, atOnce, [&] { table.selectRow(-9); }},
        {"far past the end", -1, atOnce, [&] { table.selectRow((std::int64_t{1} << 32) + 1); }},
        {"farthest", -1, atOnce, [&] { table.selectRow(farthest); }},
        {"row not loaded yet", -1, atOnce, [&] { this->source.rows = 9, table.selectRow(7); }},
    };
    table.setDelegate(&this->source);
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        table.setDataSource(&this->source);
        reload(5);
        table.selectRow(3);
        this->stage.settle();
        this->source.told.clear();

        one.act();
        const std::vector<std::int64_t> nothing;
        const std::vector<std::int64_t> once{one.selected};
        EXPECT_EQ(table.selectedRow(), one.selected);
        EXPECT_EQ(this->source.told, one.isTold == atOnce ? once : nothing);
        this->stage.settle();
        EXPECT_EQ(table.selectedRow(), one.selected);
        EXPECT_EQ(this->source.told, one.isTold == never ? nothing : once);
    }
}

REGISTER_TYPED_TEST_SUITE_P(TableViewContract, NotifiesTheDelegateOfSelectionChangesOnly);

} // namespace support
