// SPDX-License-Identifier: MIT
#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"

#include "tests/platform/ArchiveSamples.h"
#include "tests/support/PinnedArchive.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace platform;
using namespace samples;
using testing::HasSubstr;
using namespace std::string_literals;

namespace {

Value readBack(const Value& value) {
    auto result = unarchived(KeyedArchiver::archivedData(value));
    EXPECT_EQ(result.fault, "");
    EXPECT_EQ(firstMisreading(result), "");
    return result.root;
}

TEST(KeyedArchive, AListOfFavoritesKeepsItsFormatForEver) {
    const auto file = support::pinnedArchive("favorites.kzrfv");
    EXPECT_EQ(shown(KeyedUnarchiver::unarchiveFile(file, {}).root), R"(("KDEN","EDDF","YSSY"))");
    support::expectWrittenAs("favorites.kzrfv", arrayOf({"KDEN"s, "EDDF"s, "YSSY"s}, false));
}

TEST(KeyedArchive, EveryKindOfValueComesBackAsItWas) {
    std::vector<Value> values{Number(false), Number(true), Number(0.0F), Number(-0.0), Number(0.1)};
    values.insert(values.end(),
                  {""s, "$null"s, "$class"s, "\0nul"s, "東京 🛫"s, std::string(14, 'a'),
                   std::string(15, 'a'), std::string(300, 'b'), std::string(70000, 'c')});
    values.insert(values.end(),
                  {Data(), Data(20, std::byte{0x80}), Null(), Date(std::chrono::microseconds(1)),
                   Date(std::chrono::seconds(-62135769600)), URL{"https://example.org/a?b#c"},
                   UUID{{std::byte{1}, std::byte{255}}}});
    values.insert(values.end(),
                  {arrayOf({}), arrayOf({arrayOf({Null()})}, false), dictionaryOf({}),
                   dictionaryOf({{"", Null()}, {"東", arrayOf({})}}, false),
                   std::make_shared<Set>(Set{true, {"a"s}}), std::make_shared<Set>(Set{false, {}}),
                   richBeacon(), std::make_shared<Beacon>()});
    for (int bit = 0; bit < 64; ++bit) {
        const auto power = std::uint64_t{1} << bit;
        values.insert(values.end(), {Number(power - 1), Number(power),
                                     Number(-static_cast<std::int64_t>(power - 1))});
    }
    for (const auto& value : values) {
        EXPECT_EQ(shown(readBack(value)), shown(value));
    }
    EXPECT_EQ(shown(readBack(arrayOf(values))), shown(arrayOf(values)));
    EXPECT_EQ(shown(readBack("a\xFFz"s)), "\"a\uFFFDz\"");
    // The widths of references, offsets and UIDs depend on the number of objects.
    for (const std::uint64_t count : {100U, 250U, 40'000U, 70'000U}) {
        values.clear();
        while (values.size() < count) {
            values.emplace_back(Number(std::uint64_t{values.size()}));
        }
        EXPECT_EQ(std::get<std::shared_ptr<Array>>(readBack(arrayOf(values)))->elements, values);
    }
}

TEST(KeyedArchive, SharingAndSelfReferenceSurvive) {
    const auto shared = arrayOf({"x"s});
    const auto beacon = richBeacon();
    const auto root = arrayOf({shared, shared, arrayOf({"x"s}), beacon, beacon});
    beacon->other = root;
    beacon->loose = beacon;
    const auto result = unarchived(KeyedArchiver::archivedData(root));
    beacon->other = Value();
    beacon->loose = Value();
    EXPECT_EQ(shown(result.root), shown(root)) << result.fault;
    EXPECT_EQ(result.misreadFields, 2U);
    const auto read = std::get<std::shared_ptr<Array>>(result.root)->elements;
    EXPECT_EQ(read[0], read[1]);
    EXPECT_NE(read[0], read[2]);
    EXPECT_EQ(read[3], read[4]);
}

TEST(KeyedArchive, WhatCouldNotBeReadIsNotWritten) {
    auto nested = arrayOf({});
    for (int depth = 1; depth < KeyedUnarchiver::depthLimit; ++depth) {
        nested = arrayOf({nested});
    }
    EXPECT_EQ(shown(readBack(nested)), shown(nested));
    EXPECT_FALSE(KeyedArchiver::archivedData(arrayOf({nested})));
    EXPECT_FALSE(KeyedArchiver::archivedData({}));
    EXPECT_FALSE(KeyedArchiver::archivedData(std::shared_ptr<Archivable>()));
    // The text has one slot, but each of its readers gets a copy.
    const std::vector<Value> repeated(40, std::string(1'000'000, 'x'));
    EXPECT_FALSE(KeyedArchiver::archivedData(arrayOf(repeated)));
    // Each element takes one byte in the file, but a whole value in the reader's memory.
    const std::vector<Value> elements(2'500'000, Number(1));
    EXPECT_FALSE(KeyedArchiver::archivedData(arrayOf(elements)));
}

TEST(KeyedArchive, FieldsOfOtherKindsReadAsEmptyWithAFewExceptions) {
    const struct {
        std::string key;
        std::string value;
        std::string expected;
        bool isMisread = false;
    } cases[] = {
        {"height", "true", "1"},
        {"height", "-5.0", "-5"},
        {"height", "5.5", "", true},
        {"height", "nan", "", true},
        {"height", "9223372036854775808", "", true},
        {"channel", "2147483648", "", true},
        {"isLit", "1", "", true},
        {"latitude", "inf", "inf"},
        {"name", "#0", ""},
        {"name", "@'$null'", ""},
        {"name", "'inline'", "", true},
        {"name", "@NSMutableString{NS.string='m'}", "\"m\""},
        {"code", "@'5'", "", true},
        {"other", "5", "", true},
        {"other", "@NSDate{NS.time=1}", "<date 978307201000000>"},
        {"other", "@NSDate{NS.time=1.0e300}", "", true},
        {"other", "@NSUUID{NS.uuidbytes=<>}", "", true},
        {"other", "@NSURL{NS.base=@NSURL{NS.relative=@'https://a/b/c'} NS.relative=@'../d'}",
         "<https://a/d>"},
        // Only the name of an ancestor is a known class.
        {"other", "@OddArray:NSMutableArray:NSObject{NS.objects=[] extra=1}", "[]"},
    };
    for (const auto& [key, value, expected, isMisread] : cases) {
        SCOPED_TRACE(key + "=" + value);
        // The field that follows is still read: "$1", the second unkeyed value, although the first
        // is absent.
        const auto result = Forger().read({"Beacon{" + key + "=" + value + " $1=7}"});
        const std::string field = expected.empty() ? "" : key + "=" + expected + " ";
        EXPECT_EQ(shown(result.root), "Beacon(" + field + "looseNumber=7)") << result.fault;
        EXPECT_EQ(result.misreadFields, isMisread ? 1U : 0U) << firstMisreading(result);
        EXPECT_THAT(firstMisreading(result), HasSubstr(isMisread ? key + "\" of Beacon is " : ""));
    }
}

} // namespace
