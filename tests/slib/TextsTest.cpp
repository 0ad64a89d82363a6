// SPDX-License-Identifier: MIT
#include "slib/SuportLib.h"
#include "slib/SupportLibCat.h"
#include "slib/slibUtility.h"
#include "tests/support/FakeHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

using namespace std::string_literals;
using testing::ElementsAre;

namespace {

TEST(Texts, CoordinatesInDegreesMinutesAndSeconds) {
    const struct {
        double degrees;
        std::string latitude, longitude;
    } rows[] = {
        {0.0, "0°0'0\"N", " 0°0'0\"E"},           {38.5, "38°30'0\"N", " 38°30'0\"E"},
        {-122.25, "122°15'0\"S", " 122°15'0\"W"}, {51.47777, "51°28'39\"N", " 51°28'39\"E"},
        {-1.0, "1°0'0\"S", " 1°0'0\"W"},          {-0.9999, "0°59'59\"N", " 0°59'59\"E"},
        {std::nan(""), "0°0'0\"N", " 0°0'0\"E"},  {HUGE_VAL, "596523°14'7\"N", " 596523°14'7\"E"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.degrees);
        EXPECT_EQ(SuportLib::latitudeString(row.degrees), row.latitude);
        EXPECT_EQ(SuportLib::longitudeString(row.degrees), row.longitude);
    }
    EXPECT_EQ(SuportLib::fullCoordinateString_and(38.5, -122.25), "38°30'0\"N 122°15'0\"W");
}

TEST(Texts, TruncationKeepsCharactersWhole) {
    const struct {
        std::string text;
        std::int64_t maximum;
        std::string plain, elided;
    } rows[] = {
        {"KJFK", 4, "KJFK", "KJFK"},
        {"KJFK", 3, "KJF", "KJF..."},
        {"KJFK", INT64_MIN, "", "..."},
        {"e\u0301X", 1, "e\u0301", "e\u0301..."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text + " " + std::to_string(row.maximum));
        const auto truncated = SupportLibCat::slibReturnTrucatedNSString_maxLen_withElip;
        EXPECT_EQ(truncated(row.text, row.maximum, false), row.plain);
        EXPECT_EQ(truncated(row.text, row.maximum, true), row.elided);
    }
}

TEST(Texts, HexDigitsToBytesAndBack) {
    const struct {
        std::string text;
        std::int64_t index;
        int byte;
    } rows[] = {
        {"7F", 0, 127}, {"ff", 0, -1},     {"zz", 0, 0},         {"12aB", 1, -85},
        {"123", 1, 48}, {"90G:", 0, -112}, {"90G:", 1, 0},       {"123", 2, 0},
        {"123", 3, 0},  {"12", -1, 0},     {"12", INT64_MAX, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text + " " + std::to_string(row.index));
        EXPECT_EQ(SupportLibCat::slibhexByteFromString_atIndex(row.text, row.index), row.byte);
    }
    const auto allBytes = SupportLibCat::slibextractAllHexBytes_count;
    EXPECT_THAT(allBytes("01abF"), ElementsAre(std::byte{1}, std::byte{0xAB}));

    const platform::Data bytes{std::byte{1}, std::byte{0xAB}, std::byte{0}, std::byte{0x0A}};
    const auto hexText = SupportLibCat::makeStringOfHexValues_ofLength;
    EXPECT_EQ(hexText(bytes, 0) + " " + hexText(bytes, 2), "1 1ab");
    EXPECT_EQ(hexText(bytes, INT64_MAX), "1ab0a");
}

TEST(Texts, AddressesAreEscapedAndChecked) {
    const struct {
        std::string text;
        std::optional<std::string> address;
    } rows[] = {
        {"a b\"#%<>[\\]^`{|}z", "a%20b%22%23%25%3C%3E%5B%5C%5D%5E%60%7B%7C%7Dz"},
        {"/a\0b\xFF"s, "/a%00b%EF%BF%BD"},
        {"x!$&'()*+,-./:;=?@_~", "x!$&'()*+,-./:;=?@_~"},
        {"http://a.example:port/", std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        const auto url = slibUtility::slibNSStringToNSURL(row.text);
        EXPECT_EQ(url ? std::optional(url->text) : std::nullopt, row.address);
    }
    EXPECT_FALSE(slibUtility::slibNSStringToNSURL(std::nullopt));
}

TEST(Texts, SettingsAsTheyAreAndInDigits) {
    using platform::Number;
    using platform::Value;
    support::FakeHost fake;
    const auto setting = [&](int type) {
        return slibUtility::slibUserDefaultForKey_ofType(fake.host, "key", type);
    };
    const std::pair<Value, Value> rows[] = {
        {std::string("text"), std::string("text")},
        {Number(-5), std::string("-5")},
        {Number(0.1), std::string("0.1")},
        {Number(0.1F), std::string("0.1")},
        {Number(1 / 3.0), std::string("0.3333333333333333")},
        {platform::UUID(), Value()},
        {Value(), Value()},
    };
    for (const auto& [value, text] : rows) {
        fake.userDefaults.setObject(value, "key");
        EXPECT_EQ(setting(1), value);
        EXPECT_EQ(setting(0), text);
        EXPECT_EQ(setting(2), Value());
    }
}

TEST(Texts, PathsInTheUsersFolders) {
    support::FakeHost fake;
    using namespace SupportLibCat;
    fake.searchPaths.known = {{{platform::SearchPaths::documents, 1}, {"/documents", "/other"}},
                              {{platform::SearchPaths::applicationSupport, 1}, {fake.folder / ""}}};
    EXPECT_EQ(fileNameInDocDirectory(fake.host, "a"), "/documents/a");
    EXPECT_EQ(fileNameInDocDirectory(fake.host, {}), "/documents");
    EXPECT_EQ(createOrReturnDocumentsFolder(fake.host, "new"), (fake.folder / "new").string());
    EXPECT_TRUE(std::filesystem::is_directory(fake.folder / "new"));
    EXPECT_EQ(createOrReturnAppSupportFolder(fake.host, "no/new"), fake.folder / "no/new");
    EXPECT_FALSE(std::filesystem::exists(fake.folder / "no"));
    fake.searchPaths.known.clear();
    EXPECT_FALSE(fileNameInDocDirectory(fake.host, "a"));
    EXPECT_FALSE(createOrReturnAppSupportFolder(fake.host, "new"));
}

} // namespace
