// SPDX-License-Identifier: MIT
#include "bench/StationLists.h"
#include "browser/SCStationWindowController.h"
#include "tests/support/FakeHost.h"
#include "tests/support/FakeViews.h"

#include <benchmark/benchmark.h>

namespace {

/// Reads all sixteen columns of every row; a screen shows about forty rows.
void cellText(benchmark::State& state) {
    support::FakeHost host;
    const support::FakeTable table;
    const auto controller = SCStationWindowController::initWithWindowNibName(host.host, "");
    controller->addCollection(bench::collection(static_cast<int>(state.range(0))));
    const std::int64_t rows = controller->numberOfRowsInTableView(table);
    for (auto _ : state) {
        for (std::int64_t row = 0; row < rows; ++row) {
            for (const auto& column : catalogue::stationColumns) {
                benchmark::DoNotOptimize(controller->tableView_objectValueForTableColumn_row(
                    table, column.identifier, row));
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
