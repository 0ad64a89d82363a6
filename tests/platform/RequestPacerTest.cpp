// SPDX-License-Identifier: MIT
#include "platform/net/RequestPacer.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

using Rank = RequestPacer::Rank;

TEST(RequestPacer, LimitsAnyMinuteAndConcurrentRequestsAndSupersededOnesToHalfOfBoth) {
    const RequestPacer::TimePoint fifthHour(std::chrono::hours(5));
    const auto after = [fifthHour](int count) { return fifthHour + std::chrono::seconds(count); };
    RequestPacer pacer(7, 4);
    EXPECT_TRUE(pacer.trySend(after(0), Rank::superseded));
    EXPECT_TRUE(pacer.trySend(after(1), Rank::current));
    // Half of the connections are taken; it does not matter by which requests.
    EXPECT_FALSE(pacer.trySend(after(1), Rank::superseded));
    EXPECT_EQ(pacer.nextChance(Rank::superseded), RequestPacer::TimePoint::max());
    EXPECT_LE(pacer.nextChance(Rank::current), after(1));
    EXPECT_TRUE(pacer.trySend(after(2), Rank::current));
    EXPECT_TRUE(pacer.trySend(after(3), Rank::current));
    // All of them are.
    EXPECT_FALSE(pacer.trySend(after(3), Rank::current));
    EXPECT_EQ(pacer.nextChance(Rank::current), RequestPacer::TimePoint::max());
    const auto endAll = [&] {
        for (int i = 0; i < 4; ++i) {
            pacer.hasEnded();
        }
    };
    endAll();
    // Half of the minute's requests are used until the second is a minute old.
    EXPECT_FALSE(pacer.trySend(after(4), Rank::superseded));
    EXPECT_EQ(pacer.nextChance(Rank::superseded), after(61));
    for (const int second : {4, 4, 20}) {
        EXPECT_TRUE(pacer.trySend(after(second), Rank::current));
    }
    EXPECT_FALSE(pacer.trySend(after(59), Rank::current));
    EXPECT_EQ(pacer.nextChance(Rank::current), after(60));
    EXPECT_TRUE(pacer.trySend(after(60), Rank::current));
    endAll();
    EXPECT_FALSE(pacer.trySend(after(60), Rank::current));
    EXPECT_EQ(pacer.nextChance(Rank::superseded), after(64));
    EXPECT_FALSE(pacer.trySend(after(63), Rank::superseded));
    EXPECT_TRUE(pacer.trySend(after(64), Rank::superseded));
    // A limit of one is not halved, so that no request waits for ever.
    EXPECT_TRUE(RequestPacer(1, 1).trySend(after(0), Rank::superseded));
}

} // namespace
} // namespace platform
