// SPDX-License-Identifier: MIT
#include "slib/NSCoder_SupportLib.h"
#include "slib/SupportLibCat.h"
#include "tests/support/Record.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>

using namespace NSCoder_SupportLib;
using namespace SupportLibCat;
using platform::KeyedArchiver;
using platform::KeyedUnarchiver;
using support::Record;

namespace {

void writeAndRead(const std::function<void(KeyedArchiver&)>& write,
                  const std::function<void(KeyedUnarchiver&)>& read) {
    const auto archive = KeyedArchiver::archivedData(std::make_shared<Record>("Record", write));
    platform::ClassTable classes;
    classes.add("Record", [&](KeyedUnarchiver& coder) {
        read(coder);
        return std::make_shared<Record>("Record");
    });
    EXPECT_EQ(KeyedUnarchiver::unarchive(archive.value(), classes).fault, "");
}

TEST(Coding, SmallIntegersComeBackInTheirLowBits) {
    writeAndRead(
        [](KeyedArchiver& coder) {
            encodeSInt16_value(coder, -2);
            encodeSInt32_value(coder, 70000);
            encodeSInt32_value(coder, -70000);
            encodeSInt16_value_forKey(coder, -300, "s");
            encodeUInt16_forKey(coder, 65535, "S");
            encodeSInt64_forKey(coder, INT64_MIN, "q");
            encodeUInt64_forKey(coder, UINT64_MAX, "Q");
            encodeChar_forKey(coder, '\x80', "c");
            encodeCGPoint_forKey(coder, {1, 2}, "point");
            coder.encodeObject(platform::Number(70000), "wide");
            coder.encodeObject(std::string("text"), "text");
        },
        [](KeyedUnarchiver& coder) {
            EXPECT_EQ(decodeSInt16(coder), -2);
            EXPECT_EQ(decodeSInt16(coder), 4464);
            EXPECT_EQ(decodeSInt32(coder), -70000);
            EXPECT_EQ(decodeSInt16_forKey(coder, "s"), -300);
            EXPECT_EQ(decodeUInt16ForKey(coder, "S"), 65535);
            EXPECT_EQ(decodeSInt64ForKey(coder, "q"), INT64_MIN);
            EXPECT_EQ(decodeUInt64ForKey(coder, "Q"), UINT64_MAX);
            EXPECT_THAT(coder.decodeBytes("c"), testing::ElementsAre(std::byte{0x80}));
            EXPECT_EQ(coder.decodeObject("point"), platform::Value());
            EXPECT_EQ(decodeUInt16ForKey(coder, "wide"), 4464);
            for (const char* key : {"missing", "text", "c"}) {
                SCOPED_TRACE(key);
                EXPECT_EQ(decodeSInt16_forKey(coder, key), 0);
                EXPECT_EQ(decodeUInt64ForKey(coder, key), 0U);
            }
        });
}

} // namespace
