// SPDX-License-Identifier: MIT
#include "platform/archive/KeyedUnarchiver.h"
#include "slib/SLIB_Prefs.h"
#include "slib/SLibObject.h"
#include "slib/SLibRange.h"
#include "slib/slibTextPuncRecord.h"
#include "tests/support/FakeHost.h"
#include "tests/support/PinnedArchive.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

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

TEST(TextBlock, HasOneByteForEachCharacter) {
    const slibTextBlock text("a\u00e9\u5317\xFFz");
    EXPECT_EQ(text.bytes(), "a???z");
    EXPECT_EQ(text.text(), "a\u00e9\u5317\uFFFDz");
    const auto bytes = slibTextBlock::fromBytes("caf\x8e");
    EXPECT_EQ(bytes.bytes(), "caf\x8e");
    EXPECT_EQ(bytes.text(), "caf\u00e9");
}

} // namespace
