// SPDX-License-Identifier: MIT
#include "platform/BinaryPropertyList.h"
#include "platform/KeyedArchiver.h"
#include "platform/KeyedUnarchiver.h"

#include "tests/platform/ArchiveSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

using namespace platform;
using samples::arrayOf;
using samples::Beacon;
using samples::Forger;
using samples::shown;
using samples::unarchived;
using testing::HasSubstr;
using namespace std::string_literals;

namespace {

void putBig(Data& data, std::size_t at, std::uint64_t value, std::size_t width) {
    for (std::size_t i = 0; i < width; ++i) {
        data.at(at + width - 1 - i) = static_cast<std::byte>(value >> 8 * i);
    }
}

std::uint64_t bigAt(const Data& data, std::size_t at, std::size_t width) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < width; ++i) {
        value = value << 8 | std::to_integer<std::uint64_t>(data.at(at + i));
    }
    return value;
}

/// A list of one object, whose bytes are these.
Data listOf(const std::string& object) {
    const auto bytes = samples::hex(object);
    auto list = samples::hex("62706c6973743030" + object + "08" + std::string(64, '0'));
    putBig(list, list.size() - 26, 0x0101, 2);
    putBig(list, list.size() - 24, 1, 8);
    putBig(list, list.size() - 8, 8 + bytes.size(), 8);
    return list;
}

Data beacons(int count) {
    std::vector<Value> list;
    for (int i = 0; i < count; ++i) {
        auto beacon = std::make_shared<Beacon>();
        beacon->name = "Fyr nø " + std::to_string(i);
        beacon->code = Number(i);
        beacon->height = i;
        beacon->isLit = true;
        beacon->latitude = 1.5 * i;
        beacon->signal = Data(3, std::byte{9});
        beacon->price = URL{"https://example.org/"};
        beacon->other = std::make_shared<Dictionary>(Dictionary{true, {{"mark", Number(true)}}});
        beacon->loose = std::make_shared<Set>(Set{true, {Date{}, UUID{}, Null()}});
        list.emplace_back(std::move(beacon));
    }
    return KeyedArchiver::archivedData(arrayOf(std::move(list))).value();
}

TEST(HostileArchive, BrokenFramesAreRefusedWithAReason) {
    const auto whole = beacons(1);
    const auto bytesOf = [](std::string_view text) {
        const auto bytes = std::as_bytes(std::span(text));
        return Data(bytes.begin(), bytes.end());
    };
    const auto patched = [&](std::size_t fromEnd, std::uint64_t value, std::size_t width) {
        auto data = whole;
        putBig(data, data.size() - fromEnd, value, width);
        return data;
    };
    const auto table = whole.size();
    std::vector<std::pair<Data, const char*>> cases{
        {{}, "empty"},
        {bytesOf("! a list of stations"), "not a binary property list"},
        {bytesOf("NIBArchive\1\0\0\0"), "not a binary property list"},
        {bytesOf("<?xml version=\"1.0\"?>"), "XML"},
        {bytesOf("bplist00"), "cut short"},
    };
    for (const std::uint64_t width : {0U, 9U, 255U}) {
        cases.emplace_back(patched(26, width, 1), "trailer");
        cases.emplace_back(patched(25, width, 1), "trailer");
    }
    // The number of objects, the top object, the place of the offset table.
    for (const std::uint64_t count : {0ULL, 0x10000ULL, 1ULL << 61, 1ULL << 63, ~0ULL}) {
        cases.emplace_back(patched(24, count, 8), "trailer");
    }
    for (const std::uint64_t top : {0x10000ULL, 1ULL << 63, ~0ULL}) {
        cases.emplace_back(patched(16, top, 8), "trailer");
    }
    for (const std::uint64_t place : {0ULL, 8ULL, table - 32ULL, table - 1ULL, 1ULL << 63, ~0ULL}) {
        cases.emplace_back(patched(8, place, 8), "trailer");
    }
    // The first offset, of the top object: into the header, the table, beyond.
    const auto start = bigAt(whole, whole.size() - 8, 8);
    ASSERT_EQ(bigAt(whole, whole.size() - 26, 1), 2U);
    for (const std::uint64_t offset :
         {std::uint64_t{0}, std::uint64_t{7}, start, ~std::uint64_t{0}}) {
        auto data = whole;
        putBig(data, start, offset, 2);
        cases.emplace_back(data, "object 0 is broken");
    }
    // References of four bytes, where there are two.
    cases.emplace_back(patched(25, 4, 1), "");
    for (const auto& [data, reason] : cases) {
        SCOPED_TRACE(reason);
        const auto result = unarchived(data);
        EXPECT_EQ(shown(result.root), "-");
        EXPECT_FALSE(result.fault.empty());
        EXPECT_THAT(result.fault, HasSubstr(reason));
    }
}

