// SPDX-License-Identifier: MIT
#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "slib/Identifiers.h"
#include "slib/SLIB_Prefs.h"
#include "slib/SLibObject.h"
#include "slib/SLibRange.h"
#include "slib/slibTextPuncRecord.h"
#include "tests/support/FakeHost.h"
#include "tests/support/PinnedArchive.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace {

platform::UUID uuidFrom(unsigned char first) {
    platform::UUID uuid;
    for (auto& byte : uuid.bytes) {
        byte = std::byte{first++};
    }
    return uuid;
}

TEST(SLibObject, AllClassesKeepTheirKeysAndNamesForEver) {
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
    EXPECT_NE(id.GRACompare.compare3, 0U);
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

    // Restore what is written but never read.
    object->slibID->GRACompare.compare3 = 14;
    support::FakeHost host;
    const auto punctuation = slibTextPuncRecord::init(host.host);
    punctuation->slibID->GRACompare.compare3 = 15;
    punctuation->slibNewUID = uuidFrom(0x60);
    elements[4] = std::static_pointer_cast<platform::Archivable>(punctuation);
    support::expectWrittenAs("objects.archive", array);
}

TEST(SLibObject, BeginsWithWhatItIsGivenAndAnIdentityOfItsOwn) {
    const auto plain = SLibObject::init();
    EXPECT_EQ(*plain->name() + *plain->description(), "  ");
    EXPECT_EQ(plain->slibID->GRACompare, (GRACompare{0, 0, 0, plain->slibUniqueID}));
    const auto named = SLibObject::initWithNameAndThing_andThing("name", std::string("thing"));
    EXPECT_EQ(named->name(), "name");
    EXPECT_EQ(named->thing, platform::Value(std::string("thing")));
    EXPECT_EQ(named->slibID->GRACompare.unitType, unitTypeOf("????"));
    const auto sorted =
        SLibObject::initWithGRAValuesAndThing_one_two_three_andThing(1, 2, 3, 4, std::string("t"));
    EXPECT_EQ(sorted->slibID->GRACompare, (GRACompare{1, 2, 3, sorted->slibUniqueID}));
    EXPECT_EQ(sorted->thing, platform::Value(std::string("t")));
    EXPECT_NE(plain->slibUniqueID, named->slibUniqueID);
    EXPECT_NE(plain->slibNewUID, named->slibNewUID);
    // Random, by RFC 9562.
    EXPECT_EQ(plain->slibNewUID->bytes[6] >> 4, std::byte{4});
    EXPECT_EQ(plain->slibNewUID->bytes[8] >> 6, std::byte{2});

    named->locked = named->dirty = true;
    named->refCount = 3;
    named->reset();
    EXPECT_EQ(*named->name() + *named->description(), "Untitled");
    EXPECT_TRUE(platform::isAbsent(named->thing));
    EXPECT_FALSE(named->locked || named->dirty || named->refCount != 0);
}

TEST(SLibObject, FindsTheNameOfAnother) {
    const auto one = SLibObject::initWithName("One");
    const auto nameless = SLibObject::init();
    nameless->setSLIBName({});
    const std::vector<std::shared_ptr<SLibObject>> objects{nullptr, nameless, one};
    const auto isTaken = SLibObject::nameDuplicated_ofThing_inHere;
    EXPECT_TRUE(isTaken("oNE", nameless.get(), objects));
    EXPECT_FALSE(isTaken("one", one.get(), objects));
    EXPECT_FALSE(isTaken("other", nullptr, objects));
    EXPECT_FALSE(isTaken({}, nullptr, objects));

    // Archiving gives it one.
    EXPECT_TRUE(platform::KeyedArchiver::archivedData(nameless));
    EXPECT_EQ(nameless->name(), "untitled");
}

TEST(SLibObject, NoIdentifierIsIssuedTwice) {
    // As many as make it all but certain that some number is drawn twice.
    std::vector<std::uint64_t> issued(250'000);
    std::ranges::generate(issued, slib::issueIdentifier);
    std::ranges::sort(issued);
    EXPECT_EQ(std::ranges::adjacent_find(issued), issued.end());
}

TEST(SLibRange, DrawsFromItsSpanOnly) {
    const auto range = SLibRange::initWithValues_rangeEnd_startSpan(1, 2, 4);
    range->setRangeAndSpan_end_span(10, 20, 3);
    const auto copy = range->copy();
    EXPECT_EQ(fmt::format("{} {} {}", copy->start, copy->end, copy->span), "10 20 3");
    std::set<std::uint64_t> drawn;
    for (int i = 0; i < 1000; ++i) {
        drawn.insert(copy->getRandomRangeVal());
    }
    EXPECT_EQ(drawn, (std::set<std::uint64_t>{10, 11, 12}));
    copy->span = 65536;
    EXPECT_EQ(copy->getRandomRangeVal(), 10U);
}

TEST(TextBlock, HasOneByteForEachCharacter) {
    const slibTextBlock text("a\u00e9\u5317\xFFz");
    EXPECT_EQ(text.bytes(), "a???z");
    EXPECT_EQ(text.text(), "a\u00e9\u5317\uFFFDz");
    const auto bytes = slibTextBlock::fromBytes("caf\x8e");
    EXPECT_EQ(bytes.bytes(), "caf\x8e");
    EXPECT_EQ(bytes.text(), "caf\u00e9");
}

} // namespace
