// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/NotificationCenter.h"
#include "tests/support/WeatherServer.h"

/// Records what grabbers post, in the form "updateMetar: KJFK 010950Z".
struct Posts {
    explicit Posts(platform::NotificationCenter& center) {
        for (const char* name :
             {"updateMetarString", "sealMetarString", "updateTafString", "sealTafString"}) {
            tokens.push_back(center.addObserver(name, [this](const platform::Notification& one) {
                const std::scoped_lock lock(mutex);
                texts.push_back(one.name.substr(0, one.name.size() - 6) + ": " +
                                std::get<std::string>(one.object));
                threads.insert(std::this_thread::get_id());
                changed.notify_all();
            }));
        }
    }
    /// Waits for `count` posts and returns all so far. Fails the test if too few come.
    std::vector<std::string> waitFor(std::size_t count) {
        std::unique_lock lock(mutex);
        EXPECT_TRUE(
            changed.wait_for(lock, support::patience, [&] { return texts.size() >= count; }))
            << texts.size() << " posts instead of " << count;
        return texts;
    }

    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::string> texts;
    std::set<std::thread::id> threads;
    std::vector<platform::NotificationCenter::Token> tokens;
};