TEST(HostileArchive, ObjectsThatDoNotFitAreBroken) {
    const std::string zeros(64, '0');
    std::vector<std::string> broken{
        // Markers that stand for nothing.
        "01", "0f", "15" + zeros, "20aa", "21aabb", "24" + zeros, "32aabbccdd", "34" + zeros, "70",
        "88" + zeros, "90", "b0", "c0", "e0", "f0",
        // Payloads that reach into the table.
        "13aabb", "23aabb", "33aabb", "43aabb", "5361", "620061", "6100", "8200", "a200", "d100",
        // Counts that are cut, no integer, or one of more than eight bytes.
        "5f", "5f13", "5f1300", "5f23" + zeros, "5f14" + zeros, "5f15" + zeros, "5f5161"};
    for (const std::string type : {"4f", "5f", "6f", "af", "df"}) {
        for (const std::string count :
             {"1020", "1180ff", "12ffffffff", "137fffffffffffffff", "138000000000000000",
              "138000000000000001", "13ffffffffffffffff"}) {
            broken.push_back(type + count + "aaaa");
        }
    }
    std::string fault;
    for (const auto& object : broken) {
        SCOPED_TRACE(object);
        const auto data = listOf(object);
        const auto list = plist::Reader::open(data, fault);
        ASSERT_TRUE(list) << fault;
        EXPECT_EQ(list->element(0).kind, plist::Kind::broken);
        EXPECT_EQ(list->element(1).kind, plist::Kind::broken);
        EXPECT_EQ(list->element(~std::uint64_t{0}).kind, plist::Kind::broken);
    }
}

TEST(HostileArchive, TextAndNumbersOfAnyFormAreRead) {
    const std::pair<const char*, const char*> cases[] = {
        {"5361c362", "\"a\uFFFDb\""},
        {"66d83d0061dc00d83ddeebd83d", "\"\uFFFDa\uFFFD🛫\uFFFD\""},
        {"5101", "\"\1\""},
        {"5f1300000000000000026162", "\"ab\""},
        {"100a", "i10"},
        {"12000186a0", "i100000"},
        {"13ffffffffffffffff", "i-1"},
        {"14000000000000000000000000000000ff", "i255"},
        {"1400000000000000008000000000000000", "u9223372036854775808"},
        {"1400000000000000010000000000000000", "-"},
        {"223fc00000", "f1.5"},
    };
    for (const auto& [object, expected] : cases) {
        SCOPED_TRACE(object);
        std::string fault;
        const auto data = listOf(object);
        const auto list = plist::Reader::open(data, fault);
        ASSERT_TRUE(list);
        const auto element = list->element(0);
        const auto number = list->number(element);
        EXPECT_EQ(shown(element.isText() ? Value(list->text(element))
                        : number         ? Value(*number)
                                         : Value()),
                  expected);
    }
}

