// SPDX-License-Identifier: MIT
#include "desktop/host/MainQueue.h"
#include "desktop/host/RepeatingTimers.h"
#include "desktop/host/Settings.h"
#include "tests/support/FakeHost.h"

#include <QCoreApplication>
#include <QTest>
#include <gtest/gtest.h>

namespace {

TEST(MainQueue, DropsWorkWhoseTargetHasGone) {
    desktop::MainQueue queue;
    auto target = std::make_shared<int>();
    std::vector<int> ran;
    queue.perform(target, [&] { ran.push_back(1); });
    queue.perform(std::make_shared<int>(), [&] { ran.push_back(2); });
    queue.perform(target, [&] { target.reset(), ran.push_back(3); });
    queue.perform(target, [&] { ran.push_back(4); });
    EXPECT_TRUE(ran.empty()) << "work must wait for the event loop";
    QCoreApplication::sendPostedEvents(&queue);
    EXPECT_EQ(ran, (std::vector{1, 3}));
}

TEST(MainQueue, RunsNothingOnceClosed) {
    desktop::MainQueue queue;
    const auto target = std::make_shared<int>();
    int ran = 0;
    // Destroying this hands over more work, while the queue drops the work that holds it.
    auto last = std::shared_ptr<int>(new int, [&](const int* made) {
        queue.perform(target, [&] { ++ran; });
        delete made;
    });
    queue.perform(target, [&ran, kept = std::move(last)] { ++ran; });
    queue.close();
    queue.perform(target, [&] { ++ran; });
    QCoreApplication::sendPostedEvents(&queue);
    EXPECT_EQ(ran, 0);
}

TEST(Settings, OutliveTheRun) {
    const support::TemporaryFolder folder;
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope,
                       QString::fromStdString(folder.path().string()));
    support::FakeLog log;
    using platform::Number;
    const std::map<std::string, platform::Value> kept{
        {"displayfavweather", Number(std::int32_t{1})},
        {"curmaptype", Number(std::int64_t{4})},
        {"smallest", Number(std::numeric_limits<std::int64_t>::min())},
        {"dataserverhost", std::string("localhost:8080")},
        {"text", std::string("a, b; \"c\" = %41\\n\nö \U0001F326 ")},
        {"leading zero", std::string("007")},
        {"empty", std::string()},
        {"ключ/with.marks", std::string("@ByteArray(x)")},
    };
    {
        desktop::Settings settings(&log);
        for (const auto& [key, value] : kept) {
            settings.setObject(value, key);
        }
        settings.setObject(std::string("gone"), "removed");
        settings.setObject(platform::Value(), "removed");
        settings.setObject(Number(0.5), "curmaptype");
        // A setting is in the file at once, in case this run crashes.
        EXPECT_NE(folder.read("nosig/nosig.ini").find("curmaptype=4"), std::string::npos);
    }
    const desktop::Settings settings(&log);
    for (const auto& [key, value] : kept) {
        EXPECT_EQ(settings.objectForKey(key), value) << key;
    }
    EXPECT_EQ(settings.objectForKey("removed"), platform::Value());
    EXPECT_EQ(settings.objectForKey(""), platform::Value());
    EXPECT_TRUE(log.lines().empty());
}

TEST(RepeatingTimers, RepeatUntilDropped) {
    desktop::RepeatingTimers timers;
    int fired = 0;
    std::unique_ptr<platform::Timer> timer;
    timer = timers.scheduleRepeating(std::chrono::milliseconds(1), [&] {
        if (++fired == 3) {
            timer.reset();
        }
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return fired == 3; }));
}

} // namespace
