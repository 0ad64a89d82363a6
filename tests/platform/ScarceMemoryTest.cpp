// SPDX-License-Identifier: MIT
#include "tests/support/ScarceMemory.h"
#include "platform/archive/ArchiveCosts.h"
#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "platform/host/OperationQueue.h"
#include "tests/platform/ArchiveSamples.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <new>

using namespace platform;
using testing::HasSubstr;

namespace {

enum class Shape { oneObject, manyObjects, manyLayouts };

/// An archive of a list: of one object over and over, of objects that each cost the file only a
/// reference, or of objects that each have their own set of keys too.
Data listing(Shape shape, std::uint32_t elements) {
    samples::Forger forger;
    const auto key = [](std::uint32_t number) { return std::to_string(number) + "=0 "; };
    const auto plain = forger.object("Beacon{}");
    std::string uids;
    for (std::uint32_t i = 0; shape != Shape::oneObject && i < elements; ++i) {
        const auto object =
            shape == Shape::manyObjects
                ? plain
                : forger.object("Beacon{" + key(i % 1000) + key(1000 + i / 1000) + "}");
        uids += "#" + std::to_string(forger.addSlot(object)) + " ";
    }
    if (shape == Shape::oneObject) {
        uids = "#" + std::to_string(forger.addSlot(plain)) + "*" + std::to_string(elements);
    }
    return forger.archive({"NSArray{NS.objects=[" + uids + "]}"});
}

TEST(ScarceMemory, ReadingAnArchiveTakesNoMoreThanIsPromised) {
    const struct {
        Shape shape;
        std::uint32_t elements;
        bool isRead;
    } rows[] = {
        {Shape::oneObject, 1'000'000, true}, {Shape::oneObject, 2'500'000, false},
        {Shape::manyObjects, 100'000, true}, {Shape::manyObjects, 300'000, false},
        {Shape::manyLayouts, 200'000, true},
    };
    for (const auto& [shape, elements, isRead] : rows) {
        SCOPED_TRACE(testing::Message() << static_cast<int>(shape) << " " << elements);
        const auto file = listing(shape, elements);
        const support::PeakMemory peak;
        const auto result = KeyedUnarchiver::unarchive(file, samples::classes());
        // Long texts have an allowance of their own, but this archive has none.
        EXPECT_LT(support::PeakMemory::bytes(), costs::limit(file.size()));
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

TEST(ScarceMemory, AnOperationThatRunsOutOfItEndsWithoutTheOthers) {
    struct Step final : Operation {
        explicit Step(std::function<void()> step) : run(std::move(step)) {}
        void main() override { run(); }
        std::function<void()> run;
    };
    OperationQueue queue;
    int completed = 0;
    const auto add = [&](const std::function<void()>& step, const std::function<void()>& then) {
        const auto operation = std::make_shared<Step>(step);
        operation->completionBlock = then;
        queue.addOperation(operation);
    };
    const auto runOut = [] { throw std::bad_alloc(); };
    const auto complete = [&] { ++completed; };
    add(runOut, complete);
    add([] {}, runOut);
    add([] {}, complete);
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(completed, 2);
}

} // namespace
