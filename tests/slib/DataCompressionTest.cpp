// SPDX-License-Identifier: MIT
#include "slib/DataCompression.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using Block = std::shared_ptr<const platform::Data>;

Block blockOf(platform::Data bytes) {
    return std::make_shared<const platform::Data>(std::move(bytes));
}

platform::Data noise(std::size_t length) {
    std::mt19937 random(7);
    platform::Data bytes(length);
    for (std::byte& byte : bytes) {
        byte = std::byte(random() & 0xFF);
    }
    return bytes;
}

TEST(DataCompression, InflatesWhatWasDeflated) {
    for (const std::size_t length : {1U, 100U, 16384U, 200000U}) {
        SCOPED_TRACE(length);
        const Block even = blockOf(platform::Data(length, std::byte{'x'}));
        for (const Block& block : {blockOf(noise(length)), even}) {
            const Block deflated = zlibDeflate(block);
            ASSERT_TRUE(deflated);
            EXPECT_EQ(deflated->front(), std::byte{0x78}); // RFC 1950: deflate, 32 KiB window
            EXPECT_EQ(*zlibInflate(deflated), *block);
        }
        EXPECT_LT(zlibDeflate(even)->size(), 16 + length / 100);
    }
    for (const Block& nothing : {Block(), blockOf({})}) {
        EXPECT_EQ(zlibDeflate(nothing), nothing);
        EXPECT_EQ(zlibInflate(nothing), nothing);
    }
}

TEST(DataCompression, BrokenStreamsGiveNothing) {
    const platform::Data whole = *zlibDeflate(blockOf(noise(300)));
    for (std::size_t length = 1; length < whole.size(); ++length) {
        SCOPED_TRACE(length);
        EXPECT_FALSE(zlibInflate(blockOf({whole.begin(), whole.begin() + std::ptrdiff_t(length)})));
    }
    platform::Data corrupt = whole;
    corrupt[100] ^= std::byte{1};
    EXPECT_FALSE(zlibInflate(blockOf(corrupt)));
}

TEST(DataCompression, InflatesUpToTwoGibibytesButNoFurther) {
    static_assert(zlibInflateLimit == std::size_t{1} << 31);
    const std::size_t length = (std::size_t{256} << 20) + 1;
    const Block deflated = zlibDeflate(blockOf(platform::Data(length)));
    ASSERT_LT(deflated->size(), length / 1000);
    const Block inflated = zlibInflate(deflated, length);
    ASSERT_TRUE(inflated);
    EXPECT_EQ(inflated->size(), length);
    EXPECT_FALSE(zlibInflate(deflated, length - 1));
}

} // namespace
