// SPDX-License-Identifier: MIT
#include "slib/DataCompression.h"

#include <gtest/gtest.h>

#include <random>
#include <span>
#include <string_view>

namespace {

using namespace std::string_view_literals;
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

TEST(DataCompression, InflatesGzipFilesThatAreWholeAndWithinTheLimit) {
    const std::string_view file =
        "\x1f\x8b\x08\x00\x00\x00\x00\x00\x02\x03\xf3\x0e\x76\xf3\x57\xf0\xc6"
        "\x24\x00\x71\x3d\x37\xbe\x18\x00\x00\x00"sv;
    const auto blockOfText = [](std::string_view text) {
        const auto bytes = std::as_bytes(std::span(text));
        return blockOf({bytes.begin(), bytes.end()});
    };
    const Block text = blockOfText("KSFO KSFO KSFO KSFO KSFO");
    ASSERT_TRUE(gzipInflate(blockOfText(file)));
    EXPECT_EQ(*gzipInflate(blockOfText(file), text->size()), *text);
    EXPECT_FALSE(gzipInflate(blockOfText(file), text->size() - 1));
    for (std::size_t length = 1; length < file.size(); ++length) {
        EXPECT_FALSE(gzipInflate(blockOfText(file.substr(0, length)))) << length;
    }
    for (const std::size_t limit : {text->size(), text->size() - 1}) {
        platform::Data pieces;
        const bool isWhole = gzipInflate(*blockOfText(file), limit, [&](const auto& piece) {
            pieces.insert(pieces.end(), piece.begin(), piece.end());
        });
        EXPECT_EQ(isWhole, limit == text->size());
        EXPECT_EQ(pieces, isWhole ? *text : platform::Data());
    }
    EXPECT_FALSE(gzipInflate(zlibDeflate(text)));
    EXPECT_FALSE(zlibInflate(blockOfText(file)));
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
