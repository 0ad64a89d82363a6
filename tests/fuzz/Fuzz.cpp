// SPDX-License-Identifier: MIT
#include "tests/fuzz/Fuzz.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "It does not hold that %s.\n", what);
        std::abort();
    }
}

std::string_view textOf(std::span<const std::byte> input) {
    return {reinterpret_cast<const char*>(input.data()), input.size()};
}

/// The function that libFuzzer calls for every input (https://llvm.org/docs/LibFuzzer.html).
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    feed(std::as_bytes(std::span(data, size)));
    return 0;
}