TEST(HostileArchive, TheArchiveFrameIsChecked) {
    using F = Forger&;
    const std::tuple<const char*, Forger::Ref (*)(Forger&), const char*> cases[] = {
        {"$version", [](F) { return Forger::Ref{0}; }, "top entries"},
        {"$version", [](F f) { return f.integer(99999); }, "version"},
        {"$version", [](F f) { return f.real(100000); }, "top entries"},
        {"$archiver", [](F f) { return f.text("OddArchiver"); }, "unknown archiver"},
        {"$archiver", [](F) { return Forger::Ref{0}; }, "top entries"},
        {"$top", [](F) { return Forger::Ref{0}; }, "top entries"},
        {"$top", [](F f) { return f.uid(1); }, "top entries"},
        {"$top", [](F f) { return f.dictionary({}); }, "no root"},
        {"$top",
         [](F f) {
             return f.dictionary({{"root", f.integer(1)}});
         },
         "no root"},
        {"$top",
         [](F f) {
             return f.dictionary({{"root", f.uid(0)}});
         },
         "absent"},
        {"$top",
         [](F f) {
             return f.dictionary({{"root", f.uid(99)}});
         },
         "beyond"},
        {"$objects", [](F) { return Forger::Ref{0}; }, "top entries"},
        {"$objects", [](F f) { return f.dictionary({}); }, "top entries"},
        {"$objects", [](F f) { return f.array({}); }, "table is empty"},
        {"$objects",
         [](F f) {
             return f.array({f.text("x"), f.text("y")});
         },
         "table is empty"},
        {"$objects",
         [](F f) {
             return f.array({250, f.text("y")});
         },
         "object 250 is broken"},
    };
    for (const auto& [key, entry, reason] : cases) {
        SCOPED_TRACE(key + " "s + reason);
        Forger forger;
        forger.frame.emplace_back(key, entry(forger));
        const auto result = unarchived(forger.finish(forger.addSlot(forger.text("root"))));
        EXPECT_EQ(shown(result.root), "-");
        EXPECT_THAT(result.fault, HasSubstr(reason));
    }
    // A dictionary whose keys are no text, where the archive's frame should be.
    EXPECT_THAT(unarchived(listOf("d10000")).fault, HasSubstr("keys are not text"));
    EXPECT_THAT(unarchived(listOf("a0")).fault, HasSubstr("not a keyed archive"));
}

/// What is read as the root object's field "other", the root being a beacon in slot 2 that holds
/// what stands in the next slot.
Unarchived otherOf(const std::function<Forger::Ref(Forger&)>& makeSlot) {
    Forger forger;
    const auto root =
        forger.addSlot(forger.record({{"other", forger.uid(3)}, {"height", forger.integer(1)}}));
    const auto next = forger.addSlot(0);
    const auto object = makeSlot(forger);
    forger.slots[next] = object;
    return unarchived(forger.finish(root));
}

