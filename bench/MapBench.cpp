// SPDX-License-Identifier: MIT
#include "bench/MapStage.h"
#include "bench/StationLists.h"
#include "desktop/map/MapView.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
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

/// A report for every station, of every category and age, with winds from everywhere.
desktop::MapView::MetarOf weather() {
    std::vector<reports::Metar> metars;
    for (int i = 0; i < 1000; ++i) {
        reports::Metar metar;
        metar.observed = reports::Date(std::chrono::minutes(-i % 200));
        metar.category = static_cast<reports::Category>(i % 5);
        metar.conditions.wind = reports::Wind{i * 10 % 360, false, i % 70, {}};
        metars.push_back(metar);
    }
    return [metars, next = std::size_t{0}](const std::string&) mutable {
        return &metars[next++ % metars.size()];
    };
}

/// A frame with the stations' weather; while zooming, the barbs are thinned anew each time.
void frameWithWeather(benchmark::State& state, bool zooms) {
    bench::MapStage& shown = stage(static_cast<int>(state.range(0)), false);
    const Place& place = places[state.range(1)];
    shown.show(0, place.centre, place.metres);
    shown.view().setWeather(weather(), {});
    double step = 1;
    for (auto _ : state) {
        if (zooms) {
            platform::Region region = shown.view().region();
            region.latitudeSpan *= std::exp2(step / 100);
            region.longitudeSpan *= std::exp2(step / 100);
            shown.view().setRegion(region);
        }
        shown.paintMoved(step);
        step = -step;
    }
    shown.view().setWeather(nullptr, {});
    state.SetLabel(std::string("standard, ") + place.name);
}

void mapFrameWeather(benchmark::State& state) {
    frameWithWeather(state, false);
}
BENCHMARK(mapFrameWeather)
    ->ArgsProduct({{bench::realList, bench::millionStations}, {0, 1, 2}})
    ->Unit(benchmark::kMillisecond);

void mapZoomWeather(benchmark::State& state) {
    frameWithWeather(state, true);
}
BENCHMARK(mapZoomWeather)
    ->ArgsProduct({{bench::realList}, {0, 1, 2}})
    ->Unit(benchmark::kMillisecond);

/// New reports for every station, without the frame that shows them.
void mapRenewWeather(benchmark::State& state) {
    bench::MapStage& shown = stage(static_cast<int>(state.range(0)), false);
    const desktop::MapView::MetarOf metarOf = weather();
    for (auto _ : state) {
        shown.view().setWeather(metarOf, {});
    }
    shown.view().setWeather(nullptr, {});
}
BENCHMARK(mapRenewWeather)
    ->Arg(bench::realList)
    ->Arg(bench::millionStations)
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
