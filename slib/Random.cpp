// SPDX-License-Identifier: MIT
#include "slib/Random.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace slib {

std::mt19937_64& randomGenerator() {
    thread_local std::mt19937_64 generator = [] {
        std::random_device system;
        std::array<std::uint32_t, 8> words{};
        for (auto& word : words) {
            word = system();
        }
        std::seed_seq seed(words.begin(), words.end());
        return std::mt19937_64(seed);
    }();
    return generator;
}

platform::UUID randomUUID() {
    const std::array<std::uint64_t, 2> bits{randomGenerator()(), randomGenerator()()};
    platform::UUID uuid;
    std::memcpy(uuid.bytes.data(), bits.data(), uuid.bytes.size());
    constexpr std::byte version{0x40};
    constexpr std::byte variant{0x80};
    uuid.bytes[6] = version | (uuid.bytes[6] & std::byte{0x0F});
    uuid.bytes[8] = variant | (uuid.bytes[8] & std::byte{0x3F});
    return uuid;
}

} // namespace slib
