// SPDX-License-Identifier: MIT
#include "browser/FavoritesFile.h"
#include "catalogue/Packages.h"
#include "platform/archive/KeyedArchiver.h"
#include "reports/Store.h"
#include "tests/support/FakeHost.h"
#include "tests/support/Stations.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <random>

namespace {

/// Something that is saved under a number, and can tell the number that it finds saved.
struct Saved {
    std::function<void(int number)> save;
    /// Negative if what it finds is not whole.
    std::function<int()> read;
};

/// Starts a process that saves one number after the other and tells each once it is saved, lets it
/// finish `few` times, and kills it some moments later. Returns the last number that it told.
int killWhileSaving(const std::function<Saved()>& begin, int few,
                    std::chrono::microseconds moments) {
    int ends[2] = {};
    EXPECT_EQ(::pipe(ends), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        const Saved saved = begin();
        for (int number = std::max(saved.read(), 0) + 1;; ++number) {
            saved.save(number);
            if (::write(ends[1], &number, sizeof number) != sizeof number) {
                ::_exit(1);
            }
        }
    }
    ::close(ends[1]);
    int last = -1;
    for (int saves = 0; saves < few; ++saves) {
        EXPECT_EQ(::read(ends[0], &last, sizeof last), sizeof last) << "it ended by itself";
    }
    const auto end = std::chrono::steady_clock::now() + moments;
    while (std::chrono::steady_clock::now() < end) {
    }
    ::kill(child, SIGKILL);
    while (::read(ends[0], &last, sizeof last) == sizeof last) {
    }
    ::close(ends[0]);
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status)) << "it ended by itself";
    return last;
}

void expectWholeAfterKills(const std::function<Saved()>& begin) {
    constexpr int kills = 200;
    // Longer than a save takes.
    constexpr unsigned mostMoments = 5000;
    std::mt19937 random(1); // NOLINT(*-msc51-cpp): the same kills in every run
    for (int kill = 0; kill < kills; ++kill) {
        const int few = 1 + static_cast<int>(random() % 3);
        const int last =
            killWhileSaving(begin, few, std::chrono::microseconds(random() % mostMoments));
        const int found = begin().read();
        ASSERT_TRUE(found == last || found == last + 1)
            << "after " << last << " there is " << found << ", in kill " << kill;
    }
}

TEST(KilledSaves, LeaveAPackageOldOrNew) {
    const support::TemporaryFolder folder;
    constexpr int stations = 100;
    expectWholeAfterKills([file = folder / "mine.STNPKG"] {
        return Saved{[file](int number) {
                         auto collection = makeCollection({});
                         collection->stations->assign(stations, makeStation({"EFHK"}));
                         collection->numberOfStations = number;
                         platform::KeyedArchiver::archiveRootObject(collection, file);
                     },
                     [file] {
                         const auto collection = catalogue::readPackage(file);
                         return collection && collection->stations->size() == stations
                                    ? static_cast<int>(collection->numberOfStations)
                                    : -1;
                     }};
    });
}

TEST(KilledSaves, LeaveFavoritesOldOrNew) {
    support::FakeHost host;
    expectWholeAfterKills([&host] {
        const auto file = std::make_shared<FavoritesFile>(host.host);
        auto loaded = file->load();
        return Saved{[file](int number) {
                         // As marks do, and now and then the end of a run.
                         const FavoritesFile::Identifiers all(50, std::to_string(number));
                         number % 3 == 0 ? file->save(all) : file->keep(all);
                     },
                     [loaded] {
                         const bool isWhole =
                             loaded.size() == 50 && loaded.front() == loaded.back();
                         return isWhole ? std::stoi(loaded.front()) : -1;
                     }};
    });
    EXPECT_TRUE(host.log.lines().empty());
}

TEST(KilledSaves, LeaveReportsOldOrNew) {
    support::FakeHost host;
    const support::TemporaryFolder folder;
    const auto file = folder / "reports.sqlite";
    constexpr std::size_t stations = 20;
    expectWholeAfterKills([&] {
        const auto store =
            std::make_shared<reports::Store>(host.notificationCenter, host.clock, host.log, file);
        return Saved{[store](int number) {
                         reports::Batch batch;
                         for (std::size_t i = 0; i < stations; ++i) {
                             reports::Metar metar;
                             metar.station = "KA" + std::to_string(i);
                             metar.raw = std::to_string(number);
                             metar.observed = platform::Date(std::chrono::minutes(number));
                             batch.metars.push_back(
                                 {std::make_shared<const reports::Metar>(std::move(metar)), true});
                         }
                         store->take(std::move(batch));
                         store->flush();
                     },
                     [store] {
                         store->flush();
                         const auto all = store->allMetars();
                         const bool isWhole = all.size() == stations &&
                                              std::ranges::all_of(all, [&](const auto& metar) {
                                                  return metar->raw == all.front()->raw;
                                              });
                         return isWhole ? std::stoi(all.front()->raw) : -1;
                     }};
    });
    EXPECT_TRUE(host.log.lines().empty());
}

} // namespace
