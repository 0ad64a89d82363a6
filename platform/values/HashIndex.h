// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace platform {

/// 2^64 divided by the golden ratio: multiplied by it, even similar numbers differ in their high
/// bits.
inline constexpr std::uint64_t hashFactor = 0x9E3779B97F4A7C15;

/// The hash of an identifier or an address.
[[nodiscard]] constexpr std::uint32_t hashOf(std::uint64_t number) {
    return static_cast<std::uint32_t>((number * hashFactor) >> 32);
}

/// Finds positive numbers by what they stand for, which the caller hashes and compares. One flat
/// table, without an allocation per entry.
class HashIndex {
public:
    /// Returns the number that was inserted under `hash` and for which `same(number)` holds, or 0.
    template <typename Same>
    [[nodiscard]] std::uint32_t find(std::uint32_t hash, Same same) const {
        if (entries_.empty()) {
            return 0;
        }
        auto place = placeOf(hash);
        while (entries_[place].number != 0 &&
               !(entries_[place].hash == hash && same(entries_[place].number))) {
            place = next(place);
        }
        return entries_[place].number;
    }

    /// `find` must have returned 0 for it.
    void insert(std::uint32_t hash, std::uint32_t number) {
        if (entries_.size() <= 2 * used_) {
            grow();
        }
        put({hash, number});
        ++used_;
    }

private:
    struct Entry {
        std::uint32_t hash = 0;
        std::uint32_t number = 0;
    };

    [[nodiscard]] std::size_t placeOf(std::uint32_t hash) const {
        return hash & (entries_.size() - 1);
    }
    [[nodiscard]] std::size_t next(std::size_t place) const {
        return (place + 1) & (entries_.size() - 1);
    }
    void put(Entry entry) {
        auto place = placeOf(entry.hash);
        while (entries_[place].number != 0) {
            place = next(place);
        }
        entries_[place] = entry;
    }
    void grow() {
        // A power of two, so that a mask replaces a division.
        const auto old = std::exchange(
            entries_, std::vector<Entry>(entries_.empty() ? 64 : 2 * entries_.size()));
        for (const auto& entry : old) {
            if (entry.number != 0) {
                put(entry);
            }
        }
    }

    std::vector<Entry> entries_;
    std::size_t used_ = 0;
};

} // namespace platform
