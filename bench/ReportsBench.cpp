// SPDX-License-Identifier: MIT
#include "platform/host/Files.h"
#include "platform/host/System.h"
#include "reports/Reader.h"
#include "reports/Store.h"
#include "slib/DataCompression.h"
#include "tests/support/Gzip.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <malloc.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>

namespace {

using namespace reports;

struct Collector final : Receiver {
    void receive(Metar&& metar) override {
        batch.metars.push_back({std::make_shared<const Metar>(std::move(metar)), false});
    }
    void receive(Taf&& taf) override {
        batch.tafs.push_back(std::make_shared<const Taf>(std::move(taf)));
    }
    Batch batch;
};

/// A reply of the service with this many made-up METARs, all with the usual elements.
std::string reply(int metars) {
    std::mt19937 random(1);
    const auto number = [&random](int least, int most) {
        return std::uniform_int_distribution(least, most)(random);
    };
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?><response version=\"2.0\"><data>";
    for (int i = 0; i < metars; ++i) {
        const std::string station = fmt::format("K{:05}", i);
        text += fmt::format(
            "<METAR><raw_text>METAR {0} 180758Z {1:02}0{2:02}KT 10SM BKN{3:03} 02/M06 A3008 RMK "
            "AO2 "
            "SLP191 T00221056</raw_text><station_id>{0}</station_id><observation_time>"
            "2014-12-18T07:58:00.000Z</observation_time><latitude>38.8200</latitude><longitude>"
            "-76.8700</longitude><temp_c>2.2</temp_c><dewpoint_c>-5.6</"
            "dewpoint_c><wind_dir_degrees>"
            "{1}0</wind_dir_degrees><wind_speed_kt>{2}</wind_speed_kt><visibility_statute_mi>10+"
            "</visibility_statute_mi><altim_in_hg>30.08</altim_in_hg><sea_level_pressure_mb>1019.1"
            "</sea_level_pressure_mb><quality_control_flags><auto_station>TRUE</auto_station>"
            "</quality_control_flags><sky_condition sky_cover=\"BKN\" cloud_base_ft_agl=\"{3}00\"/>"
            "<flight_category>VFR</flight_category><metar_type>METAR</metar_type><elevation_m>86"
            "</elevation_m></METAR>",
            station, number(1, 36), number(1, 30), number(1, 250));
    }
    return text + "</data></response>";
}

constexpr int worldsMetars = 4538;
constexpr std::size_t limit = std::size_t{1} << 30;

/// A file of the whole world's METARs as the service sends it: a recorded one if there is one and
/// the world is wanted once, otherwise a made-up one of about its size, or of so many times that.
const platform::Data& packedWorld(int times) {
    static std::map<int, platform::Data> files;
    platform::Data& file = files[times];
    if (file.empty() && times == 1) {
        file = platform::readFile(NOSIG_SOURCE_DIR
                                  "/../shared/data/world/metars-world-2014-12-18-rebuilt.xml.gz",
                                  limit)
                   .value_or(platform::Data());
    }
    if (file.empty()) {
        const std::string packed = support::gzip(reply(times * worldsMetars));
        const auto bytes = std::as_bytes(std::span(packed));
        file.assign(bytes.begin(), bytes.end());
    }
    return file;
}

/// The world's METARs unpacked. If the environment names a file for it, it is written there for
/// other methods to read.
const std::string& world() {
    static const std::string text = [] {
        std::string found;
        static_cast<void>(
            gzipInflate(packedWorld(1), limit, [&found](std::span<const std::byte> bytes) {
                found.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
            }));
        if (const char* path = std::getenv("NOSIG_BENCH_WORLD")) {
            std::ofstream(path, std::ios::binary) << found;
        }
        return found;
    }();
    return text;
}

void read(benchmark::State& state, const std::string& text) {
    for (auto _ : state) {
        Collector collector;
        Reader reader(collector);
        reader.feed(std::as_bytes(std::span(text)));
        benchmark::DoNotOptimize(reader.finish());
        benchmark::DoNotOptimize(collector.batch);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void readOneReply(benchmark::State& state) {
    read(state, reply(1));
}
BENCHMARK(readOneReply)->Unit(benchmark::kMillisecond);

void readWorld(benchmark::State& state) {
    read(state, world());
}
BENCHMARK(readWorld)->Unit(benchmark::kMillisecond);

struct Services {
    platform::NotificationCenter center;
    platform::SystemClock clock;
    platform::StandardErrorLog log;
};

/// What follows the arrival of a file of the world's METARs, until the program has them.
void takeWorld(const platform::Data& packed, Store& store) {
    Collector collector;
    Reader reader(collector);
    static_cast<void>(gzipInflate(
        packed, limit, [&reader](std::span<const std::byte> bytes) { (void)reader.feed(bytes); }));
    static_cast<void>(reader.finish());
    store.take(std::move(collector.batch));
}

/// Without the disk, which the store writes behind. The argument is how many worlds.
void gzipToStore(benchmark::State& state) {
    Services services;
    const platform::Data& packed = packedWorld(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        Store store(services.center, services.clock, services.log, {});
        takeWorld(packed, store);
        state.PauseTiming();
        store.flush();
        state.counters["METARs"] = static_cast<double>(store.allMetars().size());
        state.ResumeTiming();
    }
}
BENCHMARK(gzipToStore)->Arg(1)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);

/// What the world's METARs take in memory once they are there.
void memoryOfWorld(benchmark::State& state) {
    Services services;
    const platform::Data& packed = packedWorld(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const std::size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
        Store store(services.center, services.clock, services.log, {});
        takeWorld(packed, store);
        store.flush();
        constexpr double mebibyte = 1 << 20;
        const std::size_t after = mallinfo2().uordblks + mallinfo2().hblkhd;
        state.counters["MiB"] = static_cast<double>(after - before) / mebibyte;
    }
}
BENCHMARK(memoryOfWorld)->Arg(1)->Arg(100)->Iterations(1)->Unit(benchmark::kMillisecond);

/// A store's file in a new folder, with one batch of reports ready.
struct Stage : Services {
    Stage() {
        Reader reader(collector);
        reader.feed(std::as_bytes(std::span(world())));
        static_cast<void>(reader.finish());
    }
    ~Stage() { std::filesystem::remove_all(folder); }

    Collector collector;
    std::string folder = [] {
        std::string name = (std::filesystem::temp_directory_path() / "nosig-XXXXXX").string();
        return std::string(mkdtemp(name.data()));
    }();
    std::filesystem::path file = folder + "/reports.sqlite";
};

void storeWorld(benchmark::State& state) {
    Stage stage;
    Store store(stage.center, stage.clock, stage.log, stage.file);
    for (auto _ : state) {
        store.take(stage.collector.batch);
        store.flush();
    }
}
BENCHMARK(storeWorld)->Unit(benchmark::kMillisecond);

/// Opens a store with the world's METARs: how long that keeps the caller, or how long it takes
/// until all reports are there.
void open(benchmark::State& state, bool toTheLast) {
    Stage stage;
    {
        Store store(stage.center, stage.clock, stage.log, stage.file);
        store.take(stage.collector.batch);
    }
    for (auto _ : state) {
        Store store(stage.center, stage.clock, stage.log, stage.file);
        if (toTheLast) {
            store.flush();
        }
        state.PauseTiming();
        store.flush();
        state.ResumeTiming();
    }
}

void openStore(benchmark::State& state) {
    open(state, false);
}
BENCHMARK(openStore)->Unit(benchmark::kMillisecond);

void openStoreToTheLast(benchmark::State& state) {
    open(state, true);
}
BENCHMARK(openStoreToTheLast)->Unit(benchmark::kMillisecond);

} // namespace
