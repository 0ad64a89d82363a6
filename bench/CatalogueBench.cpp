// SPDX-License-Identifier: MIT
#include "bench/StationLists.h"
#include "catalogue/Nearest.h"
#include "catalogue/Packages.h"
#include "catalogue/Suggestions.h"
#include "catalogue/stationparser.h"
#include "catalogue/table/ListMaker.h"
#include "catalogue/table/PackageMaker.h"
#include "catalogue/table/ServiceTable.h"
#include "platform/archive/BinaryPropertyList.h"
#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "platform/host/Files.h"
#include "platform/host/System.h"

#include <GeographicLib/Geodesic.hpp>
#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <optional>

namespace {

/// Runs a benchmark on the real list, and on a thousand to a million stations.
void atAllSizes(benchmark::internal::Benchmark* one) {
    one->Arg(bench::realList)->RangeMultiplier(10)->Range(1000, bench::millionStations);
    one->Unit(benchmark::kMillisecond);
}

void countStations(benchmark::State& state) {
    state.counters["stations"] =
        static_cast<double>(bench::collection(static_cast<int>(state.range(0)))->stations->size());
}

void parse(benchmark::State& state) {
    platform::NotificationCenter center;
    platform::StandardErrorLog log;
    const auto parser = stationparser::initWithNSString(
        center, log, bench::listText(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        parser->parse();
    }
    countStations(state);
}
BENCHMARK(parse)->Apply(atAllSizes);

/// The weather service's table, as it is sent; absent, with an error, if it is not here.
std::optional<platform::Data> table(benchmark::State& state) {
    auto bytes = platform::readFile(
        NOSIG_SOURCE_DIR "/../shared/data/world/stations-cache-2026-02.json.gz", 1 << 24);
    if (!bytes) {
        state.SkipWithError("there is no table in ../shared/data");
    }
    return bytes;
}

void makeFromTable(benchmark::State& state) {
    const auto bytes = table(state);
    platform::StandardErrorLog log;
    for (auto _ : state) {
        const auto made =
            catalogue::makeList(catalogue::readTable(*bytes), catalogue::Places::ours(),
                                std::chrono::year(2026) / 2 / 1);
        const auto package = catalogue::packageOf(made.list, log, {});
        benchmark::DoNotOptimize(catalogue::setPositions(*package.collection, made.positions));
        benchmark::DoNotOptimize(platform::KeyedArchiver::archivedData(package.collection));
    }
}
BENCHMARK(makeFromTable)->Unit(benchmark::kMillisecond);

void readTable(benchmark::State& state) {
    const auto bytes = table(state);
    for (auto _ : state) {
        benchmark::DoNotOptimize(catalogue::readTable(*bytes));
    }
}
BENCHMARK(readTable)->Unit(benchmark::kMillisecond);

void save(benchmark::State& state) {
    const auto& collection = bench::collection(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(platform::KeyedArchiver::archivedData(collection));
    }
    countStations(state);
}
BENCHMARK(save)->Apply(atAllSizes);

void load(benchmark::State& state) {
    const auto bytes =
        platform::KeyedArchiver::archivedData(bench::collection(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            platform::KeyedUnarchiver::unarchive(*bytes, catalogue::archivedClasses()));
    }
    countStations(state);
}
BENCHMARK(load)->Apply(atAllSizes);

/// The yardstick for parse and load: allocating the records and their texts, and no more.
void copyStations(benchmark::State& state) {
    const auto& stations = *bench::collection(static_cast<int>(state.range(0)))->stations;
    for (auto _ : state) {
        std::vector<std::shared_ptr<AviationWeatherStation>> copies;
        copies.reserve(stations.size());
        for (const auto& station : stations) {
            copies.push_back(station->copyWithZone());
        }
        benchmark::DoNotOptimize(copies);
    }
    countStations(state);
}
BENCHMARK(copyStations)->Apply(atAllSizes);

/// The other yardstick for load: finding the value of each field of each record, and making nothing
/// of it.
void findFields(benchmark::State& state) {
    using platform::plist::Kind;
    const auto bytes =
        platform::KeyedArchiver::archivedData(bench::collection(static_cast<int>(state.range(0))));
    std::string fault;
    const auto list = platform::plist::Reader::open(*bytes, fault);
    std::vector<platform::plist::Element> records;
    platform::plist::Element slots;
    for (std::uint64_t i = 0;; ++i) {
        const auto found = list->element(i);
        if (found.kind == Kind::broken) {
            break;
        }
        if (found.kind == Kind::dictionary) {
            records.push_back(found);
        } else if (found.kind == Kind::array && found.count > slots.count) {
            // The largest array is the one that references go through.
            slots = found;
        }
    }
    for (auto _ : state) {
        for (const auto& record : records) {
            for (std::size_t place = record.count; place < 2 * std::size_t{record.count}; ++place) {
                auto found = list->element(list->reference(record, place));
                if (found.kind == Kind::uid) {
                    found = list->element(list->reference(slots, list->uid(found)));
                }
                benchmark::DoNotOptimize(found);
            }
        }
    }
    countStations(state);
}
BENCHMARK(findFields)->Apply(atAllSizes);

template <typename Query>
void measure(benchmark::State& state, Query query) {
    const auto& collection = bench::collection(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(query(*collection));
    }
    countStations(state);
}

void stationsWithMETARs(benchmark::State& state) {
    measure(state, [](const auto& stations) { return stations.stationsWithMETARCapability(); });
}
BENCHMARK(stationsWithMETARs)->Apply(atAllSizes);

void stationsWithTAFs(benchmark::State& state) {
    measure(state, [](const auto& stations) { return stations.stationsWithTAFCapability(); });
}
BENCHMARK(stationsWithTAFs)->Apply(atAllSizes);

/// Looks for an identifier that does not exist, so that every station is compared.
void stationByIdentifier(benchmark::State& state) {
    measure(state, [](const auto& stations) { return stations.stationWithICAOID("ZZZ9"); });
}
BENCHMARK(stationByIdentifier)->Apply(atAllSizes);

void searchIdentifiers(benchmark::State& state) {
    measure(state, [](const auto& stations) {
        return stations.stationArrayWithPartialICAOID_orName_orState("sf", {}, {});
    });
}
BENCHMARK(searchIdentifiers)->Apply(atAllSizes);

void searchNames(benchmark::State& state) {
    measure(state, [](const auto& stations) {
        return stations.stationArrayWithPartialICAOID_orName_orState({}, "san", {});
    });
}
BENCHMARK(searchNames)->Apply(atAllSizes);

void searchRegions(benchmark::State& state) {
    measure(state, [](const auto& stations) {
        return stations.stationArrayWithPartialICAOID_orName_orState({}, {}, "land");
    });
}
BENCHMARK(searchRegions)->Apply(atAllSizes);

void indexForSuggestions(benchmark::State& state) {
    measure(state, [](const auto& stations) { return catalogue::SuggestionIndex(&stations); });
}
BENCHMARK(indexForSuggestions)->Apply(atAllSizes);

/// The time of a keystroke.
void suggestFor(benchmark::State& state, const char* text) {
    const auto& collection = bench::collection(static_cast<int>(state.range(0)));
    const catalogue::SuggestionIndex index(collection.get());
    for (auto _ : state) {
        benchmark::DoNotOptimize(index.find(text));
    }
    countStations(state);
}

/// Almost every name fits.
void suggestForALetter(benchmark::State& state) {
    suggestFor(state, "a");
}
BENCHMARK(suggestForALetter)->Apply(atAllSizes);

void suggestForAName(benchmark::State& state) {
    suggestFor(state, "new york");
}
BENCHMARK(suggestForAName)->Apply(atAllSizes);

void groupByRegion(benchmark::State& state) {
    const auto collection =
        bench::collection(static_cast<int>(state.range(0)))->copySharingStations();
    for (auto _ : state) {
        collection->createStateCollections();
    }
    countStations(state);
}
BENCHMARK(groupByRegion)->Apply(atAllSizes);

void copyForTheTable(benchmark::State& state) {
    measure(state, [](const auto& stations) { return stations.copySharingStations(); });
}
BENCHMARK(copyForTheTable)->Apply(atAllSizes);

void stationsWithin100Miles(benchmark::State& state) {
    measure(state, [](const auto& stations) {
        return stations.stationsWithinDistanceFromStation_within(
            stations.stations->at(stations.stations->size() / 2), 100);
    });
}
BENCHMARK(stationsWithin100Miles)->Apply(atAllSizes);

void stationsAroundAPlace(benchmark::State& state) {
    measure(state, [](const auto& stations) {
        return stations.stationsClosestToLocation_within({47.46, 8.55}, 100);
    });
}
BENCHMARK(stationsAroundAPlace)->Apply(atAllSizes);

void closestStation(benchmark::State& state) {
    measure(state, [](const auto& stations) {
        return stations.stationClosestToLocation({47.46, 8.55});
    });
}
BENCHMARK(closestStation)->Apply(atAllSizes);

/// The stations of the list that report METARs, as seen from one in its middle.
void nearestWithMETARs(benchmark::State& state) {
    measure(state, [](const auto& collection) {
        const auto& stations = *collection.stations;
        return catalogue::nearest(*stations.at(stations.size() / 2), stations,
                                  [](const auto& station) { return station.METAR == 'X'; });
    });
}
BENCHMARK(nearestWithMETARs)->Apply(atAllSizes);

/// The yardstick for the distance queries: measures every station, in both directions.
void plainGeodesicLoop(benchmark::State& state) {
    measure(state, [](const auto& collection) {
        const auto& geodesic = GeographicLib::Geodesic::WGS84();
        const auto& stations = *collection.stations;
        const auto& centre = *stations.at(stations.size() / 2);
        std::size_t inside = 0;
        for (const auto& station : stations) {
            double there = 0;
            double back = 0;
            geodesic.Inverse(centre.latitude, centre.longitude, station->latitude,
                             station->longitude, there);
            geodesic.Inverse(station->latitude, station->longitude, centre.latitude,
                             centre.longitude, back);
            inside += std::fmin(there, back) < 100 * 1609.344;
        }
        return inside;
    });
}
BENCHMARK(plainGeodesicLoop)->Apply(atAllSizes);

} // namespace
