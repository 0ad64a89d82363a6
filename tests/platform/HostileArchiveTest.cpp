// SPDX-License-Identifier: MIT
#include "platform/archive/BinaryPropertyList.h"
#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"

#include "tests/platform/ArchiveSamples.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

using namespace platform;
using namespace samples;
using testing::HasSubstr;
using namespace std::string_literals;

namespace {

/// A property list of one object, given as the hexadecimal digits of its bytes.
Data listOf(const std::string& object) {
    const auto digits = fmt::format("62706c6973743030{}08{:012}0101{:016x}{:016x}{:016x}", object,
                                    0, 1, 0, 8 + object.size() / 2);
    Data list;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        list.push_back(static_cast<std::byte>(std::stoi(digits.substr(i, 2), nullptr, 16)));
    }
    return list;
}

void expectRefused(const Unarchived& result, const char* reason) {
    EXPECT_EQ(shown(result.root), "-");
    EXPECT_THAT(result.fault, HasSubstr(reason));
}

Data richArchive() {
    const auto set = std::make_shared<Set>(Set{true, {Date{}, UUID{}, Null()}});
    return KeyedArchiver::archivedData(arrayOf({richBeacon(), URL{"https://example.org/"}, set}))
        .value();
}

TEST(HostileArchive, BrokenFramesAreRefusedWithAReason) {
    for (const auto& [text, reason] : {std::pair{"", "empty"},
                                       {"! a list of stations", "not a binary property list"},
                                       {"<?xml version=\"1.0\"?>", "XML"},
                                       {"bplist00", "cut short"}}) {
        const auto bytes = std::as_bytes(std::span(text, std::strlen(text)));
        expectRefused(unarchived(Data(bytes.begin(), bytes.end())), reason);
    }
    const auto whole = richArchive();
    ASSERT_EQ(whole.at(whole.size() - 26), std::byte{2});
    const auto start = std::to_integer<std::size_t>(whole.at(whole.size() - 2)) << 8 |
                       std::to_integer<std::size_t>(whole.back());
    const struct {
        const char* what;
        std::size_t at, width;
        std::vector<std::uint64_t> values;
        const char* reason = "trailer";
    } rows[] = {
        {"offset width", whole.size() - 26, 1, {0, 9, 255}},
        {"reference width", whole.size() - 25, 1, {0, 9, 255}},
        {"objects", whole.size() - 24, 8, {0, 0x10000, 1ULL << 61, 1ULL << 63, ~0ULL}},
        {"top object", whole.size() - 16, 8, {0x10000, 1ULL << 63, ~0ULL}},
        {"offset table", whole.size() - 8, 8, {0, 8, whole.size() - 32, 1ULL << 63, ~0ULL}},
        {"first offset", start, 2, {0, 7, start, 0xFFFF}, "object 0 is broken"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        for (const auto value : row.values) {
            auto data = whole;
            for (std::size_t i = 0; i < row.width; ++i) {
                data.at(row.at + row.width - 1 - i) = static_cast<std::byte>(value >> 8 * i);
            }
            expectRefused(unarchived(data), row.reason);
        }
    }
}

TEST(HostileArchive, ObjectsThatDoNotFitAreBroken) {
    const std::string zeros(64, '0');
    std::vector<std::string> broken{
        // Markers without a meaning.
        "01", "0f", "15" + zeros, "20aa", "21aabb", "24" + zeros, "32aabbccdd", "34" + zeros, "70",
        "88" + zeros, "90", "b0", "c0", "e0", "f0",
        // Payloads that reach into the table.
        "13aabb", "23aabb", "33aabb", "43aabb", "5361", "620061", "6100", "8200", "a200", "d100",
        // Counts that are cut short, not an integer, or wider than eight bytes.
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
    }
}

TEST(HostileArchive, TheArchiveFrameIsChecked) {
    const struct {
        const char* key;
        const char* entry;
        const char* reason;
    } cases[] = {
        {"$version", "", "top entries"},
        {"$version", "99999", "version"},
        {"$archiver", "'OddArchiver'", "unknown archiver"},
        {"$top", "{}", "no root"},
        {"$top", "{root=#0}", "absent"},
        {"$top", "{root=#99}", "beyond"},
        {"$objects", "[]", "table is empty"},
    };
    for (const auto& [key, entry, reason] : cases) {
        SCOPED_TRACE(key + " "s + reason);
        Forger forger;
        forger.frame[key] = entry;
        expectRefused(forger.read({"'root'"}), reason);
    }
    // Where the archive's frame should be: a dictionary whose keys are not text, and an array.
    expectRefused(unarchived(listOf("d10000")), "keys are not text");
    expectRefused(unarchived(listOf("a0")), "not a keyed archive");
}

/// `text` repeated, such as the elements of a list.
std::string repeated(std::size_t times, const std::string& text) {
    std::string all;
    for (std::size_t i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

TEST(HostileArchive, ObjectsThatCannotBeMadeReadAsAbsent) {
    // The object is in slot 2. Slot 1 holds the root, a beacon whose field "other" refers to it.
    const struct {
        std::string object;
        std::string expected;
        std::string reason;
    } cases[] = {
        // Its class is missing, the object itself, or unknown.
        {"{}", "", "cannot be read"},
        {"{$class=#2}", "", "cannot be read"},
        {"Evil:NSObject{}", "", "\"Evil\""},
        // It contains itself.
        {"Beacon{other=#1}", "Beacon()", "contains itself"},
        {"NSArray{NS.objects=[#2 #1]}", "()", "contains itself"},
        {"NSURL{NS.relative=@'a' NS.base=#2}", "", "contains itself"},
        // Malformed lists are refused; unreadable elements are left out.
        {"NSArray{NS.objects=[#0]}", "", "\"NSArray\""},
        {"NSArray{NS.objects=[@[] @'a']}", "(\"a\")", "no object can have"},
        {"NSDictionary{NS.keys=[] NS.objects=[@'a']}", "", "\"NSDictionary\""},
        {"NSDictionary{NS.keys=[@1] NS.objects=[#1]}", "", "\"NSDictionary\""},
        // The first of equal keys counts.
        {"NSDictionary{NS.keys=[@'a' @'a'] NS.objects=[@1 @2]}", "<a=i1>", ""},
        {"Beacon{height=1 height=2}", "Beacon(height=1)", ""},
        // It has more keys than a record may have.
        {"Beacon{" + repeated(256, "height=1 ") + "}", "", "cannot be read"},
    };
    for (const auto& [object, expected, reason] : cases) {
        SCOPED_TRACE(object);
        const auto result = Forger().read({"Beacon{other=#2 height=1}", object});
        EXPECT_EQ(shown(result.root),
                  "Beacon(height=1" + (expected.empty() ? "" : " other=" + expected) + ")")
            << result.fault;
        EXPECT_THAT(firstMisreading(result), HasSubstr(reason));
        EXPECT_EQ(result.misreadFields == 0, reason.empty());
    }
}

TEST(HostileArchive, DeepAndMultiplyingGraphsStayWithinBounds) {
    // A chain of lists in successive slots, each of which holds the next one `times` times.
    const auto chain = [](std::size_t length, std::size_t times) {
        std::vector<std::string> lists;
        while (lists.size() + 1 < length) {
            const auto next = "#" + std::to_string(lists.size() + 2) + " ";
            lists.push_back("NSArray{NS.objects=[" + repeated(times, next) + "]}");
        }
        lists.emplace_back("NSArray{NS.objects=[]}");
        return Forger().read(lists);
    };
    constexpr auto most = static_cast<std::size_t>(KeyedUnarchiver::depthLimit);
    const auto deep = chain(100'000, 1);
    EXPECT_EQ(shown(deep.root), std::string(most, '(') + std::string(most, ')'));
    EXPECT_THAT(firstMisreading(deep), HasSubstr("too deeply"));
    EXPECT_EQ(chain(64, 2).misreadFields, 0U);
}

TEST(HostileArchive, ContentsThatManyRecordsShareDoNotMultiply) {
    const auto thousandTimes = [](const std::string& object) {
        return Forger().read({"NSMutableArray{NS.objects=[&" + object + "*1000]}"});
    };
    // Each object is small, but reading it copies or walks through something long.
    const auto elements = "[@'a' " + repeated(20'000, "#1 ") + "]";
    for (const auto& object :
         {"Beacon{name=@'" + std::string(5'000'000, 'x') + "'}",
          "NSData{NS.data=<" + std::string(5'000'000, 'x') + ">}",
          "NSDictionary{NS.keys=" + elements + " NS.objects=" + elements + "}"}) {
        SCOPED_TRACE(object.substr(0, 20));
        EXPECT_THAT(thousandTimes(object).fault, HasSubstr("same contents"));
    }
    EXPECT_EQ(thousandTimes("Beacon{" + repeated(200'000, "height=1 ") + "}").misreadFields, 1000U);
}

TEST(HostileArchive, AnArchiveCutOrChangedAnywhereDoesNoHarm) {
    const auto whole = richArchive();
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
