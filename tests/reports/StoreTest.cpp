// SPDX-License-Identifier: MIT
#include "reports/Store.h"
#include "reports/Codec.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sqlite3.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <future>

namespace reports {
namespace {

using namespace std::chrono_literals;
using Ending = Answer::Ending;

const Date noon = Date(std::chrono::sys_days(std::chrono::year(2026) / 11 / 21)) + 12h;

std::shared_ptr<const Metar> metar(const std::string& station, Date observed,
                                   const std::string& raw = "raw") {
    Metar made;
    made.station = station;
    made.observed = observed;
    made.raw = raw;
    made.conditions = {Wind{{}, true, 3, 12},
                       Visibility{6.21, true},
                       "-RA",
                       {{Cover::broken, {}, "CB"}, {Cover::obscured, 200, ""}},
                       200};
    made.temperature = -5.6;
    made.altimeter = 29.92;
    made.category = Category::IFR;
    made.revision = Revision::corrected;
    made.isAutomatic = true;
    return std::make_shared<const Metar>(made);
}

std::shared_ptr<const Taf> taf(const std::string& station, Date issued) {
    Taf made;
    made.station = station;
    made.issued = made.begins = issued;
    made.ends = issued + 24h;
    made.raw = "TAF";
    const Conditions conditions{Wind{270, false, 10, {}}, Visibility{4, false}, "", {}, {}};
    const Forecast base{Forecast::Kind::base, issued,     issued + 6h,   {}, {},
                        conditions,           conditions, Category::MVFR};
    made.forecasts = {base, base};
    made.forecasts[1].kind = Forecast::Kind::becoming;
    made.forecasts[1].complete = issued + 2h;
    made.forecasts[1].probability = 40;
    made.forecasts[1].stated = {};
    made.isCancelled = true;
    return std::make_shared<const Taf>(made);
}

struct StoreTest : testing::Test {
    void SetUp() override {
        host.clock.time = noon;
        open();
    }
    /// Ends the store, if there is one, and starts another on the same file.
    void open() {
        store.reset();
        store = std::make_unique<Store>(host.notificationCenter, host.clock, host.log, file);
        store->flush();
    }
    std::vector<Metar> history(const std::string& station) {
        std::promise<std::vector<Metar>> promise;
        store->history(station,
                       [&](std::vector<Metar> found) { promise.set_value(std::move(found)); });
        return promise.get_future().get();
    }
    [[nodiscard]] std::string rawOf(const std::string& station) const {
        const auto kept = store->reportsOf(station).metar;
        return kept ? kept->raw : "";
    }

