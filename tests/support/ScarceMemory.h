// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

/// For tests that limit or measure memory. A program that links this uses the operators `new` and
/// `delete` of ScarceMemory.cpp.
namespace support {

/// During its lifetime this thread's allocations fail from number `first` on, counted from 0.
class ScarceMemory {
public:
    explicit ScarceMemory(std::size_t first);
    ~ScarceMemory();
    ScarceMemory(const ScarceMemory&) = delete;
    ScarceMemory& operator=(const ScarceMemory&) = delete;

    [[nodiscard]] static bool hasRunOut();
};

/// Measures the most bytes that this thread has had allocated at once since its construction.
class PeakMemory {
public:
    PeakMemory();
    [[nodiscard]] static std::size_t bytes();
};

/// Calls `attempt` with too few allocations, one more each time, until it has enough. Calls `check`
/// with the result of each attempt that ran out, and returns how many did.
template <typename Attempt, typename Check>
std::size_t starve(Attempt attempt, Check check) {
    for (std::size_t allocations = 0;; ++allocations) {
        bool hasRunOut = false;
        const auto result = [&] {
            const ScarceMemory scarce(allocations);
            auto made = attempt();
            hasRunOut = ScarceMemory::hasRunOut();
            return made;
        }();
        if (!hasRunOut) {
            return allocations;
        }
        check(result);
    }
}

} // namespace support
