// SPDX-License-Identifier: MIT
#include "platform/KeyedArchiver.h"
#include "platform/KeyedUnarchiver.h"
#include "slib/Identifiers.h"
#include "slib/SLibObject.h"
#include "slib/SLibRange.h"
#include "slib/slibTextPuncRecord.h"
#include "tests/support/FakeHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <functional>
#include <set>
#include <thread>

using platform::KeyedArchiver;
using platform::KeyedUnarchiver;
using platform::Value;
using testing::ElementsAre;

namespace {

using Object = std::shared_ptr<SLibObject>;
using Text = SLibObject::Text;

platform::ClassTable classesFor(platform::Host& host) {
    platform::ClassTable classes;
    classes.add("SLibObject", SLibObject::initWithCoder);
    classes.add("SLibRange", SLibRange::initWithCoder);
    classes.add("slibTextPuncRecord", [&host](KeyedUnarchiver& coder) {
        return slibTextPuncRecord::initWithCoder(host, coder);
    });
    return classes;
}

/// The object as it comes back from its archive.
template <typename T>
std::shared_ptr<T> reread(const std::shared_ptr<T>& object) {
    support::FakeHost fake;
    const auto archive = KeyedArchiver::archivedData(object);
    EXPECT_TRUE(archive);
    const auto result = KeyedUnarchiver::unarchive(*archive, classesFor(fake.host));
    EXPECT_EQ(result.misreadFields, 0U) << result.firstMisreadField;
    return platform::objectOf<T>(result.root);
}

/// The archive's object table, as a reader of another make sees it.
std::string tableOf(const Object& object) {
    const support::TemporaryFolder folder;
    const std::string path = (folder / "archive").string();
    EXPECT_TRUE(KeyedArchiver::archiveRootObject(object, path));
    const std::string command =
        "python3 '" NOSIG_SOURCE_DIR "/tests/slib/archive_table.py' '" + path + "'";
    std::FILE* const output = popen(command.c_str(), "r");
    std::string table;
    for (int c = 0; output != nullptr && (c = std::fgetc(output)) != EOF;) {
        table += static_cast<char>(c);
    }
    EXPECT_EQ(pclose(output), 0);
    return table;
}

TEST(SLibObject, EachInitialiserFillsItsPartOfTheRecord) {
    const GRACompare given{unitTypeOf("ABCD"), 2, 3, 4};
    const GRACompare nameOnly{0x3F3F3F3F};
    const Value thing = std::string("thing");
    int row = 0;
    std::set<std::uint64_t> identifiers;
    const auto expect = [&](const Object& object, const GRACompare& compare, const Text& name,
                            const Text& description, const Value& related) {
        SCOPED_TRACE(++row);
        const auto& own = object->slibID->GRACompare;
        EXPECT_EQ(own, (GRACompare{compare.unitType, compare.compare1, compare.compare2,
                                   object->slibUniqueID}));
        EXPECT_TRUE(identifiers.insert(own.compare3).second);
        EXPECT_TRUE(slib::wasIssued(own.compare3));
        EXPECT_EQ(object->name(), name);
        EXPECT_EQ(object->description(), description);
        EXPECT_EQ(object->thing, related);
        const auto uuid = object->slibNewUID.value();
        EXPECT_NE(uuid, SLibObject::init()->slibNewUID.value());
        EXPECT_EQ(uuid.bytes[6] >> 4, std::byte{4});
        EXPECT_EQ(uuid.bytes[8] >> 6, std::byte{2});
    };
    expect(SLibObject::init(), {}, " ", " ", {});
    expect(SLibObject::initWithGRA(given), given, " ", " ", {});
    expect(SLibObject::initWithGRA({}), {}, " ", " ", {});
    expect(SLibObject::initWithGRA_andThing(given, thing), given, " ", " ", thing);
    expect(SLibObject::initWithGRAValues_one_two_three(0x41424344, 2, 3, 4), given, " ", " ", {});
    expect(SLibObject::initWithGRAValuesAndThing_one_two_three_andThing(0x41424344, 2, 3, 4, thing),
           given, " ", " ", thing);
    expect(SLibObject::initWithName("n"), nameOnly, "n", " ", {});
    expect(SLibObject::initWithName({}), nameOnly, " ", " ", {});
    expect(SLibObject::initWithNameAndThing_andThing("n", thing), nameOnly, "n", " ", thing);
    expect(SLibObject::initWithGRAAndNames_nameIn_descIn(given, "n", ""), given, "n", "", {});
    expect(SLibObject::initWithGRAAndNameAndThing_nameIn_andThing(given, "n", thing), given, "n",
           " ", thing);
}

// So many that without a registry about ten would be drawn twice.
TEST(Identifiers, AreNeverIssuedTwiceWhicheverThreadAsks) {
    std::array<std::vector<std::uint64_t>, 3> issued;
    const auto issue = [](std::vector<std::uint64_t>& own) {
        for (int i = 0; i < 100'000; ++i) {
            own.push_back(slib::issueIdentifier());
            EXPECT_TRUE(slib::wasIssued(own.back()));
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
    const struct {
        Text name;
        std::vector<Object> objects;
        bool isDuplicated;
    } rows[] = {
        {"alpha", {}, false},
        {"alpha", {skipped}, false},
        {"alpha", {skipped, SLibObject::initWithName("ALPHA")}, true},
        {"älpha", {skipped, other}, true},
        {"alpha", {nullptr, nameless, other}, false},
        {{}, {nameless}, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        EXPECT_EQ(SLibObject::nameDuplicated_ofThing_inHere(row.name, skipped.get(), row.objects),
                  row.isDuplicated);
    }
}

TEST(SLibObject, ResetKeepsTheIdentity) {
    const Object object = SLibObject::initWithGRAAndNameAndThing_nameIn_andThing(
        GRACompare{1, 2, 3}, "n", std::string("thing"));
    object->locked = object->dirty = true;
    object->refCount = 5;
    object->slibID->idVal[9] = 9;
    const GRACompare before = object->slibID->GRACompare;
    object->reset();
    EXPECT_EQ(object->name(), "Untitled");
    EXPECT_EQ(object->description(), "");
    EXPECT_EQ(object->thing, Value());
    EXPECT_FALSE(object->locked || object->dirty);
    EXPECT_EQ(object->refCount, 0);
    EXPECT_EQ(object->slibID->GRACompare, before);
    EXPECT_EQ(object->slibID->idVal[9], 9U);
}

TEST(slibTextBlock, HoldsOneByteACharacterBesideTheText) {
    const slibTextBlock fromText("Zürich \xF0\x9F\x8C\xA4 \xFF");
    EXPECT_EQ(fromText.bytes(), "Z?rich ? ?");
    EXPECT_EQ(fromText.text(), "Zürich \xF0\x9F\x8C\xA4 \uFFFD");
    const auto fromBytes = slibTextBlock::fromBytes("Z\x9Frich");
    EXPECT_EQ(fromBytes.bytes(), "Z\x9Frich");
    EXPECT_EQ(fromBytes.text(), "Zürich");
}

TEST(SLibObject, ComesBackFromItsArchiveWithANewIdentifier) {
    const auto range = SLibRange::initWithValues_rangeEnd_startSpan(1, 2, 3);
    const Object object = SLibObject::initWithGRAAndNameAndThing_nameIn_andThing(
        GRACompare{UINT64_MAX, 2, std::uint64_t{1} << 63}, "Zürich", Value(range));
    object->slibID->idVal = {0, 1, 2, 3, 4, 5, 6, 7, INT32_MAX, UINT32_MAX};
    object->locked = object->dirty = true;
    object->slibObjectVersion = INT64_MIN;
    object->version = 70000;
    object->refCount = 5;
    const Object read = reread(object);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->slibID->GRACompare.unitType, UINT64_MAX);
    EXPECT_EQ(read->slibID->GRACompare.compare1, 2U);
    EXPECT_EQ(read->slibID->GRACompare.compare2, std::uint64_t{1} << 63);
    EXPECT_NE(read->slibUniqueID, object->slibUniqueID);
    EXPECT_EQ(read->slibID->GRACompare.compare3, read->slibUniqueID);
    EXPECT_EQ(read->slibID->idVal, object->slibID->idVal);
    EXPECT_EQ(read->slibNewUID, object->slibNewUID);
    EXPECT_EQ(read->name(), "Zürich");
    EXPECT_EQ(read->description(), " ");
    EXPECT_EQ(read->slibObjectVersion, INT64_MIN);
    EXPECT_EQ(read->version, 70000);
    EXPECT_TRUE(read->locked);
    EXPECT_FALSE(read->dirty);
    EXPECT_EQ(read->refCount, 0);
    const auto thing = platform::objectOf<SLibRange>(read->thing);
    ASSERT_TRUE(thing);
    EXPECT_EQ(thing->span, 3U);
}

TEST(SLibObject, ANamelessOneIsNamedByItsArchive) {
    const Object object = SLibObject::init();
    object->setSLIBName({});
    object->setDescription({});
    const Object read = reread(object);
    ASSERT_TRUE(read);
    EXPECT_EQ(object->name(), "untitled");
    EXPECT_EQ(read->name(), "untitled");
    EXPECT_EQ(read->description(), " ");
}

TEST(SLibObject, MissingKeysReadAsNothing) {
    struct Empty final : platform::Archivable {
        explicit Empty(const char* name) : names{name, "NSObject"} {}
        [[nodiscard]] const platform::ClassNames& archivedClass() const override { return names; }
        void encodeWithCoder(KeyedArchiver&) const override {}
        platform::ClassNames names;
    };
    support::FakeHost fake;
    const auto readEmpty = [&](const char* name) {
        const auto empty = std::make_shared<Empty>(name);
        const auto archive = KeyedArchiver::archivedData(empty);
        return KeyedUnarchiver::unarchive(*archive, classesFor(fake.host)).root;
    };
    const auto object = platform::objectOf<SLibObject>(readEmpty("SLibObject"));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->name(), std::nullopt);
    EXPECT_EQ(object->slibNewUID, std::nullopt);
    EXPECT_TRUE(slib::wasIssued(object->slibUniqueID));
    const auto range = platform::objectOf<SLibRange>(readEmpty("SLibRange"));
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
    object->slibNewUID = platform::UUID{{std::byte{0xAB}}};
    EXPECT_EQ(tableOf(object),
              "1 SLibObject NSObject: UnitType 1061109567, compare1 -1, compare2 0, compare3 77, "
              "the object -> 'a thing', idVal0 0, idVal1 0, idVal2 0, idVal3 0, idVal4 0, "
              "idVal5 0, idVal6 0, idVal7 0, idVal8 0, idVal9 -1, Name -> 'Z\\xfcrich', "
              "Description -> ' ', locked True, slibversion 0, subclassversion 3, "
              "nsuinque slot 5\n"
              "5 NSUUID NSObject: NS.uuidbytes ab000000000000000000000000000000\n");

    const auto range = SLibRange::initWithValues_rangeEnd_startSpan(UINT64_MAX, 2, 3);
    range->setDescription({});
    EXPECT_EQ(tableOf(range), "1 SLibRange SLibObject NSObject: start -1, end 2, span 3, "
                              "name -> ' ', desc -> '$null'\n");

    support::FakeHost fake;
    EXPECT_THAT(
        tableOf(slibTextPuncRecord::init(fake.host)),
        testing::AllOf(testing::StartsWith("1 slibTextPuncRecord SLibObject NSObject: UnitType"),
                       testing::HasSubstr("Name -> 'slib Punctuation record', "),
                       testing::Not(testing::HasSubstr("the object"))));
}

TEST(SLibRange, PicksWithinTheLowSixteenBitsOfItsSpan) {
    const struct {
        std::uint64_t start, span;
        std::set<std::uint64_t> picks;
    } rows[] = {
        {10, 1, {10}},
        {10, 0, {10}},
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
    const auto read = reread(range);
    const auto copy = range->copy();
    ASSERT_TRUE(read);
    for (const auto& one : {read, copy}) {
        EXPECT_EQ(one->start, 1U);
        EXPECT_EQ(one->end, UINT64_MAX);
        EXPECT_EQ(one->span, 7U);
        EXPECT_EQ(one->version, 0);
        EXPECT_NE(one->slibUniqueID, range->slibUniqueID);
    }
    EXPECT_EQ(read->name(), "n");
    EXPECT_EQ(read->description(), "d");
    EXPECT_EQ(read->slibID->GRACompare.unitType, 0x47524C53U);
    EXPECT_EQ(copy->name(), " ");
    EXPECT_EQ(copy->description(), " ");
    EXPECT_EQ(copy->slibID->GRACompare.unitType, 0U);
    copy->setRange_end(4, 5);
    EXPECT_EQ(copy->span, 7U);
}

TEST(SLibObject, LogsFiguresInFixedForms) {
    support::FakeHost fake;
    SLibObject::logRect(fake.host, {{1, -2.5}, 3e6, 0});
    SLibObject::logPoint(fake.host, {0.0000004, 1});
    SLibObject::logInteger(fake.host, INT64_MIN);
    SLibObject::logTruncated(fake.host, -3.9);
    SLibObject::logTruncated(fake.host, std::nan(""));
    SLibObject::logTruncated(fake.host, 1e300);
    EXPECT_THAT(fake.log.lines(),
                ElementsAre("Rect origin x 1.000000 y -2.500000   "
                            "size width 3000000.000000 size height 0.000000",
                            " origin x 0.000000 y 1.000000   ", " int -9223372036854775808   ",
                            "-3", "0", "2147483647"));
}

TEST(SLibObject, PanelsAndAnimations) {
    support::FakeHost fake;
    const auto url = platform::URL::file("/a");
    fake.panels.answers = {url, url};
    EXPECT_EQ(SLibObject::simplerGetFile_ofThese(fake.host, {"txt"}), url);
    EXPECT_THAT(fake.panels.askedTypes, ElementsAre("txt"));
    EXPECT_EQ(SLibObject::getAPuttingURL(fake.host), url);

    struct StillView final : platform::View {
        void setFrame(const platform::Rect&) override { ADD_FAILURE() << "was started"; }
    } view;
    const platform::Rect start{{1, 2}, 3, 4};
    const platform::Rect end{{5, 6}, 7, 8};
    const auto prepared = [&](double seconds) {
        return SLibObject::prepViewAnimationRectMove_start_dest_howLong_andRamp(
            view, start, end, seconds, platform::AnimationCurve::easeOut);
    };
    const auto animation = prepared(0.25);
    ASSERT_EQ(animation.moves.size(), 1U);
    EXPECT_EQ(animation.moves[0].target, &view);
    EXPECT_EQ(animation.moves[0].startFrame, start);
    EXPECT_EQ(animation.moves[0].endFrame, end);
    EXPECT_EQ(animation.duration, 0.25);
    EXPECT_EQ(animation.curve, platform::AnimationCurve::easeOut);
    EXPECT_EQ(prepared(-1).duration, 0);
    EXPECT_EQ(prepared(std::nan("")).duration, 0);
}

} // namespace
