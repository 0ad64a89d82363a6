// SPDX-License-Identifier: MIT
#include "platform/RequestPacer.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

using Rank = RequestPacer::Rank;

TEST(RequestPacer, CountsAnyMinuteAndWhatRunsAtOnce) {
    const RequestPacer::TimePoint start(std::chrono::hours(5));
    const auto after = [start](int seconds) { return start + std::chrono::seconds(seconds); };
    RequestPacer pacer(3, 2);
    EXPECT_TRUE(pacer.trySend(after(0), Rank::current));
    EXPECT_TRUE(pacer.trySend(after(20), Rank::current));
    EXPECT_FALSE(pacer.trySend(after(20), Rank::current));
    EXPECT_EQ(pacer.nextChance(Rank::current), RequestPacer::TimePoint::max());
    pacer.hasEnded();
    EXPECT_LE(pacer.nextChance(Rank::current), after(20));
    EXPECT_TRUE(pacer.trySend(after(40), Rank::current));
    pacer.hasEnded();
    pacer.hasEnded();
    EXPECT_FALSE(pacer.trySend(after(59), Rank::current));
    EXPECT_EQ(pacer.nextChance(Rank::current), after(60));
    EXPECT_TRUE(pacer.trySend(after(60), Rank::current));
    EXPECT_FALSE(pacer.trySend(after(79), Rank::current));
    EXPECT_TRUE(pacer.trySend(after(80), Rank::current));
}

} // namespace
} // namespace platform
