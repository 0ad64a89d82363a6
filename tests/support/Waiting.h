// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace support {

/// How long tests wait for what must come.
inline constexpr std::chrono::seconds patience(60);

/// Waits for what other threads bring about; fails, naming it, where it does not come.
template <typename Condition>
void waitUntil(const char* what, Condition hasCome) {
    const auto end = std::chrono::steady_clock::now() + patience;
    bool isThere = hasCome();
    while (!isThere && std::chrono::steady_clock::now() < end) {
        std::this_thread::yield();
        isThere = hasCome();
    }
    EXPECT_TRUE(isThere) << what << " has not come";
}

} // namespace support
