// SPDX-License-Identifier: MIT
#include "platform/RequestPacer.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(RequestPacer, CountsAnyMinuteAndWhatRunsAtOnce) {
    const RequestPacer::TimePoint start(std::chrono::hours(5));
    const auto after = [start](int seconds) { return start + std::chrono::seconds(seconds); };
    RequestPacer pacer(3, 2);
    EXPECT_TRUE(pacer.trySend(after(0)));
    EXPECT_TRUE(pacer.trySend(after(20)));
    EXPECT_FALSE(pacer.trySend(after(20)));
    EXPECT_EQ(pacer.nextChance(), RequestPacer::TimePoint::max());
    pacer.hasEnded();
    EXPECT_LE(pacer.nextChance(), after(20));
    EXPECT_TRUE(pacer.trySend(after(40)));
    pacer.hasEnded();
    pacer.hasEnded();
    EXPECT_FALSE(pacer.trySend(after(59)));
    EXPECT_EQ(pacer.nextChance(), after(60));
    EXPECT_TRUE(pacer.trySend(after(60)));
    EXPECT_FALSE(pacer.trySend(after(79)));
    EXPECT_TRUE(pacer.trySend(after(80)));
}

} // namespace
} // namespace platform
