// SPDX-License-Identifier: MIT
#include "slib/DataCompression.h"
#include "tests/fuzz/Fuzz.h"

void feed(std::span<const std::byte> input) {
    constexpr std::size_t limit = 1 << 20;
    const auto file = std::make_shared<const platform::Data>(input.begin(), input.end());
    (void)zlibInflate(file, limit);
    if (input.empty()) {
        return;
    }
    platform::Data inPieces;
    const bool isWhole = gzipInflate(input, limit, [&inPieces](std::span<const std::byte> piece) {
        inPieces.insert(inPieces.end(), piece.begin(), piece.end());
    });
    require(inPieces.size() <= limit, "nothing grows beyond the limit");
    const auto atOnce = gzipInflate(file, limit);
    require((atOnce != nullptr) == isWhole, "both ways agree whether a file is whole");
    require(!isWhole || *atOnce == inPieces, "both ways give the same");
}
