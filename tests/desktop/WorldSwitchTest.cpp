// SPDX-License-Identifier: MIT
#include "desktop/table/StationTableModel.h"
#include "tests/desktop/AllWindows.h"
#include "tests/support/Gzip.h"

namespace {

class WorldSwitchTest : public AllWindows {
protected:
    static bool isOn() {
        const bool isChecked = entry({"Stations", "Weather of the World"}).isChecked();
        EXPECT_EQ(child<QPushButton>("worldWeather").isChecked(), isChecked);
        return isChecked;
    }
    /// The flight category of the first station; "no column" if none is shown.
    static std::string category() {
        const int column = desktop::StationTableModel::columnOf("category");
        const QAbstractItemModel& model = *table().model();
        return column < model.columnCount() ? model.index(0, column).data().toString().toStdString()
                                            : "no column";
    }
    void awaitCategory() {
        await("the category", [] { return category() == "IFR"; });
    }
    /// Of those that wake the program every minute.
    std::ptrdiff_t timers() {
        return std::ranges::count(fake.timers.runningIntervals(), std::chrono::minutes(1));
    }
    void expectOff() {
        EXPECT_FALSE(isOn());
        EXPECT_EQ(category(), "no column");
        EXPECT_TRUE(child<QLabel>("worldStatus").isHidden());
        await("the end of the timers", [this] { return timers() == 0; });
    }
};

TEST_F(WorldSwitchTest, ShowsEveryStationsWeatherWhileItIsOnAndRemembersThat) {
    start();
    EXPECT_FALSE(fake.urlSessions.answer("metars.cache", {})) << "nobody wants it yet";
    expectOff();
    QTest::keyClick(&table(), Qt::Key_W, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(isOn());
    EXPECT_EQ(timers(), 1) << "reports grow old";
    EXPECT_TRUE(
        fake.urlSessions.answer("metars.cache", support::gzip(support::metarReply("KJFK"))));
    EXPECT_NE(category(), "no column");
    awaitCategory();
    EXPECT_FALSE(child<QLabel>("worldStatus").isHidden());
    stop();
    // What was kept shows again.
    start();
    EXPECT_TRUE(isOn());
    awaitCategory();
    click("worldWeather");
    expectOff();
    stop();
}

} // namespace
