// SPDX-License-Identifier: MIT
#include "platform/host/NotificationCenter.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>
#include <vector>

namespace platform {
namespace {

TEST(NotificationCenter, ObserversMayPostObserveAndDropTokensThemselves) {
    NotificationCenter center;
    int calls = 0;
    NotificationCenter::Token own;
    NotificationCenter::Token later;
    own = center.addObserver("a", [&](const auto&) {
        ++calls;
        own = {};
        later = center.addObserver("a", [&](const auto&) { calls += 10; });
        center.post({"a", {}, nullptr});
    });
    center.post({"a", {}, nullptr});
    EXPECT_EQ(calls, 11);
}

TEST(NotificationCenter, DroppingATokenWaitsForACallOnAnotherThread) {
    NotificationCenter center;
    std::promise<void> entered;
    std::promise<void> mayLeave;
    std::atomic<bool> hasLeft = false;
    auto token = center.addObserver("a", [&](const auto&) {
        entered.set_value();
        mayLeave.get_future().wait();
        hasLeft = true;
    });
    const std::jthread poster([&] { center.post({"a", {}, nullptr}); });
    entered.get_future().wait();
    const std::jthread releaser([&] { mayLeave.set_value(); });
    token = {};
    EXPECT_TRUE(hasLeft);
}

TEST(NotificationCenter, SurvivesThreadsThatPostObserveAndDropAtOnce) {
    NotificationCenter::Token outlives;
    {
        NotificationCenter center;
        outlives = center.addObserver("a", [](const auto&) {});
        std::vector<std::jthread> threads;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([&center] {
                for (int i = 0; i < 300; ++i) {
                    bool isAlive = true;
                    const auto token =
                        center.addObserver("a", [&isAlive](const auto&) { EXPECT_TRUE(isAlive); });
                    center.post({"a", {}, nullptr});
                }
            });
        }
        threads.clear();
    }
}

} // namespace
} // namespace platform
