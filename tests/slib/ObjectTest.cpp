// SPDX-License-Identifier: MIT
#include "platform/KeyedArchiver.h"
#include "platform/KeyedUnarchiver.h"
#include "slib/Identifiers.h"
#include "slib/SLIB_Prefs.h"
#include "slib/SLibObject.h"
#include "slib/SLibRange.h"
#include "slib/slibTextPuncRecord.h"
#include "tests/support/FakeHost.h"
#include "tests/support/PinnedArchive.h"
#include "tests/support/Record.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <set>
#include <thread>

using platform::KeyedArchiver;
using platform::Value;

namespace {

using Object = std::shared_ptr<SLibObject>;
using Text = SLibObject::Text;

/// The object as it comes back from its archive.
template <typename T, typename Written>
std::shared_ptr<T> reread(const std::shared_ptr<Written>& object) {
    platform::ClassTable classes;
    classes.add("SLibObject", SLibObject::initWithCoder);
    classes.add("SLibRange", SLibRange::initWithCoder);
    const auto archive = KeyedArchiver::archivedData(object);
    const auto result = platform::KeyedUnarchiver::unarchive(archive.value(), classes);
    EXPECT_THAT(result.misreadings, testing::IsEmpty());
    return platform::objectOf<T>(result.root);
}

TEST(SLibObject, EachInitialiserFillsItsPartOfTheRecord) {
    const GRACompare given{unitTypeOf("ABCD"), 2, 3, 4};
    const GRACompare nameOnly{0x3F3F3F3F};
    const Value thing = std::string("thing");
    using O = SLibObject;
    const struct {
        Object object;
        GRACompare compare;
        Text name = " ", description = " ";
        Value related = {};
    } rows[] = {
        {O::init(), {}},
        {O::initWithGRAValuesAndThing_one_two_three_andThing(0x41424344, 2, 3, 4, thing), given,
         " ", " ", thing},
        {O::initWithName({}), nameOnly},
        {O::initWithNameAndThing_andThing("n", thing), nameOnly, "n", " ", thing},
        {O::initWithGRAAndNames_nameIn_descIn(given, "n", ""), given, "n", ""},
    };
    std::set<std::uint64_t> identifiers;
    for (const auto& [object, compare, name, description, related] : rows) {
        SCOPED_TRACE(identifiers.size());
        EXPECT_EQ(object->slibID->GRACompare, (GRACompare{compare.unitType, compare.compare1,
                                                          compare.compare2, object->slibUniqueID}));
        EXPECT_TRUE(identifiers.insert(object->slibUniqueID).second);
        EXPECT_EQ(object->name(), name);
        EXPECT_EQ(object->description(), description);
        EXPECT_EQ(object->thing, related);
        EXPECT_EQ(object->slibNewUID.value().bytes[6] >> 4, std::byte{4});
    }
}

// So many that without a registry about ten would be drawn twice.
TEST(Identifiers, AreNeverIssuedTwiceWhicheverThreadAsks) {
    std::array<std::vector<std::uint64_t>, 2> issued;
    const auto issue = [](std::vector<std::uint64_t>& own) {
        for (int i = 0; i < 150'000; ++i) {
            own.push_back(slib::issueIdentifier());
        }
    };
    {
        const std::jthread other(issue, std::ref(issued[0]));
        issue(issued[1]);
    }
    std::set<std::uint64_t> all(issued[0].begin(), issued[0].end());
    all.insert(issued[1].begin(), issued[1].end());
    EXPECT_EQ(all.size(), 300'000U);
    EXPECT_LE(*all.rbegin(), UINT32_MAX);

    const std::uint64_t kept = (slib::issueIdentifier() + 1) << 32;
    EXPECT_FALSE(slib::wasIssued(kept));
    EXPECT_EQ(slib::issueIdentifier(kept), kept);
    EXPECT_TRUE(slib::wasIssued(kept));
}

TEST(SLibObject, ANameIsDuplicatedByAnyOtherObjectWhateverItsCase) {
    const Object skipped = SLibObject::initWithName("ALPHA");
    const Object other = SLibObject::initWithName("Älpha");
    const Object nameless = SLibObject::init();
    nameless->setSLIBName({});
    const auto isDuplicated = [&](const Text& name, const std::vector<Object>& objects) {
        return SLibObject::nameDuplicated_ofThing_inHere(name, skipped.get(), objects);
    };
    EXPECT_FALSE(isDuplicated("alpha", {skipped, nullptr, nameless, other}));
    EXPECT_TRUE(isDuplicated("alpha", {skipped, SLibObject::initWithName("ALPHA")}));
    EXPECT_TRUE(isDuplicated("älpha", {skipped, other}));
    EXPECT_FALSE(isDuplicated({}, {nameless}));
}

TEST(SLibObject, ComesBackWithANewIdentifierAndIsResetWithoutOne) {
    const auto object = SLibObject::initWithGRAAndNameAndThing_nameIn_andThing(
        GRACompare{UINT64_MAX, 2, std::uint64_t{1} << 63}, "Zürich", std::string("a thing"));
    object->slibID->idVal[9] = UINT32_MAX;
    object->locked = object->dirty = true;
    const auto read = reread<SLibObject>(object);
    ASSERT_TRUE(read);
    const auto identity = read->slibID->GRACompare;
    EXPECT_EQ(identity, (GRACompare{UINT64_MAX, 2, std::uint64_t{1} << 63, read->slibUniqueID}));
    EXPECT_NE(read->slibUniqueID, object->slibUniqueID);
    EXPECT_FALSE(read->dirty);

    read->reset();
    EXPECT_EQ(read->name(), "Untitled");
    EXPECT_EQ(read->description(), "");
    EXPECT_EQ(read->thing, Value());
    EXPECT_FALSE(read->locked);
    EXPECT_EQ(read->slibID->GRACompare, identity);
    EXPECT_EQ(read->slibID->idVal, object->slibID->idVal);
}

TEST(SLibObject, WhatIsMissingIsNamedInTheArchiveButNotFromIt) {
    const Object object = SLibObject::init();
    object->setSLIBName({});
    object->setDescription({});
    EXPECT_EQ(reread<SLibObject>(object)->name(), "untitled");
    EXPECT_EQ(object->name(), "untitled");
    EXPECT_EQ(reread<SLibObject>(object)->description(), " ");

    const auto bare = reread<SLibObject>(std::make_shared<support::Record>("SLibObject"));
    ASSERT_TRUE(bare);
    EXPECT_EQ(bare->slibID->GRACompare, (GRACompare{0, 0, 0, bare->slibUniqueID}));
    EXPECT_EQ(bare->name(), std::nullopt);
    EXPECT_EQ(bare->slibNewUID, std::nullopt);
}

platform::UUID uuidFrom(unsigned char first) {
    platform::UUID uuid;
    for (auto& byte : uuid.bytes) {
        byte = std::byte{first++};
    }
    return uuid;
}

TEST(SLibObject, AllClassesAreReadAndWrittenUnderTheSameNamesForEver) {
    platform::ClassTable classes;
    classes.add("SLibObject", SLibObject::initWithCoder);
    classes.add("SLibRange", SLibRange::initWithCoder);
    classes.add("SLIB_Prefs", SLIB_Prefs::initWithCoder);
    const auto file = support::pinnedArchive("objects.archive");
    const auto root = platform::KeyedUnarchiver::unarchiveFile(file, classes).root;
    ASSERT_TRUE(std::holds_alternative<std::shared_ptr<platform::Array>>(root));
    const auto array = std::get<std::shared_ptr<platform::Array>>(root);
    auto& elements = array->elements;
    ASSERT_EQ(elements.size(), 5U);

    const auto object = platform::objectOf<SLibObject>(elements[0]);
    ASSERT_TRUE(object);
    const auto range = platform::objectOf<SLibRange>(object->thing);
    ASSERT_TRUE(range);
    const auto& id = *object->slibID;
    EXPECT_EQ(fmt::format("{} {} {} {} / {} / {} / {} {} {}", id.GRACompare.unitType,
                          id.GRACompare.compare1, id.GRACompare.compare2, fmt::join(id.idVal, " "),
                          *object->name(), *object->description(), object->locked,
                          object->slibObjectVersion, object->version),
              "11 12 13 20 21 22 23 24 25 26 27 28 29 / the name / what it is / true 31 32");
    EXPECT_EQ(object->slibNewUID, uuidFrom(0x40));
    EXPECT_EQ(fmt::format("{} {} {} {} / {} / {}", range->slibID->GRACompare.unitType, range->start,
                          range->end, range->span, *range->name(), *range->description()),
              fmt::format("{} 41 42 43 / the range / from 41 to 42", unitTypeOf("GRLS")));
    for (const int place : {1, 2}) {
        const auto flags = platform::objectOf<SLIB_Prefs>(elements[std::size_t(place)]);
        ASSERT_TRUE(flags);
        EXPECT_EQ(flags->soundOn, place == 1);
        EXPECT_EQ(flags->musicOn, place == 2);
    }
    EXPECT_EQ(elements[3], elements[0]);

    // The identity that is never read is written as it was.
    object->slibID->GRACompare.compare3 = 14;
    support::FakeHost host;
    const auto punctuation = slibTextPuncRecord::init(host.host);
    punctuation->slibID->GRACompare.compare3 = 15;
    punctuation->slibNewUID = uuidFrom(0x60);
    elements[4] = std::static_pointer_cast<platform::Archivable>(punctuation);
    support::expectWrittenAs("objects.archive", array);
}

TEST(SLibRange, PicksWithinTheLowSixteenBitsOfItsSpan) {
    const struct {
        std::uint64_t start, span;
        std::set<std::uint64_t> picks;
    } rows[] = {
        {10, 1, {10}},
        {10, 65536, {10}},
        {UINT64_MAX, 65536 * 7 + 2, {UINT64_MAX, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.span);
        const auto range = SLibRange::initWithValues_rangeEnd_startSpan(row.start, 0, row.span);
        std::set<std::uint64_t> picks;
        for (int i = 0; i < 200; ++i) {
            picks.insert(range->getRandomRangeVal());
        }
        EXPECT_EQ(picks, row.picks);
    }
}

TEST(SLibRange, ACopyHasItsFiguresOnly) {
    const auto range = SLibRange::initWithValues_rangeEnd_startSpan(0, 0, 0);
    range->setRangeAndSpan_end_span(1, UINT64_MAX, 7);
    range->setSLIBName("n");
    const auto copy = range->copy();
    EXPECT_TRUE(copy->start == 1 && copy->end == UINT64_MAX && copy->span == 7);
    EXPECT_EQ(copy->name(), " ");
}

} // namespace
