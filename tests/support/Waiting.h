// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace support {

/// How long tests wait for something that must happen.
inline constexpr std::chrono::seconds patience(60);

/// Waits for a condition that other threads bring about. Fails the test, naming `what`, if it does
/// not hold in time.
template <typename Condition>
void waitUntil(const char* what, Condition hasCome) {
    const auto end = std::chrono::steady_clock::now() + patience;
    bool isThere = hasCome();
    while (!isThere && std::chrono::steady_clock::now() < end) {
        std::this_thread::yield();
        isThere = hasCome();
    }
    EXPECT_TRUE(isThere) << what << " did not come in time";
}

} // namespace support
