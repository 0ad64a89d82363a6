// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

/// What tests of little memory look at and turn. A program that links this has the operators `new`
/// and `delete` of ScarceMemory.cpp.
namespace support {

/// While it lives, this thread's allocations fail from the `first`-th on, counted from 0.
class ScarceMemory {
public:
    explicit ScarceMemory(std::size_t first);
    ~ScarceMemory();
    ScarceMemory(const ScarceMemory&) = delete;
    ScarceMemory& operator=(const ScarceMemory&) = delete;

    [[nodiscard]] static bool hasRunOut();
};

/// The most bytes that were allocated at once by this thread since it was made.
class PeakMemory {
public:
    PeakMemory();
    [[nodiscard]] static std::size_t bytes();
};

/// Calls `attempt` with less memory than it needs, with a little more each time, until it has
/// enough; `check` looks at what each of the starved ones left. Answers how many there were.
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
