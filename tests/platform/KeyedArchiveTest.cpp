// SPDX-License-Identifier: MIT
#include "platform/KeyedArchiver.h"
#include "platform/KeyedUnarchiver.h"

#include "platform/Files.h"
#include "tests/platform/ArchiveSamples.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

using namespace platform;
using samples::arrayOf;
using samples::Beacon;
using samples::Forger;
using samples::shown;
using samples::unarchived;
using testing::HasSubstr;
using namespace std::string_literals;

namespace {

std::shared_ptr<Dictionary> dictionaryOf(std::map<std::string, Value, std::less<>> entries,
                                         bool isMutable = true) {
    return std::make_shared<Dictionary>(Dictionary{isMutable, std::move(entries)});
}

std::shared_ptr<Beacon> richBeacon() {
    UUID uuid;
    auto beacon = std::make_shared<Beacon>();
    beacon->name = "Årø";
    beacon->code = Number(true);
    beacon->height = std::numeric_limits<std::int64_t>::min();
    beacon->channel = -7;
    beacon->isLit = true;
    beacon->range = 12.5F;
    beacon->latitude = 40;
    beacon->signal = samples::hex("00ff80");
    beacon->price = dictionaryOf({{"", Number(1)}, {"$null", "$null"s}});
    std::ranges::copy(std::as_bytes(std::span("0123456789abcdef", 16)), uuid.bytes.begin());
    beacon->other = uuid;
    beacon->loose = "loose"s;
    beacon->looseNumber = 65536;
    return beacon;
}

Value readBack(const Value& value) {
    auto result = unarchived(KeyedArchiver::archivedData(value));
    EXPECT_EQ(result.fault, "");
    EXPECT_EQ(result.firstMisreadField, "");
    return result.root;
}

TEST(KeyedArchive, TheSmallestArrayHasTheseBytes) {
    const auto file = samples::hex(
        "62706c6973743030 d4131517181416111255246e756c6c544b44454e8002a203035a4e532e6f626a65637473"
        "574e534172726179584e534f626a6563745a24636c6173736e616d655824636c6173736573a20607"
        "d208090 60a8003 5624636c617373d2050d040c54726f6f748001d10f10a4010e020b"
        "582476657273696f6e12000186a0592461726368697665725f100f4e534b657965644172636869766572542474"
        "6f70"
        "58246f626a65637473 0811171c1e212c343d485154595b62676c6e71767f848ea0a5"
        "0000000000000101 0000000000000019 0000000000000000 00000000000000ae");
    ASSERT_EQ(file.size(), 231U);
    EXPECT_EQ(shown(unarchived(file).root), R"(("KDEN","KDEN"))");
    EXPECT_EQ(KeyedArchiver::archivedData(arrayOf({"KDEN"s, "KDEN"s}, false)), file);
}

TEST(KeyedArchive, EveryKindOfValueComesBackAsItWas) {
    std::vector<Value> values{""s,
                              "$null"s,
                              "$class"s,
                              "\0nul"s,
                              "Ærø"s,
                              "東京 🛫"s,
                              std::string(14, 'a'),
                              std::string(15, 'a'),
                              std::string(300, 'b'),
                              std::string(70000, 'c'),
                              Number(false),
                              Number(true),
                              Number(0.0F),
                              Number(-0.0),
                              Number(0.1),
                              Number(std::numeric_limits<double>::infinity()),
                              Number(std::numeric_limits<std::uint64_t>::max()),
                              Data(),
                              Data(20, std::byte{0x80}),
                              Date(std::chrono::microseconds(1'678'307'200'250'001)),
                              Date(std::chrono::seconds(-62135769600)),
                              URL{"https://example.org/a?b#c"},
                              UUID{{std::byte{1}, std::byte{255}}},
                              Null(),
                              arrayOf({}),
                              arrayOf({}, false),
                              arrayOf({arrayOf({Null()})}),
                              std::make_shared<Set>(Set{true, {"a"s}}),
                              std::make_shared<Set>(Set{false, {}}),
                              dictionaryOf({}),
                              dictionaryOf({{"", Null()}, {"東", arrayOf({})}}, false)};
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
}

TEST(KeyedArchive, FieldsOfAnObjectComeBackByTheirKeys) {
    for (const auto& beacon : {richBeacon(), std::make_shared<Beacon>()}) {
        EXPECT_EQ(shown(readBack(beacon)), shown(beacon));
    }
}

TEST(KeyedArchive, AbsentValuesAreLeftOutOfContainers) {
    EXPECT_EQ(shown(readBack(arrayOf(
                  {Value(), "a"s, std::shared_ptr<Array>(), std::shared_ptr<Archivable>()}))),
              R"(["a"])");
    EXPECT_EQ(shown(readBack(dictionaryOf({{"a", Value()}, {"b", Null()}}))), "{b=<null>}");
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

TEST(KeyedArchive, EqualTextsAndNumbersShareASlot) {
    std::vector<Value> same;
    std::vector<Value> separate;
    for (int i = 0; i < 1000; ++i) {
        same.insert(same.end(), {"a text of some length"s, Number(0.1)});
        separate.emplace_back(dictionaryOf({}));
    }
    // References take two bytes or four; a text of its own 22.
    EXPECT_LT(KeyedArchiver::archivedData(arrayOf(same))->size(), 5000U);
    const auto read = std::get<std::shared_ptr<Array>>(readBack(arrayOf(separate)));
    EXPECT_NE(read->elements.front(), read->elements.back());
}

TEST(KeyedArchive, WhatCouldNotBeReadIsNotWritten) {
    EXPECT_EQ(shown(readBack(samples::nestedArrays(256))), shown(samples::nestedArrays(256)));
    EXPECT_FALSE(KeyedArchiver::archivedData(samples::nestedArrays(257)));
    EXPECT_FALSE(KeyedArchiver::archivedData({}));
    EXPECT_FALSE(KeyedArchiver::archivedData(std::shared_ptr<Archivable>()));
    // One slot, but a copy for each of whoever reads it.
    const std::vector<Value> repeated(40, std::string(1'000'000, 'x'));
    EXPECT_FALSE(KeyedArchiver::archivedData(arrayOf(repeated)));

    struct Wide final : Archivable {
        int keys = 0;
        [[nodiscard]] const ClassNames& archivedClass() const override {
            static const ClassNames names{"Wide"};
            return names;
        }
        void encodeWithCoder(KeyedArchiver& coder) const override {
            for (int i = 0; i < keys; ++i) {
                coder.encodeInteger(i, std::to_string(i));
            }
        }
    };
    const auto wide = std::make_shared<Wide>();
    wide->keys = KeyedUnarchiver::keyLimit - 1;
    EXPECT_TRUE(KeyedArchiver::archivedData(wide));
    wide->keys = KeyedUnarchiver::keyLimit;
    EXPECT_FALSE(KeyedArchiver::archivedData(wide));
}

TEST(KeyedArchive, FilesAreReplacedWholeOrNotAtAll) {
    const support::TemporaryFolder folder;
    const auto path = folder / "some.archive";
    EXPECT_THAT(KeyedUnarchiver::unarchiveFile(path, samples::classes()).fault,
                HasSubstr("not exist"));
    EXPECT_TRUE(KeyedArchiver::archiveRootObject(arrayOf({"a"s}), path));
    EXPECT_FALSE(KeyedArchiver::archiveRootObject(Value(), path));
    EXPECT_EQ(shown(KeyedUnarchiver::unarchiveFile(path, samples::classes()).root), R"(["a"])");
    EXPECT_FALSE(KeyedArchiver::archiveRootObject(Null(), folder / "no folder" / "file"));
    EXPECT_THAT(KeyedUnarchiver::unarchiveFile(folder.path(), samples::classes()).fault,
                HasSubstr("cannot be read"));
}

/// A reference to a new slot with `object` in it.
Forger::Ref uidOf(Forger& forger, Forger::Ref object) {
    return forger.uid(forger.addSlot(object));
}

Forger::Ref recordOf(Forger& forger, const std::string& className, Forger::Fields fields) {
    return uidOf(forger, forger.record(std::move(fields), forger.addClass({className})));
}

TEST(KeyedArchive, FieldsOfOtherKindsReadAsEmptyButForAFewTolerances) {
    using F = Forger&;
    struct Case {
        const char* key;
        Forger::Ref (*value)(Forger&);
        const char* expected;
        bool isMisread = false;
    };
    const Case cases[] = {
        {"height", [](F f) { return f.list.number(Number(true)); }, "height=1"},
        {"height", [](F f) { return f.real(-5); }, "height=-5"},
        {"height", [](F f) { return f.real(5.5); }, "", true},
        {"height", [](F f) { return f.real(0x1p63); }, "", true},
        {"height", [](F f) { return f.real(std::nan("")); }, "", true},
        {"height", [](F f) { return f.list.number(Number(std::uint64_t{1} << 63)); }, "", true},
        {"height", [](F f) { return f.text("5"); }, "", true},
        {"height", [](F f) { return uidOf(f, f.integer(5)); }, "", true},
        {"channel", [](F f) { return f.integer(1LL << 31); }, "", true},
        {"channel", [](F f) { return f.integer(-(1LL << 31)); }, "channel=-2147483648"},
        {"isLit", [](F f) { return f.integer(1); }, "", true},
        {"latitude", [](F f) { return f.integer(-90); }, "latitude=-90"},
        {"latitude", [](F f) { return f.list.number(Number(0.5F)); }, "latitude=0.5"},
        {"latitude", [](F f) { return f.real(INFINITY); }, "latitude=inf"},
        {"latitude", [](F f) { return f.list.number(Number(true)); }, "", true},
        {"latitude", [](F f) { return f.text("45"); }, "", true},
        {"range", [](F f) { return f.real(0.25); }, "range=0.25"},
        {"range", [](F f) { return f.real(1e300); }, "", true},
        {"signal", [](F f) { return f.text("ab"); }, "", true},
        {"name", [](F f) { return f.uid(0); }, ""},
        {"name", [](F f) { return uidOf(f, f.text("$null")); }, ""},
        {"name", [](F f) { return f.text("inline"); }, "", true},
        {"name", [](F f) { return uidOf(f, f.integer(5)); }, "", true},
        {"name",
         [](F f) {
             return recordOf(f, "NSMutableString", {{"NS.string", f.text("m")}});
         },
         "name=\"m\""},
        {"code", [](F f) { return uidOf(f, f.real(1.5)); }, "code=d1.5"},
        {"code", [](F f) { return uidOf(f, f.text("5")); }, "", true},
        {"other", [](F f) { return f.integer(5); }, "", true},
        {"other", [](F f) { return uidOf(f, f.uids({})); }, "", true},
        {"other",
         [](F f) {
             return recordOf(f, "NSDate", {{"NS.time", f.integer(1)}});
         },
         "other=<date 978307201000000>"},
        {"other",
         [](F f) {
             return recordOf(f, "NSDate", {{"NS.time", f.real(1e300)}});
         },
         "", true},
        {"other",
         [](F f) {
             return recordOf(f, "NSDate", {{"NS.time", f.real(std::nan(""))}});
         },
         "", true},
        {"other", [](F f) { return recordOf(f, "NSDate", {}); }, "", true},
        {"other",
         [](F f) {
             return recordOf(f, "NSUUID", {{"NS.uuidbytes", f.list.data({})}});
         },
         "", true},
        {"other",
         [](F f) {
             const auto text = [&](const char* relative) { return uidOf(f, f.text(relative)); };
             const auto base = recordOf(f, "NSURL", {{"NS.relative", text("https://a/b/c")}});
             return recordOf(f, "NSURL", {{"NS.base", base}, {"NS.relative", text("../d")}});
         },
         "other=<https://a/d>"},
        // Only the name of an ancestor is known.
        {"other",
         [](F f) {
             const auto odd = f.addClass({"OddArray", "NSMutableArray", "NSObject"});
             return uidOf(f, f.record({{"NS.objects", f.uids({})}, {"extra", f.integer(1)}}, odd));
         },
         "other=[]"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(&test - cases);
        Forger forger;
        const auto value = test.value(forger);
        // A field that follows is read all the same.
        const auto root =
            forger.addSlot(forger.record({{test.key, value}, {"$1", forger.integer(7)}}));
        const auto result = unarchived(forger.finish(root));
        const std::string expected = *test.expected ? test.expected + " "s : "";
        // The first unkeyed value is missing, and so is the second one of "$0" alone.
        EXPECT_EQ(shown(result.root), "Beacon(" + expected + "looseNumber=7)") << result.fault;
        EXPECT_EQ(result.misreadFields, test.isMisread ? 1U : 0U) << result.firstMisreadField;
        if (test.isMisread) {
            EXPECT_THAT(result.firstMisreadField, HasSubstr("\""s + test.key + "\" of Beacon is "));
        }
    }
}

TEST(KeyedArchive, FilesOfOtherWritersAreRead) {
    const std::filesystem::path folder = NOSIG_SHARED_DATA "/archives";
    if (!fileExists(folder)) {
        GTEST_SKIP() << "no sample archives in " << folder;
    }
    // The fields that their classes have, each class some of them.
    const auto read = [](KeyedUnarchiver& coder) {
        auto beacon = std::make_shared<Beacon>();
        beacon->name = coder.decodeText("stationName");
        beacon->code = coder.decodeNumber("METAR");
        beacon->latitude = coder.decodeDouble("longitude");
        beacon->other = coder.decodeObject("refCon");
        return beacon;
    };
    const auto readOwner = [](KeyedUnarchiver& coder) {
        auto beacon = std::make_shared<Beacon>();
        beacon->name = coder.decodeText("author");
        beacon->isLit = coder.decodeBool("published");
        beacon->height = coder.decodeInteger("date");
        beacon->code = coder.decodeNumber("numberOfStations");
        beacon->price = coder.decodeObject("lastUpdated");
        beacon->loose = coder.decodeObject("fromURL");
        beacon->other = coder.decodeObject("stations");
        if (beacon->other == Value()) {
            beacon->other = coder.decodeObject("array");
        }
        return beacon;
    };
    ClassTable table;
    table.add("AviationWeatherStation", read);
    table.add("AviationWeatherStationCollection", readOwner);
    table.add("Note", readOwner);
    const std::pair<const char*, const char*> files[] = {
        {"gs-1-favourite.bin",
         "Beacon(code=i1 price=<date 1678307200250000> other=[Beacon(name=\"STATION NUMBER 0\" "
         "code=i32 latitude=-180 other={RQFavorite=btrue})] "
         "loose=<https://example.org/data/stations.txt>)"},
        {"gs-strings.bin", R"(("KDEN","KJFK","SÃO 東京 🛫","","KDEN"))"},
        {"mw-circularReference.plist", "[]"},
        {"mw-note.plist", "Beacon(name=\"Michael Wright\" height=2025 isLit=true "
                          "other=(\"Hello, World!\",i42,btrue))"},
        {"mw-nsData.plist", "<data 536f6d65206461746121>"},
        {"mw-simpleArray.plist", R"(("value1","value2",("innerValue3","innerValue4")))"},
        {"mw-simpleDict.plist", "<Array key=(i1,i2,i3),First key=\"First value\",Second "
                                "key=\"Second value\">"},
        {"tiny-two-strings.bin", R"(("KDEN","KDEN"))"},
    };
    for (const auto& [name, expected] : files) {
        SCOPED_TRACE(name);
        const auto result = KeyedUnarchiver::unarchiveFile(folder / name, table);
        EXPECT_EQ(shown(result.root), expected) << result.fault;
        // The list that contains itself.
        EXPECT_EQ(result.misreadFields, name == "mw-circularReference.plist"s ? 1U : 0U);
    }
}

/// What another reader makes of the archive in a file.
std::string readByPython(const std::filesystem::path& file) {
    const auto command = "python3 '" NOSIG_SOURCE_DIR "/tests/platform/read_archive.py' '" +
                         file.string() + "' 2>&1";
    std::string output;
    auto* pipe = ::popen(command.c_str(), "r");
    std::array<char, 4096> buffer{};
    while (const auto size = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
        output.append(buffer.data(), size);
    }
    return ::pclose(pipe) == 0 ? output : "FAILED: " + output;
}

TEST(KeyedArchive, AnIndependentReaderReadsWhatIsWritten) {
    const support::TemporaryFolder folder;
    const auto path = folder / "archive";
    ASSERT_TRUE(KeyedArchiver::archiveRootObject(
        arrayOf({richBeacon(), Number(std::numeric_limits<std::uint64_t>::max()), Number(-1),
                 Date(std::chrono::microseconds(978'307'200'500'000)), URL{"https://example.org/"},
                 Data(2, std::byte{7}), std::make_shared<Set>(), arrayOf({}, false)}),
        path));
    EXPECT_EQ(
        readByPython(path),
        "NSMutableArray:NSArray:NSObject{NS.objects=["
        "@Beacon:NSObject{name=@'Årø' code=@True height=-9223372036854775808 channel=-7 isLit=True "
        "range=12.5 latitude=40.0 signal=b'\\x00\\xff\\x80' "
        "$$price=@NSMutableDictionary:NSDictionary:NSObject{NS.keys=[@'' "
        "@NSMutableString:NSString:NSObject{NS.string='$null'}] NS.objects=[@1 "
        "@NSMutableString:NSString:NSObject{NS.string='$null'}]} "
        "other=@NSUUID:NSObject{NS.uuidbytes=b'0123456789abcdef'} "
        "$0=@'loose' $1=65536} @18446744073709551615 @-1 @NSDate:NSObject{NS.time=0.5} "
        "@NSURL:NSObject{NS.base=nil NS.relative=@'https://example.org/'} @b'\\x07\\x07' "
        "@NSMutableSet:NSSet:NSObject{NS.objects=[]} @NSArray:NSObject{NS.objects=[]}]}\n");

    // Widths of references, offsets and UIDs change with the number of objects.
    for (const int count : {100, 250, 40'000, 70'000}) {
        std::vector<Value> numbers;
        std::string expected;
        for (int i = 0; i < count; ++i) {
            numbers.emplace_back(Number(i));
            expected += (i ? " @" : "@") + std::to_string(i);
        }
        ASSERT_TRUE(KeyedArchiver::archiveRootObject(arrayOf(numbers, false), path));
        EXPECT_TRUE(readByPython(path) == "NSArray:NSObject{NS.objects=[" + expected + "]}\n")
            << count;
        EXPECT_EQ(std::get<std::shared_ptr<Array>>(KeyedUnarchiver::unarchiveFile(path, {}).root)
                      ->elements,
                  numbers);
    }
}

} // namespace
