// SPDX-License-Identifier: MIT
#include "tests/support/ScarceMemory.h"
#include "platform/ArchiveCosts.h"
#include "platform/KeyedUnarchiver.h"
#include "tests/platform/ArchiveSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace platform;
using testing::HasSubstr;

namespace {

enum class Shape { oneObject, manyObjects, manyLayouts };

/// A list of so many elements: one object over and over, or each an object of its own, for which
/// the file spends a reference, or a set of keys of its own too.
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
        // No long text is in it, for which there is an allowance beside this one.
        EXPECT_LT(support::PeakMemory::bytes(), costs::limit(file.size()));
        EXPECT_THAT(result.fault, HasSubstr(isRead ? "" : "same contents"));
        EXPECT_EQ(result.fault.empty(), isRead);
    }
}

} // namespace
