// SPDX-License-Identifier: MIT
#include "platform/values/Value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace platform;
using namespace std::string_literals;

namespace {

constexpr auto least = std::numeric_limits<std::int64_t>::min();
constexpr auto most = std::numeric_limits<std::int64_t>::max();

TEST(Value, RealsAreTruncatedTowardsZeroAndSaturate) {
    constexpr auto most32 = std::numeric_limits<std::int32_t>::max();
    constexpr auto least32 = std::numeric_limits<std::int32_t>::min();
    constexpr auto mostUnsigned = std::numeric_limits<std::uint64_t>::max();
    const std::tuple<double, std::int64_t, std::int32_t, std::uint64_t> cases[] = {
        {2147483647.9, 2147483647, most32, 2147483647},
        {-2147483648.9, -2147483648, least32, 0},
        {std::nextafter(0x1p63, 0), 9223372036854774784, most32, 9223372036854774784U},
        {0x1p63, most, most32, std::uint64_t{1} << 63},
        {HUGE_VAL, most, most32, mostUnsigned},
        {-HUGE_VAL, least, least32, 0},
        {std::nan(""), 0, 0, 0},
    };
    for (const auto& [real, whole, whole32, positive] : cases) {
        SCOPED_TRACE(real);
        EXPECT_EQ(wholeNumber(real), whole);
        EXPECT_EQ(wholeNumber32(real), whole32);
        EXPECT_EQ(Number(real).integerValue(), whole);
        EXPECT_EQ(Number(real).unsignedValue(), positive);
        EXPECT_EQ(Number(real).boolValue(), !std::isnan(real));
    }
}

TEST(Value, TextReadsAsTheIntegerThatItBeginsWith) {
    const std::pair<Value, std::int64_t> cases[] = {
        {" \t-7 km"s, -7},
        {"+-5"s, 0},
        {"knots 5"s, 0},
        {"99999999999999999999"s, most},
        {"-99999999999999999999"s, least},
        {Number(true), 1},
        {Value(), 0},
    };
    for (const auto& [value, expected] : cases) {
        SCOPED_TRACE(&value - &cases[0].first);
        EXPECT_EQ(integerOf(value), expected);
    }
}

TEST(Value, PathsOfOddBytesSurviveAsFileAddresses) {
    std::string everyByte = "/";
    for (int byte = 1; byte < 256; ++byte) {
        everyByte += static_cast<char>(byte);
    }
    for (const auto& path :
         {"/"s, "/a b/c%20d?e#f"s, "/Ærø/../x/./"s, "//a//b"s, "/C:/x"s, everyByte}) {
        SCOPED_TRACE(path);
        EXPECT_EQ(URL::file(path).path(), path);
    }
    EXPECT_EQ(URL::file("/a b/ø").text, "file:///a%20b/%C3%B8");
    EXPECT_EQ(URL::file(""), URL{});
    EXPECT_EQ(URL::file("/a\0b"s), URL{});
}

} // namespace
