// SPDX-License-Identifier: MIT
#include "bench/StationLists.h"
#include "catalogue/StationCells.h"
#include "desktop/table/StationTable.h"
#include "platform/host/System.h"
#include "platform/text/Text.h"
#include "reports/Category.h"
#include "reports/Store.h"

#include <QApplication>
#include <QHeaderView>
#include <QPixmap>
#include <QTableView>

#include <benchmark/benchmark.h>

#include <random>

namespace {

using desktop::SortOrder;
using desktop::StationTable;
using desktop::StationTableModel;

struct Rows final : catalogue::StationRows {
    explicit Rows(int size) : size_(size) {}
    [[nodiscard]] const AviationWeatherStationCollection* shownStations() const override {
        return bench::collection(size_).get();
    }
    void tableViewSelectionDidChange(const platform::TableView& /*table*/) override {}

private:
    int size_;
};

/// About as many stations have a METAR as in the world: every other one of the list.
reports::Batch world(int size) {
    std::mt19937 random(1);
    const auto number = [&random](int least, int most) {
        return std::uniform_int_distribution(least, most)(random);
    };
    reports::Batch batch;
    bool reportsNow = false;
    for (const auto& station : *bench::collection(size)->stations) {
        reportsNow = !reportsNow;
        if (!reportsNow) {
            continue;
        }
        reports::Metar metar;
        metar.station = platform::trimmed(station->ICAO.value_or(""));
        metar.observed = platform::Date(std::chrono::minutes(number(0, 90)));
        metar.conditions.wind = reports::Wind{number(1, 360), false, number(0, 40), {}};
        metar.conditions.visibility = reports::Visibility{number(0, 40) / 4.0, false};
        metar.conditions.layers = {{reports::Cover::broken, number(1, 250) * 100, {}}};
        metar.temperature = number(-30, 40);
        metar.dewPoint = *metar.temperature - number(0, 9);
        metar.altimeter = number(2900, 3100) / 100.0;
        metar.category = reports::categoryOf(metar.conditions);
        batch.metars.push_back({std::make_shared<const reports::Metar>(std::move(metar)), false});
    }
    return batch;
}

/// A table on a window as large as the program's, with every station of the list, and reports in a
/// store that keeps none on the disk.
struct Stage {
    Stage(int size, bool hasWeather) : rows(size) {
        view.setSelectionBehavior(QAbstractItemView::SelectRows);
        view.setSelectionMode(QAbstractItemView::SingleSelection);
        view.verticalHeader()->hide();
        view.resize(1200, 900);
        view.show();
        table.setDataSource(&rows);
        table.setStations([this](int row) { return rows.stationInRow(row); });
        store.take(world(size));
        if (hasWeather) {
            table.setWeather(StationTable::Weather{
                [this](const std::string& station) { return store.reportsOf(station).metar; },
                [] { return platform::Date(std::chrono::hours(2)); }});
        }
        table.reloadData();
        table.selectRow(1);
    }

    platform::NotificationCenter center;
    platform::SystemClock clock;
    platform::StandardErrorLog log;
    reports::Store store{center, clock, log, {}};
    Rows rows;
    QTableView view;
    StationTable table{view};
};

/// What every keystroke of a search does, at its worst: with a sort of that column, or without one
/// for -1.
void reloadTable(benchmark::State& state) {
    Stage stage(static_cast<int>(state.range(0)), state.range(1) != 0);
    if (state.range(2) >= 0) {
        stage.table.sortBy(
            StationTable::Sort{static_cast<int>(state.range(2)), SortOrder::ascending});
    }
    for (auto _ : state) {
        stage.table.reloadData();
    }
    state.SetLabel(std::to_string(stage.table.model().rowCount()) + " rows");
}
BENCHMARK(reloadTable)
    ->ArgNames({"stations", "weather", "sortedBy"})
    ->Args({bench::realList, 0, -1})
    ->ArgsProduct({{bench::realList, bench::millionStations}, {1}, {-1, 1, 16}})
    ->Unit(benchmark::kMillisecond);

void sortTable(benchmark::State& state) {
    Stage stage(static_cast<int>(state.range(0)), true);
    const auto column = static_cast<int>(state.range(1));
    SortOrder order = SortOrder::ascending;
    for (auto _ : state) {
        stage.table.sortBy(StationTable::Sort{column, order});
        order = order == SortOrder::ascending ? SortOrder::descending : SortOrder::ascending;
    }
    state.SetLabel(stage.table.model()
                       .headerData(column, Qt::Horizontal, Qt::DisplayRole)
                       .toString()
                       .toStdString());
}
BENCHMARK(sortTable)
    ->ArgNames({"stations", "column"})
    ->ArgsProduct({{bench::realList},
                   benchmark::CreateDenseRange(0, StationTableModel::allColumns() - 1, 1)})
    ->ArgsProduct({{bench::millionStations}, {0, 5, 16, 23}})
    ->Unit(benchmark::kMillisecond);

/// From a whole world's reports to rows, sorted by category or not, and to cells on the screen. The
/// window is painted in a turn of its own, so the two differ by what holds it a second time.
void storeToTable(benchmark::State& state) {
    const auto size = static_cast<int>(state.range(0));
    Stage stage(size, true);
    if (state.range(1) != 0) {
        stage.table.sortBy(
            StationTable::Sort{StationTableModel::stationColumns(), SortOrder::descending});
    }
    const reports::Batch batch = world(size);
    for (auto _ : state) {
        stage.store.take(batch);
        stage.table.weatherChanged();
        if (state.range(2) != 0) {
            benchmark::DoNotOptimize(stage.view.grab());
        }
    }
}
BENCHMARK(storeToTable)
    ->ArgNames({"stations", "sorted", "painted"})
    ->ArgsProduct({{bench::realList, bench::millionStations}, {0, 1}, {0, 1}})
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int count, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(count, arguments);
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
}
