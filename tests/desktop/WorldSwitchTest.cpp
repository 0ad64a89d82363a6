// SPDX-License-Identifier: MIT
#include "tests/desktop/AllWindows.h"
#include "tests/support/Gzip.h"

#include <QAction>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>

namespace {

class WorldSwitchTest : public AllWindows {
protected:
    static QAction& entry() {
        for (QAction* one : stations().menuBar()->actions().at(1)->menu()->actions()) {
            if (one->text() == QLatin1String("Weather of the &World")) {
                return *one;
            }
        }
        throw std::runtime_error("no entry");
    }
    /// The column with this heading, or -1.
    static int column(const char* heading) {
        const QAbstractItemModel& model = *child<QTableView>("table").model();
        for (int i = 0; i < model.columnCount(); ++i) {
            if (model.headerData(i, Qt::Horizontal).toString() == QLatin1String(heading)) {
                return i;
            }
        }
        return -1;
    }
    bool asksForTheWorld() {
        const auto asked = fake.urlSessions.addresses();
        return std::ranges::any_of(asked, [](const std::string& address) {
            return address.find("/data/cache/metars") != std::string::npos;
        });
    }
    /// Of those that wake the program every minute.
    std::ptrdiff_t timers() {
        return std::ranges::count(fake.timers.runningIntervals(), std::chrono::minutes(1));
    }
};

TEST_F(WorldSwitchTest, ShowsEveryStationsWeatherWhileItIsOnAndRemembersThat) {
    start();
    EXPECT_FALSE(asksForTheWorld());
    EXPECT_EQ(column("Category"), -1);
    EXPECT_TRUE(child<QLabel>("worldStatus").isHidden());
    EXPECT_EQ(timers(), 0);

    QTest::keyClick(&child<QTableView>("table"), Qt::Key_W,
                    Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(child<QPushButton>("worldWeather").isChecked());
    EXPECT_TRUE(asksForTheWorld());
    EXPECT_EQ(timers(), 1) << "reports grow old";
    EXPECT_TRUE(
        fake.urlSessions.answer("metars.cache", support::gzip(support::metarReply("KJFK"))));
    const auto category = [&] {
        const QAbstractItemModel& model = *child<QTableView>("table").model();
        return model.index(0, column("Category")).data().toString();
    };
    ASSERT_GE(column("Category"), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        fake.mainThread.run();
        return category() == QLatin1String("IFR");
    }));
    EXPECT_FALSE(child<QLabel>("worldStatus").isHidden());
    stop();

    start();
    EXPECT_TRUE(entry().isChecked());
    EXPECT_TRUE(child<QPushButton>("worldWeather").isChecked());
    EXPECT_TRUE(QTest::qWaitFor([&] {
        fake.mainThread.run();
        return category() == QLatin1String("IFR");
    })) << "what was kept shows again";
    child<QPushButton>("worldWeather").click();
    EXPECT_FALSE(entry().isChecked());
    EXPECT_EQ(column("Category"), -1);
    EXPECT_TRUE(child<QLabel>("worldStatus").isHidden());
    EXPECT_TRUE(QTest::qWaitFor([&] {
        fake.mainThread.run();
        return timers() == 0;
    }));
    stop();
}

} // namespace
