// SPDX-License-Identifier: MIT
#include "tests/support/ScarceMemory.h"
#include "platform/archive/ArchiveCosts.h"
#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "tests/platform/ArchiveSamples.h"
#include "tests/support/TemporaryFolder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace platform;
using testing::HasSubstr;

namespace {

TEST(ScarceMemory, ReadingAnArchiveTakesNoMoreThanIsPromised) {
    // Each with a set of keys of its own.
    std::string layouts;
    for (int i = 0; i < 200'000; ++i) {
        layouts += fmt::format("@Beacon{{{}=0 {}=0}} ", i % 1000, 1000 + i / 1000);
    }
    const std::pair<std::string, bool> rows[] = {
        {"@Beacon{}*1000000", true},
        {"@Beacon{}*2500000", false},
        {"&Beacon{}*100000", true},
        {"&Beacon{}*300000", false},
        {layouts, true},
    };
    for (const auto& [elements, isRead] : rows) {
        SCOPED_TRACE(elements.substr(0, 20));
        const auto file = samples::Forger().archive({"NSArray{NS.objects=[" + elements + "]}"});
        auto& memory = support::Allocations::ofThisThread;
        memory = {};
        const auto result = KeyedUnarchiver::unarchive(file, samples::classes());
        // Long texts have an allowance of their own, but this archive has none.
        EXPECT_LT(static_cast<std::size_t>(memory.mostBytes), costs::limit(file.size()));
        EXPECT_THAT(result.fault, HasSubstr(isRead ? "" : "same contents"));
        EXPECT_EQ(result.fault.empty(), isRead);
    }
}

TEST(ScarceMemory, AnArchiveThatDoesNotFitIsAFaultNotACrash) {
    const auto root = samples::arrayOf(
        {samples::richBeacon(), URL{"https://example.org/"}, Date{}, Data(100), Null()});
    EXPECT_GT(support::starve([&] { return KeyedArchiver::archivedData(root); },
                              [](const auto& data) { EXPECT_FALSE(data); }),
              50U);
    const support::TemporaryFolder folder;
    const auto path = folder / "file";
    EXPECT_GT(support::starve([&] { return KeyedArchiver::archiveRootObject(root, path); },
                              [&](bool isWritten) {
                                  EXPECT_FALSE(isWritten);
                                  EXPECT_FALSE(std::filesystem::exists(path));
                              }),
              50U);
    // The class table must be made while there is memory.
    const platform::ClassTable& classes = samples::classes();
    const auto isFault = [](const Unarchived& result) {
        EXPECT_FALSE(result.fault.empty());
        EXPECT_EQ(samples::shown(result.root), "-");
    };
    EXPECT_GT(
        support::starve([&] { return KeyedUnarchiver::unarchiveFile(path, classes); }, isFault),
        50U);
}

} // namespace
