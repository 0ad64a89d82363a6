// SPDX-License-Identifier: MIT
#include "platform/net/RequestPacer.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

using Rank = RequestPacer::Rank;

TEST(RequestPacer, LimitsAnyMinuteAndConcurrentRequests) {
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

TEST(RequestPacer, DeniesSupersededRequestsHalfOfTheMinuteAndOfTheConnections) {
    const RequestPacer::TimePoint start(std::chrono::hours(5));
    const auto after = [start](int seconds) { return start + std::chrono::seconds(seconds); };
    RequestPacer pacer(7, 4);
    EXPECT_TRUE(pacer.trySend(after(0), Rank::superseded));
    EXPECT_TRUE(pacer.trySend(after(1), Rank::current));
    // Half of the connections are taken; it does not matter by which requests.
    EXPECT_FALSE(pacer.trySend(after(1), Rank::superseded));
    EXPECT_EQ(pacer.nextChance(Rank::superseded), RequestPacer::TimePoint::max());
    EXPECT_LE(pacer.nextChance(Rank::current), after(1));
    EXPECT_TRUE(pacer.trySend(after(2), Rank::current));
    for (int i = 0; i < 3; ++i) {
        pacer.hasEnded();
    }
    // Half of the minute's requests are used until the first is a minute old.
    EXPECT_FALSE(pacer.trySend(after(3), Rank::superseded));
    EXPECT_EQ(pacer.nextChance(Rank::superseded), after(60));
    for (int i = 3; i < 7; ++i) {
        EXPECT_TRUE(pacer.trySend(after(i), Rank::current));
    }
    for (int i = 0; i < 4; ++i) {
        pacer.hasEnded();
    }
    EXPECT_EQ(pacer.nextChance(Rank::current), after(60));
    EXPECT_EQ(pacer.nextChance(Rank::superseded), after(64));
    EXPECT_FALSE(pacer.trySend(after(63), Rank::superseded));
    EXPECT_TRUE(pacer.trySend(after(64), Rank::superseded));
    // A limit of one is not halved, so that no request waits for ever.
    EXPECT_TRUE(RequestPacer(1, 1).trySend(after(0), Rank::superseded));
}

} // namespace
} // namespace platform
