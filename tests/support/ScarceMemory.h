// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <limits>

/// For tests that limit or measure memory. A program that links this uses the operators `new` and
/// `delete` of ScarceMemory.cpp.
namespace support {

/// What one thread allocates.
struct Allocations {
    static constexpr auto plenty = std::numeric_limits<std::size_t>::max();

    /// After so many, the next one fails.
    std::size_t left = plenty;
    bool hasRunOut = false;
    /// What is allocated now, and the most of it so far. Memory allocated here but freed by another
    /// thread stays counted; the tests hand over little.
    std::ptrdiff_t bytes = 0;
    std::ptrdiff_t mostBytes = 0;

    static thread_local Allocations ofThisThread;
};

/// Calls `attempt` with too few allocations, one more each time, until it has enough. Calls `check`
/// with the result of each attempt that ran out, and returns how many did.
template <typename Attempt, typename Check>
std::size_t starve(Attempt attempt, Check check) {
    struct Limit {
        ~Limit() { Allocations::ofThisThread.left = Allocations::plenty; }
    };
    for (std::size_t allocations = 0;; ++allocations) {
        const auto result = [&] {
            const Limit limit;
            Allocations::ofThisThread = {.left = allocations};
            return attempt();
        }();
        if (!Allocations::ofThisThread.hasRunOut) {
            return allocations;
        }
        check(result);
    }
}

} // namespace support