    support::TemporaryFolder folder;
    std::filesystem::path file = folder / "cache/reports.sqlite";
    support::FakeHost host;
    std::unique_ptr<Store> store;
};

TEST(Codec, GivesBackWhatItTookAndNothingElse) {
    const auto kept = metar("KAAA", noon);
    const auto forecast = taf("KAAA", noon);
    const platform::Data bytes = encoded(*kept);
    const platform::Data forecastBytes = encoded(*forecast);
    EXPECT_EQ(decodedMetar(bytes), *kept);
    EXPECT_FALSE(decodedMetar(forecastBytes) || decodedTaf(bytes));
    Taf longer = *forecast;
    longer.forecasts.resize(30);
    for (const unsigned size : {0U, 23U, 24U, 256U, 65'536U}) {
        longer.raw.assign(size, 'x');
        EXPECT_EQ(decodedTaf(encoded(longer)), longer) << size;
    }
    for (std::size_t size = 0; size < forecastBytes.size(); ++size) {
        EXPECT_FALSE(decodedTaf(std::span(forecastBytes).first(size))) << size;
    }
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        platform::Data other = bytes;
        other[at] ^= std::byte{0xff};
        static_cast<void>(decodedMetar(other));
    }
    // A level for each byte: arrays of one item and without an end, tags, texts in parts, maps.
    for (const int head : {0x81, 0x9f, 0xc1, 0x7f, 0x5f, 0xa1}) {
        EXPECT_FALSE(decodedMetar(platform::Data(1'000'000, std::byte(head)))) << head;
    }
    // What no report can have would be too much for sums that are right for all that can.
    const auto spoilt = [&kept](auto spoil) {
        Metar one = *kept;
        spoil(one);
        return decodedMetar(encoded(one)).has_value();
    };
    EXPECT_FALSE(spoilt([](Metar& one) { one.elevation = -5e7; }));
    EXPECT_FALSE(spoilt([](Metar& one) { one.conditions.layers = {{Cover::few, 2'000'000, {}}}; }));
    const auto* first = reinterpret_cast<const std::uint8_t*>(bytes.data());
    auto fields = nlohmann::json::from_cbor(first, first + bytes.size());
    fields[1] = -1.9e33;
    const std::vector<std::uint8_t> other = nlohmann::json::to_cbor(fields);
    EXPECT_FALSE(decodedMetar(std::as_bytes(std::span(other)))) << "a fraction for a whole number";
    EXPECT_FALSE(spoilt([](Metar& one) { one.observed = Date::min(); }));
    EXPECT_FALSE(spoilt([](Metar& one) { one.temperature = std::nan(""); }));
    EXPECT_FALSE(spoilt([](Metar& one) { one.conditions.wind = Wind{{}, false, -1, {}}; }));
}

TEST_F(StoreTest, KeepsTheLastOfEachStationOverARestart) {
    const Answer whole{noon, Ending::whole, 200, noon - 1min, "tag"};
    store->take({{{metar("KAAA", noon, "first"), false}, {metar("KBBB", noon), false}}, {}, {}});
    store->take({{}, {taf("KAAA", noon)}, {}});
    store->take({{}, {}, {{"KAAA", Kind::taf, whole}, {"KBBB", Kind::taf, {noon}}}});
    store->take({{{metar("KAAA", noon + 1h, "later"), false}}, {}, {}});
    store->take({{{metar("KAAA", noon, "earlier"), false}}, {taf("KAAA", noon - 1h)}, {}});
    for (int start = 0; start < 2; ++start) {
        EXPECT_EQ(rawOf("KAAA"), "later");
        const StationReports kept = store->reportsOf("KAAA");
        EXPECT_EQ(*kept.taf, *taf("KAAA", noon));
        EXPECT_EQ(kept.tafAnswer, whole);
        EXPECT_FALSE(kept.metarAnswer);
        EXPECT_EQ(*store->reportsOf("KBBB").metar, *metar("KBBB", noon));
        EXPECT_EQ(store->reportsOf("KBBB").tafAnswer, Answer{noon});
        EXPECT_EQ(store->allMetars().size(), 2U);
        open();
    }
    EXPECT_EQ(host.log.lines(), std::vector<std::string>());
}

TEST_F(StoreTest, TellsWhatChanged) {
    std::vector<std::string> told;
    const auto token = host.notificationCenter.addObserver(
        Store::didChange, [&](const platform::Notification& notification) {
            const auto* station = std::get_if<std::string>(&notification.object);
            told.push_back(station ? *station : "many");
        });
    store->take({{{metar("KAAA", noon), false}}, {}, {}});
    store->take({{{metar("KAAA", noon - 1h), false}}, {}, {}});
    store->take({{{metar("KBBB", noon), false}, {metar("KCCC", noon), false}}, {}, {}});
    store->take({{}, {}, {{"KDDD", Kind::taf, {noon, Ending::refused, 429}}}});
    store->take({});
    EXPECT_EQ(store->reportsOf("KDDD").openQuestions, 0);
    store->ask({Kind::taf, {"KDDD"}});
    store->ask({Kind::taf, {"KDDD", "KEEE"}});
    // An answer that comes after a later one only closes its question.
    store->take({{}, {}, {{"KDDD", Kind::taf, {noon - 1h, Ending::whole, 200}}}});
    EXPECT_EQ(store->reportsOf("KDDD").openQuestions, 1);
    EXPECT_EQ(store->reportsOf("KDDD").tafAnswer->status, 429);
    store->take({{}, {taf("KEEE", noon)}, {}});
    store->take({{{metar("KAAA", noon + 1h), false}}, {taf("KEEE", noon + 1h)}, {}});
    open();
    EXPECT_EQ(told, (std::vector<std::string>{"KAAA", "many", "KDDD", "KDDD", "many", "KDDD",
                                              "KEEE", "many", "many"}));
}

TEST_F(StoreTest, KeepsHistoryOfStationsThatWereAskedForWhateverTheClockDoes) {
    const auto take = [&](Date observed, bool keepsHistory) {
        const std::string raw = std::to_string((observed - noon) / 1h);
        store->take({{{metar("KAAA", observed, raw), keepsHistory}}, {}, {}});
    };
    for (const int hour : {-60, -49, -48, -25, -24, -10, 0}) {
        take(noon + std::chrono::hours(hour), true);
    }
    const auto raws = [&] {
        std::vector<std::string> found;
        for (const Metar& one : history("KAAA")) {
            found.push_back(one.raw);
        }
        return found;
    };
    EXPECT_EQ(raws(), (std::vector<std::string>{"-24", "-10", "0"}));
    store.reset();
    EXPECT_EQ(Database(file, host.log).history("KAAA", noon - 100h).size(), 5U) << "of 48 hours";
    open();
    // A METAR that comes late fills its gap, and the last one stays the last.
    take(noon - 15h, true);
    EXPECT_EQ(raws(), (std::vector<std::string>{"-24", "-15", "-10", "0"}));
    EXPECT_EQ(rawOf("KAAA"), "0");
    // Our clock jumps three days ahead, then three days back.
    for (const auto jump : {72h, -72h}) {
        host.clock.time = noon + jump;
        store->take({{{metar("KBBB", noon - jump), false}}, {}, {}});
        open();
        EXPECT_EQ(raws().size(), 4U);
        EXPECT_EQ(rawOf("KAAA"), "0");
    }
    host.clock.time = noon;
    // A report from the future does not keep later ones out.
    take(noon + 3h, false);
    take(noon + 1h, false);
    EXPECT_EQ(rawOf("KAAA"), "3") << "clocks differ";
    take(noon + 4h, false);
    take(noon + 1h, false);
    EXPECT_EQ(rawOf("KAAA"), "1");
    open();
    EXPECT_EQ(rawOf("KAAA"), "1") << "without history only the last one stays";
    EXPECT_EQ(raws(), std::vector<std::string>{"1"});
    store->take({{}, {}, {{"KAAA", Kind::metar, {noon}}}});
    take(noon + 2h, false);
    EXPECT_EQ(raws(), (std::vector<std::string>{"1", "2"})) << "asked for, alone or not";
}

TEST_F(StoreTest, BeginsAnewWhereTheFileIsDamaged) {
    store->take({{{metar("KAAA", noon), false}}, {taf("KAAA", noon)}, {}});
    store.reset();
    std::ifstream written(file, std::ios::binary);
    const std::string good(std::istreambuf_iterator<char>(written), {});
    ASSERT_GT(good.size(), 8192U);
    std::string otherVersion = good;
    otherVersion[63] = 99;
    std::vector<std::string> damaged{"no database at all, but some text of some length. " + good,
                                     good.substr(0, 100), otherVersion};
    for (std::size_t page = 4096; page < good.size(); page += 4096) {
        std::string one = good;
        std::fill_n(one.begin() + static_cast<std::ptrdiff_t>(page), 64, '\xff');
        damaged.push_back(one);
    }
    for (const std::string& bytes : damaged) {
        SCOPED_TRACE(&bytes - damaged.data());
        std::filesystem::remove(file.string() + ".damaged");
        std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes;
        const std::size_t linesBefore = host.log.lines().size();
        for (int start = 0; start < 2; ++start) {
            open();
            store->take({{{metar("KBBB", noon), false}}, {taf("KBBB", noon)}, {}});
        }
        open();
        EXPECT_TRUE(store->reportsOf("KBBB").metar && store->reportsOf("KBBB").taf);
        EXPECT_TRUE(std::filesystem::exists(file.string() + ".damaged"));
        EXPECT_EQ(host.log.lines().size(), linesBefore + 1);
        store.reset();
    }
}

TEST_F(StoreTest, WorksOnInMemoryWhereNothingCanBeWritten) {
    // The folder of the path is a plain file.
    const std::filesystem::path plain = folder.write("plain", "") / "reports.sqlite";
    for (const std::filesystem::path& path : {std::filesystem::path(), plain, plain}) {
        file = path;
        open();
        EXPECT_EQ(rawOf("KAAA"), "");
        store->take({{{metar("KAAA", noon), false}}, {}, {}});
        store->flush();
        EXPECT_EQ(rawOf("KAAA"), "raw");
        EXPECT_EQ(history("KAAA").size(), 0U);
    }
    EXPECT_EQ(host.log.lines(),
              std::vector(2, plain.string() + " cannot be used: unable to open database file"));
    std::filesystem::remove(plain.parent_path());
    store->take({{{metar("KAAA", noon + 1h), true}}, {}, {}});
    EXPECT_EQ(history("KAAA").size(), 1U) << "the folder can be made now";
}

TEST_F(StoreTest, WaitsForAnotherProgramAndGoesOnWithoutIt) {
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    store->take({{{metar("KAAA", noon), false}}, {}, {}});
    store->flush();
    EXPECT_EQ(rawOf("KAAA"), "raw");
    EXPECT_EQ(sqlite3_close(other), SQLITE_OK);
    store->take({{{metar("KBBB", noon), false}}, {}, {}});
    open();
    EXPECT_EQ(rawOf("KBBB"), "raw");
    EXPECT_EQ(host.log.lines(), std::vector<std::string>());
}

TEST_F(StoreTest, LetsHistoryGoWhereTheFileIsFull) {
    const std::filesystem::path small = folder / "small.sqlite";
    Database database(small, host.log, std::size_t{256} << 10);
    for (int hour = 0; hour < 48; ++hour) {
        Batch batch;
        for (char letter = 'A'; letter <= 'Z'; ++letter) {
            batch.metars.push_back({metar(std::string("KA") + letter + letter,
                                          noon + std::chrono::hours(hour), std::string(300, 'x')),
                                    true});
        }
        EXPECT_TRUE(database.write(batch)) << hour;
    }
    EXPECT_EQ(database.latest().metars.size(), 26U);
    EXPECT_EQ(database.history("KAAA", noon + 47h).size(), 1U);
    EXPECT_EQ(host.log.lines(),
              std::vector{small.string() + " is full, so the history in it is deleted"});
    EXPECT_LE(std::filesystem::file_size(small), std::size_t{256} << 10);
}

} // namespace
} // namespace reports
