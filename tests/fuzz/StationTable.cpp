// SPDX-License-Identifier: MIT
#include "catalogue/ListFile.h"
#include "catalogue/stationparser.h"
#include "catalogue/table/ListMaker.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/support/FakeHost.h"

void feed(std::span<const std::byte> input) {
    const auto table = catalogue::readTable({input.begin(), input.end()});
    require(table.fault.empty() || table.rows.empty(), "a table with a fault has no rows");
    const auto made =
        catalogue::makeList(table, catalogue::Places::ours(),
                            std::chrono::year(2026) / std::chrono::February / std::chrono::day(1));
    platform::NotificationCenter center;
    support::FakeLog log;
    const auto parser =
        stationparser::initWithNSString(center, log, catalogue::alignedList(made.list).text);
    parser->main();
    const std::size_t listed = parser->stationArray() ? parser->stationArray()->size() : 0;
    require(table.rows.empty() || listed + made.formerIdentifiers == table.rows.size(),
            "a list has every station of its table");
}
