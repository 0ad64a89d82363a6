// SPDX-License-Identifier: MIT
#include "platform/KeyedArchiver.h"
#include "platform/KeyedUnarchiver.h"
#include "slib/Identifiers.h"
#include "slib/SLibObject.h"
#include "slib/SLibRange.h"
#include "slib/slibTextPuncRecord.h"
#include "tests/support/FakeHost.h"
#include "tests/support/OtherReader.h"
#include "tests/support/Record.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <set>
#include <thread>

using platform::KeyedArchiver;
using platform::Value;
using testing::HasSubstr;

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
    EXPECT_EQ(result.misreadFields, 0U) << result.firstMisreadField;
    return platform::objectOf<T>(result.root);
}

std::string readByPython(const Object& object) {
    const support::TemporaryFolder folder;
    EXPECT_TRUE(KeyedArchiver::archiveRootObject(object, folder / "archive"));
    return support::readByPython(folder / "archive");
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
        {O::initWithGRA(given), given},
        {O::initWithGRA({}), {}},
        {O::initWithGRA_andThing(given, thing), given, " ", " ", thing},
        {O::initWithGRAValues_one_two_three(0x41424344, 2, 3, 4), given},
        {O::initWithGRAValuesAndThing_one_two_three_andThing(0x41424344, 2, 3, 4, thing), given,
         " ", " ", thing},
        {O::initWithName("n"), nameOnly, "n"},
        {O::initWithName({}), nameOnly},
        {O::initWithNameAndThing_andThing("n", thing), nameOnly, "n", " ", thing},
        {O::initWithGRAAndNames_nameIn_descIn(given, "n", ""), given, "n", ""},
        {O::initWithGRAAndNameAndThing_nameIn_andThing(given, "n", thing), given, "n", " ", thing},
    };
    std::set<std::uint64_t> identifiers;
    std::set<std::array<std::byte, 16>> uuids;
    for (const auto& [object, compare, name, description, related] : rows) {
        SCOPED_TRACE(identifiers.size());
        EXPECT_EQ(object->slibID->GRACompare, (GRACompare{compare.unitType, compare.compare1,
                                                          compare.compare2, object->slibUniqueID}));
        EXPECT_TRUE(identifiers.insert(object->slibUniqueID).second);
        EXPECT_TRUE(slib::wasIssued(object->slibUniqueID));
        EXPECT_EQ(object->name(), name);
        EXPECT_EQ(object->description(), description);
        EXPECT_EQ(object->thing, related);
        const auto bytes = object->slibNewUID.value().bytes;
        EXPECT_TRUE(uuids.insert(bytes).second);
        EXPECT_EQ(bytes[6] >> 4, std::byte{4});
        EXPECT_EQ(bytes[8] >> 6, std::byte{2});
    }
}

