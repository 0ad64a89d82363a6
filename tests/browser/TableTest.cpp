// SPDX-License-Identifier: MIT
#include "tests/support/ShownCatalogue.h"
#include "tests/support/TableViewContract.h"

#include <limits>

namespace {

struct FakeStage {
    void settle() { table.settle(); }

    support::FakeTable table;
};

class StationTable : public support::ShownCatalogue {
protected:
    StationTable() { restart(); }

    void show(const std::shared_ptr<AviationWeatherStationCollection>& collection) {
        controller->addCollection(collection);
        window.table.reloadData();
    }
};

TEST_F(StationTable, ShowsEveryColumnInItsForm) {
    auto collection = makeCollection({{"KZZQ", "SAMPLE FIELD    ", "COLORADO ", 39.87, -104.67}});
    auto& station = *collection->stations->front();
    station.stateAbbreviation = "CO";
    station.SYNOPIndex = 72999;
    station.ELEV = -30;
    station.METAR = 'X';
    station.NEXRAD = '\0';
    station.aviationFlag = ' ';
    station.upperAirOrWind = '\xe9';
    station.plottingPriority = '7';
    station.countryCode = "US";
    show(collection);
    const char* const cells[] = {"CO",          "SAMPLE FIELD    ", "KZZQ", "(absent)", "72999",
                                 "39°52'12\"N", "104°40'12\"S",     "-30",  "X",        "",
                                 " ",           "\xEF\xBF\xBD",     "",     "",         "7",
                                 "US"};
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(window.cell(0, std::to_string(i + 1)), cells[i]) << "column " << i + 1;
    }
    for (const char* other : {"0", "17", "", "x", "-1"}) {
        EXPECT_EQ(window.cell(0, other), "") << other;
    }
    for (const std::int64_t row :
         {std::int64_t{-1}, std::int64_t{1}, std::numeric_limits<std::int64_t>::max()}) {
        EXPECT_EQ(window.cell(row, "3"), "") << row;
    }
    EXPECT_FALSE(controller->tableView_shouldEditTableColumn_row(window.table, "2", 0));
}

TEST_F(StationTable, TakesAMissingStateFromTheRegionsName) {
    using Text = std::optional<std::string>;
    struct {
        Text abbreviation, region;
        const char* shown;
    } const rows[] = {
        {{}, "FLORIDA", "FL"}, {{}, "PERU", "PE"}, {{}, "FRA", "(absent)"},
        {{}, {}, "(absent)"},  {"  ", "AB", "  "}, {"  ", "SPAIN", "SP"},
        {"NY", "SPAIN", "NY"}, {"", "SPAIN", ""},  {{}, "A\xF0\x9F\x9B\xABX", "A\xF0\x9F\x9B\xAB"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.region.value_or("no region"));
        auto collection = makeCollection({{"A", "B", row.region}});
        collection->stations->front()->stateAbbreviation = row.abbreviation;
        show(collection);
        EXPECT_EQ(window.cell(0, "1"), row.shown);
    }
}

} // namespace

namespace support {
INSTANTIATE_TYPED_TEST_SUITE_P(FakeTable, TableViewContract, FakeStage);
} // namespace support
