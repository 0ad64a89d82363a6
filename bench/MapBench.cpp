// SPDX-License-Identifier: MIT
#include "bench/MapStage.h"
#include "bench/StationLists.h"

#include <benchmark/benchmark.h>

#include <map>
#include <memory>
#include <string>

namespace {

constexpr const char* kinds[] = {"standard", "satellite", "hybrid", "flyover"};

struct Place {
    const char* name;
    platform::Location centre;
    double metres;
};
constexpr Place places[] = {
    {"world", {20, 0}, 5e7}, {"continent", {48.35, 11.79}, 3e6}, {"station", {48.35, 11.79}, 2000}};

std::vector<map::Station> stations(int size) {
    std::vector<map::Station> result;
    for (const auto& station : *bench::collection(size)->stations) {
        result.push_back({station->ICAO.value_or(""), {station->latitude, station->longitude}});
    }
    return result;
}

/// Stages are never destroyed, since the toolkit has gone by the time that statics are.
bench::MapStage& stage(int size, bool withTiles) {
    static auto& stages = *new std::map<std::pair<int, bool>, std::unique_ptr<bench::MapStage>>;
    auto& stage = stages[{size, withTiles}];
    if (!stage) {
        stage = std::make_unique<bench::MapStage>(1000, 600, stations(size), withTiles);
    }
    return *stage;
}

/// One frame of a map that is being dragged, with all tiles in memory or with none. The arguments
/// are the size of the list, the kind of map and the place.
void frame(benchmark::State& state, bool withTiles) {
    bench::MapStage& shown = stage(static_cast<int>(state.range(0)), withTiles);
    const Place& place = places[state.range(2)];
    shown.show(state.range(1), place.centre, place.metres);
    double step = 1;
    for (auto _ : state) {
        shown.paintMoved(step);
        step = -step;
    }
    state.SetLabel(std::string(kinds[state.range(1)]) + ", " + place.name);
}

void mapFrame(benchmark::State& state) {
    frame(state, true);
}
BENCHMARK(mapFrame)
    ->ArgsProduct({{bench::realList, bench::millionStations}, {0, 1, 2, 3}, {0, 1, 2}})
    ->Unit(benchmark::kMillisecond);

void mapFrameOffline(benchmark::State& state) {
    frame(state, false);
}
BENCHMARK(mapFrameOffline)
    ->ArgsProduct({{bench::realList}, {0, 2, 3}, {0, 1, 2}})
    ->Unit(benchmark::kMillisecond);

/// From construction to the first frame, with the base map read each time.
void mapStart(benchmark::State& state) {
    const std::vector<map::Station> list = stations(bench::realList);
    for (auto _ : state) {
        bench::MapStage shown(1000, 600, list, false);
        shown.paintMoved(0);
    }
}
BENCHMARK(mapStart)->Unit(benchmark::kMillisecond);

} // namespace
