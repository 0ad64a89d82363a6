// SPDX-License-Identifier: MIT
#include "desktop/host/EndSignals.h"
#include "desktop/host/Folders.h"
#include "desktop/host/MainQueue.h"
#include "desktop/host/RepeatingTimers.h"
#include "desktop/host/Settings.h"
#include "tests/support/FakeHost.h"

#include <QCoreApplication>
#include <QTest>
#include <gtest/gtest.h>

#include <csignal>
#include <thread>

namespace {

TEST(MainQueue, RunsWorkOfEveryThreadInItsOrderOnTheMainThread) {
    desktop::MainQueue queue;
    const auto target = std::make_shared<int>();
    constexpr int pieces = 500;
    std::array<std::vector<int>, 4> done;
    {
        std::vector<std::jthread> threads;
        for (std::vector<int>& mine : done) {
            threads.emplace_back([&queue, &mine, target] {
                for (int i = 0; i < pieces; ++i) {
                    queue.perform(target, [&mine, i, maker = std::this_thread::get_id()] {
                        EXPECT_NE(std::this_thread::get_id(), maker);
                        mine.push_back(i);
                    });
                }
            });
        }
    }
    QCoreApplication::sendPostedEvents(&queue);
    for (const std::vector<int>& mine : done) {
        ASSERT_EQ(mine.size(), pieces);
        EXPECT_TRUE(std::ranges::is_sorted(mine));
    }
}

TEST(MainQueue, DropsWorkWhoseTargetHasGone) {
    desktop::MainQueue queue;
    auto target = std::make_shared<int>();
    std::vector<int> ran;
    queue.perform(target, [&] { ran.push_back(1); });
    queue.perform(std::make_shared<int>(), [&] { ran.push_back(2); });
    queue.perform(target, [&] { target.reset(), ran.push_back(3); });
    queue.perform(target, [&] { ran.push_back(4); });
    EXPECT_TRUE(ran.empty()) << "work waits for the event loop";
    QCoreApplication::sendPostedEvents(&queue);
    EXPECT_EQ(ran, (std::vector{1, 3}));
}

TEST(MainQueue, RunsNothingOnceClosed) {
    desktop::MainQueue queue;
    const auto target = std::make_shared<int>();
    int ran = 0;
    // Handing over more work while it is dropped.
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

class SettingsTest : public ::testing::Test {
protected:
    SettingsTest() { useFolder(folder.path()); }

    static void useFolder(const std::filesystem::path& path) {
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope,
                           QString::fromStdString(path.string()));
    }

    support::TemporaryFolder folder;
    support::FakeLog log;
};

TEST_F(SettingsTest, OutliveTheRun) {
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
        // Even where this run does not end well.
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

TEST_F(SettingsTest, SayWhenTheyCannotBeWritten) {
    useFolder(folder.write("file", "in the way"));
    desktop::Settings settings(&log);
    settings.setObject(platform::Number(std::int64_t{2}), "curmaptype");
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST(Folders, ExistBeforeAnyoneAsks) {
    const support::TemporaryFolder folder;
    const std::string data = (folder / "deep" / "data").string();
    const QByteArray before = qgetenv("XDG_DATA_HOME");
    support::FakeLog log;
    using platform::SearchPaths;

    qputenv("XDG_DATA_HOME", QByteArray::fromStdString(data));
    const desktop::Folders folders(log);
    EXPECT_EQ(folders.paths(SearchPaths::applicationSupport, SearchPaths::userDomain),
              std::vector{data});
    EXPECT_TRUE(std::filesystem::is_directory(data));
    EXPECT_EQ(folders.paths(SearchPaths::documents, SearchPaths::userDomain).size(), 1U);
    EXPECT_TRUE(folders.paths(SearchPaths::applicationSupport, 2).empty());
    EXPECT_TRUE(folders.paths(5, SearchPaths::userDomain).empty());
    EXPECT_TRUE(log.lines().empty());

    folder.write("file", "in the way");
    qputenv("XDG_DATA_HOME", QByteArray::fromStdString((folder / "file" / "data").string()));
    const desktop::Folders failed(log);
    EXPECT_EQ(log.lines().size(), 1U);
    qputenv("XDG_DATA_HOME", before);
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
    int ticks = 0;
    const auto other = timers.scheduleRepeating(std::chrono::milliseconds(1), [&] { ++ticks; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return ticks > 5; }));
    EXPECT_EQ(fired, 3);
}

// How they end the program is seen from outside it.
TEST(EndSignals, LeaveAnIgnoredHangUpAloneAndGiveTheOthersBack) {
    struct sigaction now {};
    const auto before = std::signal(SIGHUP, SIG_IGN);
    {
        const desktop::EndSignals endSignals([] {});
        ::sigaction(SIGHUP, nullptr, &now);
        EXPECT_EQ(now.sa_handler, SIG_IGN);
    }
    ::sigaction(SIGTERM, nullptr, &now);
    EXPECT_EQ(now.sa_handler, SIG_DFL);
    std::signal(SIGHUP, before);
}

} // namespace