TEST(HostileArchive, ObjectsThatCannotBeMadeReadAsAbsent) {
    using F = Forger&;
    using Refs = std::vector<Forger::Ref>;
    const auto array = [](F f, const Refs& elements) {
        return f.record({{"NS.objects", f.array(elements)}}, f.addClass({"NSArray"}));
    };
    const auto dictionary = [](F f, const Refs& keys, const Refs& values) {
        return f.record({{"NS.keys", f.array(keys)}, {"NS.objects", f.array(values)}},
                        f.addClass({"NSDictionary"}));
    };
    const auto slot = [](F f, Forger::Ref object) { return f.uid(f.addSlot(object)); };
    struct Case {
        std::function<Forger::Ref(Forger&)> object;
        const char* expected;
        const char* reason;
    };
    const Case cases[] = {
        // Its class: missing, nil, pointing at itself, of another kind, unknown.
        {[](F f) { return f.dictionary({}); }, "", "cannot be read"},
        {[](F f) {
             return f.dictionary({{"$class", f.uid(0)}});
         },
         "", "cannot be read"},
        {[](F f) {
             return f.dictionary({{"$class", f.uid(3)}});
         },
         "", "cannot be read"},
        {[](F f) {
             return f.dictionary({{"$class", f.text("Beacon")}});
         },
         "", "cannot be read"},
        {[&](F f) { return f.record({}, f.addSlot(f.text("Beacon"))); }, "", "cannot be read"},
        {[](F f) {
             return f.record({}, f.addClass({"Evil", "NSObject"}));
         },
         "", "\"Evil\""},
        {[](F f) {
             return f.record({}, f.addSlot(f.dictionary({{"$classname", f.integer(1)}})));
         },
         "", "cannot be read"},
        // It contains itself.
        {[](F f) {
             return f.record({{"other", f.uid(2)}});
         },
         "Beacon()", "contains itself"},
        {[](F f) {
             return f.record({{"other", f.uid(3)}});
         },
         "Beacon()", "contains itself"},
        {[&](F f) {
             return array(f, {f.uid(3), f.uid(2)});
         },
         "()", "contains itself"},
        {[](F f) {
             return f.record(
                 {{"NS.relative", f.uid(f.addSlot(f.text("a")))}, {"NS.base", f.uid(3)}},
                 f.addClass({"NSURL"}));
         },
         "", "contains itself"},
        // Lists that are odd in themselves are refused, unreadable elements left out.
        {[&](F f) { return array(f, {f.uid(0)}); }, "", "\"NSArray\""},
        {[&](F f) { return array(f, {slot(f, f.text("$null"))}); }, "", "\"NSArray\""},
        {[&](F f) { return array(f, {f.text("inline")}); }, "", "\"NSArray\""},
        {[&](F f) {
             return array(f, {slot(f, f.uids({})), slot(f, f.text("a"))});
         },
         "(\"a\")", "no object can have"},
        {[&](F f) { return dictionary(f, {}, {slot(f, f.text("a"))}); }, "", "\"NSDictionary\""},
        {[&](F f) { return dictionary(f, {slot(f, f.integer(1))}, {f.uid(2)}); }, "",
         "\"NSDictionary\""},
        {[&](F f) { return dictionary(f, {slot(f, f.text("a"))}, {f.uid(0)}); }, "",
         "\"NSDictionary\""},
        {[](F f) { return f.record({}, f.addClass({"NSMutableSet"})); }, "", "\"NSMutableSet\""},
        // Two equal keys.
        {[&](F f) {
             const auto key = slot(f, f.text("a"));
             return dictionary(f, {key, key}, {slot(f, f.integer(1)), slot(f, f.integer(2))});
         },
         "<a=i1>", ""},
        {[](F f) {
             return f.record({{"height", f.integer(1)}, {"height", f.integer(2)}});
         },
         "Beacon(height=1)", ""},
        // More keys than a record may have.
        {[](F f) {
             return f.record(Forger::Fields(256, {"height", f.integer(1)}));
         },
         "", "cannot be read"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(&test - cases);
        const auto result = otherOf(test.object);
        const auto other = *test.expected ? " other="s + test.expected : "";
        EXPECT_EQ(shown(result.root), "Beacon(height=1" + other + ")") << result.fault;
        EXPECT_THAT(result.firstMisreadField, HasSubstr(test.reason));
        EXPECT_EQ(result.misreadFields > 0, *test.reason != 0);
    }
}

TEST(HostileArchive, DeepAndMultiplyingGraphsStayWithinBounds) {
    // A chain of lists, each in the next slot; each holds the next one as often as told.
    const auto chain = [](std::uint32_t length, std::size_t times) {
        Forger forger;
        const auto arrayClass = forger.addClass({"NSArray"});
        const auto first = static_cast<std::uint32_t>(forger.slots.size());
        for (std::uint32_t i = 0; i + 1 < length; ++i) {
            forger.addSlot(forger.record(
                {{"NS.objects", forger.uids(std::vector(times, first + i + 1))}}, arrayClass));
        }
        forger.addSlot(forger.record({{"NS.objects", forger.uids({})}}, arrayClass));
        return unarchived(forger.finish(first));
    };
    const auto deep = chain(100'000, 1);
    const auto brackets = [](std::size_t depth) {
        return std::string(depth, '(') + std::string(depth, ')');
    };
    EXPECT_EQ(shown(deep.root), brackets(KeyedUnarchiver::depthLimit));
    EXPECT_THAT(deep.firstMisreadField, HasSubstr("too deeply"));
    EXPECT_EQ(chain(64, 2).misreadFields, 0U);
    EXPECT_EQ(chain(2, 500'000).misreadFields, 0U);

    // Lists of the property list itself: deep, multiplying, within themselves.
    EXPECT_EQ(shown(otherOf([](Forger& forger) {
                        auto list = forger.array({});
                        for (int i = 0; i < 200'000; ++i) {
                            list = forger.array({list, list});
                        }
                        return list;
                    }).root),
              "Beacon(height=1)");
    EXPECT_EQ(
        shown(
            otherOf([](Forger& forger) {
                const auto next = forger.array({}) + 1;
                return forger.dictionary({{"$class", next + 1}, {"a", forger.array({next, next})}});
            }).root),
        "Beacon(height=1)");
}

/// Reads a list of a thousand objects that the archive says are the same as `object`.
Unarchived thousandTimes(Forger& forger, Forger::Ref object) {
    std::vector<std::uint32_t> slots(1000);
    std::ranges::generate(slots, [&] { return forger.addSlot(object); });
    return unarchived(forger.finish(forger.addSlot(
        forger.record({{"NS.objects", forger.uids(slots)}}, forger.addClass({"NSMutableArray"})))));
}

TEST(HostileArchive, WhatManyRecordsShareDoesNotMultiply) {
    using F = Forger&;
    const auto manyUids = [](F f) {
        return f.array(std::vector(20'000, f.uid(f.addSlot(f.text("a")))));
    };
    // Each object is small, but copies something long, or looks through it.
    const std::function<Forger::Ref(Forger&)> cases[] = {
        [](F f) {
            const auto text = f.addSlot(f.text(std::string(5'000'000, 'x')));
            return f.record({{"name", f.uid(text)}});
        },
        [](F f) {
            const auto data = f.list.data(Data(5'000'000));
            return f.record({{"NS.data", data}}, f.addClass({"NSData"}));
        },
        [&](F f) {
            return f.record({{"NS.objects", manyUids(f)}}, f.addClass({"NSSet"}));
        },
        [&](F f) {
            const auto uids = manyUids(f);
            return f.record({{"NS.keys", uids}, {"NS.objects", uids}},
                            f.addClass({"NSDictionary"}));
        },
    };
    for (const auto& object : cases) {
        SCOPED_TRACE(&object - cases);
        Forger forger;
        EXPECT_THAT(thousandTimes(forger, object(forger)).fault, HasSubstr("same contents"));
    }
    Forger wide;
    const auto record = wide.record(Forger::Fields(200'000, {"height", wide.integer(1)}));
    EXPECT_EQ(thousandTimes(wide, record).misreadFields, 1000U);

    // A thousand classes that share a long list of unknown ancestors.
    Forger forger;
    const auto names = forger.array(std::vector(20'000, forger.text("Unknown")));
    std::vector<std::uint32_t> slots(1000);
    std::ranges::generate(slots, [&] {
        const auto archivedClass = forger.addSlot(forger.dictionary({{"$classes", names}}));
        return forger.addSlot(forger.record({}, archivedClass));
    });
    const auto root =
        forger.record({{"NS.objects", forger.uids(slots)}}, forger.addClass({"NSSet"}));
    EXPECT_THAT(unarchived(forger.finish(forger.addSlot(root))).fault, HasSubstr("same contents"));
}

TEST(HostileArchive, CutOrChangedAnywhereItDoesNoHarm) {
    const auto whole = beacons(20);
    ASSERT_EQ(unarchived(whole).fault, "");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const auto result =
            unarchived(Data(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
        ASSERT_FALSE(result.fault.empty()) << size;
    }
    auto changed = whole;
    for (std::size_t i = 0; i < whole.size(); ++i) {
        for (const auto bits : {std::byte{1}, std::byte{0x10}, std::byte{0x80}, std::byte{0xFF}}) {
            changed[i] = whole[i] ^ bits;
            const auto result = unarchived(changed);
            ASSERT_EQ(result.fault.empty(), shown(result.root) != "-") << i;
        }
        changed[i] = whole[i];
    }
}

} // namespace
