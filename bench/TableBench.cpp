// SPDX-License-Identifier: MIT
#include "bench/StationLists.h"
#include "browser/SCStationWindowController.h"
#include "tests/support/FakeHost.h"
#include "tests/support/FakeViews.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

/// All sixteen columns of every row; a screen shows forty rows.
void cellText(benchmark::State& state) {
    support::FakeHost host;
    const support::FakeTable table;
    const auto controller = SCStationWindowController::initWithWindowNibName(host.host, "");
    controller->addCollection(bench::collection(static_cast<int>(state.range(0))));
    const std::int64_t rows = controller->numberOfRowsInTableView(table);
    const std::vector<std::string> columns{"1", "2",  "3",  "4",  "5",  "6",  "7",  "8",
                                           "9", "10", "11", "12", "13", "14", "15", "16"};
    for (auto _ : state) {
        for (std::int64_t row = 0; row < rows; ++row) {
            for (const auto& column : columns) {
                benchmark::DoNotOptimize(
                    controller->tableView_objectValueForTableColumn_row(table, column, row));
            }
        }
    }
    state.counters["stations"] = static_cast<double>(rows);
}
BENCHMARK(cellText)
    ->Arg(bench::realList)
    ->Arg(bench::millionStations)
    ->Unit(benchmark::kMillisecond);

} // namespace