// So many that without a registry about ten would be drawn twice.
TEST(Identifiers, AreNeverIssuedTwiceWhicheverThreadAsks) {
    std::array<std::vector<std::uint64_t>, 3> issued;
    const auto issue = [](std::vector<std::uint64_t>& own) {
        for (int i = 0; i < 100'000; ++i) {
            own.push_back(slib::issueIdentifier());
        }
    };
    {
        const std::jthread one(issue, std::ref(issued[0]));
        const std::jthread other(issue, std::ref(issued[1]));
        issue(issued[2]);
    }
    std::set<std::uint64_t> all;
    for (const auto& own : issued) {
        all.insert(own.begin(), own.end());
    }
    EXPECT_EQ(all.size(), 300'000U);
    EXPECT_LE(*all.rbegin(), UINT32_MAX);

    const std::uint64_t kept = (slib::issueIdentifier() + 1) << 32;
    EXPECT_FALSE(slib::wasIssued(kept));
    EXPECT_EQ(slib::issueIdentifier(kept), kept);
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

TEST(slibTextBlock, HoldsOneByteACharacterBesideTheText) {
    const slibTextBlock fromText("Zürich \xF0\x9F\x8C\xA4 \xFF");
    EXPECT_EQ(fromText.bytes(), "Z?rich ? ?");
    EXPECT_EQ(fromText.text(), "Zürich \xF0\x9F\x8C\xA4 \uFFFD");
    const auto fromBytes = slibTextBlock::fromBytes("Z\x9Frich");
    EXPECT_EQ(fromBytes.bytes(), "Z\x9Frich");
    EXPECT_EQ(fromBytes.text(), "Zürich");
}

TEST(SLibObject, ComesBackFromItsArchiveWithANewIdentifierAndIsResetWithoutOne) {
    const auto object = SLibObject::initWithGRAAndNameAndThing_nameIn_andThing(
        GRACompare{UINT64_MAX, 2, std::uint64_t{1} << 63}, "Zürich", std::string("a thing"));
    object->slibID->idVal = {0, 1, 2, 3, 4, 5, 6, 7, INT32_MAX, UINT32_MAX};
    object->locked = object->dirty = true;
    object->slibObjectVersion = INT64_MIN;
    object->version = 70000;
    object->refCount = 5;
    const auto read = reread<SLibObject>(object);
    ASSERT_TRUE(read);
    const auto identity = read->slibID->GRACompare;
    EXPECT_EQ(identity, (GRACompare{UINT64_MAX, 2, std::uint64_t{1} << 63, read->slibUniqueID}));
    EXPECT_NE(read->slibUniqueID, object->slibUniqueID);
    EXPECT_EQ(read->slibNewUID, object->slibNewUID);
    EXPECT_EQ(read->name(), "Zürich");
    EXPECT_EQ(read->description(), " ");
    EXPECT_EQ(read->slibObjectVersion, INT64_MIN);
    EXPECT_EQ(read->version, 70000);
    EXPECT_TRUE(read->locked);
    EXPECT_FALSE(read->dirty);
    EXPECT_EQ(read->refCount, 0);
    EXPECT_EQ(read->thing, Value(std::string("a thing")));

    read->dirty = true;
    read->refCount = 5;
    read->reset();
    EXPECT_EQ(read->name(), "Untitled");
    EXPECT_EQ(read->description(), "");
    EXPECT_EQ(read->thing, Value());
    EXPECT_FALSE(read->locked || read->dirty);
    EXPECT_EQ(read->refCount, 0);
    EXPECT_EQ(read->slibID->GRACompare, identity);
    EXPECT_EQ(read->slibID->idVal, object->slibID->idVal);
}

TEST(SLibObject, ANamelessOneIsNamedByItsArchive) {
    const Object object = SLibObject::init();
    object->setSLIBName({});
    object->setDescription({});
    EXPECT_EQ(reread<SLibObject>(object)->name(), "untitled");
    EXPECT_EQ(object->name(), "untitled");
    EXPECT_EQ(reread<SLibObject>(object)->description(), " ");
}

TEST(SLibObject, MissingKeysReadAsNothing) {
    const auto object = reread<SLibObject>(std::make_shared<support::Record>("SLibObject"));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->name(), std::nullopt);
    EXPECT_EQ(object->slibNewUID, std::nullopt);
    EXPECT_TRUE(slib::wasIssued(object->slibUniqueID));
    const auto range = reread<SLibRange>(std::make_shared<support::Record>("SLibRange"));
    ASSERT_TRUE(range);
    EXPECT_EQ(range->name(), " ");
    EXPECT_EQ(range->getRandomRangeVal(), 0U);
}

TEST(SLibObject, OtherReadersFindTheFieldsUnderTheirKeysInOrder) {
    const Object object =
        SLibObject::initWithNameAndThing_andThing("Zürich", std::string("a thing"));
    object->slibID->GRACompare.compare1 = UINT64_MAX;
    object->slibID->GRACompare.compare3 = 77;
    object->slibID->idVal[9] = UINT32_MAX;
    object->locked = true;
    object->version = 3;
    object->slibNewUID.emplace();
    std::ranges::fill(object->slibNewUID->bytes, std::byte{'u'});
    EXPECT_EQ(readByPython(object),
              "SLibObject:NSObject{UnitType=1061109567 compare1=-1 compare2=0 compare3=77 "
              "the object=@'a thing' idVal0=0 idVal1=0 idVal2=0 idVal3=0 idVal4=0 idVal5=0 "
              "idVal6=0 idVal7=0 idVal8=0 idVal9=-1 Name=@'Zürich' Description=@' ' locked=True "
              "slibversion=0 subclassversion=3 nsuinque=@NSUUID:NSObject{NS.uuidbytes="
              "b'uuuuuuuuuuuuuuuu'}}\n");

    const auto range = SLibRange::initWithValues_rangeEnd_startSpan(UINT64_MAX, 2, 3);
    range->setDescription({});
    EXPECT_EQ(readByPython(range),
              "SLibRange:SLibObject:NSObject{start=-1 end=2 span=3 name=@' ' desc=nil}\n");

    support::FakeHost fake;
    EXPECT_THAT(readByPython(slibTextPuncRecord::init(fake.host)),
                testing::AllOf(HasSubstr("slibTextPuncRecord:SLibObject:NSObject{UnitType"),
                               HasSubstr(" Name=@'slib Punctuation record' "),
                               testing::Not(HasSubstr("the object"))));
}

TEST(SLibRange, PicksWithinTheLowSixteenBitsOfItsSpan) {
    const struct {
        std::uint64_t start, span;
        std::set<std::uint64_t> picks;
    } rows[] = {
        {10, 1, {10}},
        {10, 65536, {10}},
        {10, 65536 * 7 + 3, {10, 11, 12}},
        {UINT64_MAX, 2, {UINT64_MAX, 0}},
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

TEST(SLibRange, KeepsItsFiguresAndTextsInItsArchiveButNotInACopy) {
    const auto range = SLibRange::initWithValues_rangeEnd_startSpan(0, 0, 0);
    range->setRangeAndSpan_end_span(1, UINT64_MAX, 7);
    range->setSLIBName("n");
    range->setDescription("d");
    range->version = 3;
    const auto read = reread<SLibRange>(range);
    const auto copy = range->copy();
    ASSERT_TRUE(read);
    for (const auto& one : {read, copy}) {
        EXPECT_EQ(one->start, 1U);
        EXPECT_EQ(one->end, UINT64_MAX);
        EXPECT_EQ(one->span, 7U);
        EXPECT_EQ(one->version, 0);
        EXPECT_NE(one->slibUniqueID, range->slibUniqueID);
        EXPECT_EQ(one->name(), one == read ? "n" : " ");
        EXPECT_EQ(one->description(), one == read ? "d" : " ");
        EXPECT_EQ(one->slibID->GRACompare.unitType, one == read ? 0x47524C53U : 0U);
    }
}

TEST(SLibObject, LogsFiguresInFixedForms) {
    support::FakeHost fake;
    SLibObject::logRect(fake.host, {{1, -2.5}, 3e6, 0});
    SLibObject::logPoint(fake.host, {0.0000004, 1});
    SLibObject::logInteger(fake.host, INT64_MIN);
    SLibObject::logTruncated(fake.host, -3.9);
    EXPECT_THAT(fake.log.lines(),
                testing::ElementsAre("Rect origin x 1.000000 y -2.500000   "
                                     "size width 3000000.000000 size height 0.000000",
                                     " origin x 0.000000 y 1.000000   ",
                                     " int -9223372036854775808   ", "-3"));
}

TEST(SLibObject, AnAnimationTakesNoTimeBelowZero) {
    struct StillView final : platform::View {
        void setFrame(const platform::Rect&) override { ADD_FAILURE() << "was started"; }
    } view;
    for (const auto& [seconds, duration] :
         {std::pair{0.25, 0.25}, {-1.0, 0.0}, {std::nan(""), 0.0}}) {
        const auto animation = SLibObject::prepViewAnimationRectMove_start_dest_howLong_andRamp(
            view, {{1, 2}, 3, 4}, {{5, 6}, 7, 8}, seconds, platform::AnimationCurve::easeOut);
        EXPECT_EQ(animation.duration, duration);
        EXPECT_EQ(animation.moves.at(0).endFrame, (platform::Rect{{5, 6}, 7, 8}));
    }
}

} // namespace
