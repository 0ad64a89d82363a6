// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"
#include "desktop/SCStationWindow.h"
#include "tests/support/FakeHost.h"

#include <QAccessible>
#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <gtest/gtest.h>

#include <set>

namespace {

/// The window as the program makes it, on a host without any catalogue.
class StationWindowTest : public ::testing::Test {
protected:
    StationWindowTest() {
        controller->windowDidLoad();
        window.present();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    template <typename T>
    T& child(const char* name) {
        auto* found = window.findChild<T*>(QString::fromUtf8(name));
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }
    void openList() {
        fake.panels.answers.emplace_back(
            platform::URL::file(NOSIG_SOURCE_DIR "/resources/catalogue/stations.txt"));
        QTest::mouseClick(&child<QPushButton>("parserIt"), Qt::LeftButton);
        EXPECT_FALSE(child<QPushButton>("parserIt").isEnabled());
        ASSERT_TRUE(QTest::qWaitFor(
            [this] {
                fake.mainThread.run();
                return child<QPushButton>("parserIt").isEnabled();
            },
            60'000));
    }
    /// The names of the controls that the Tab key goes through, each once.
    std::set<QString> tabbedThrough() {
        std::set<QString> names;
        window.setFocus();
        for (int press = 0; press < 20; ++press) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            names.insert(QApplication::focusWidget()->objectName());
        }
        return names;
    }

    support::FakeHost fake;
    std::shared_ptr<SCStationWindowController> controller =
        SCStationWindowController::initWithWindowNibName(fake.host, "SCStationWindowController");
    desktop::SCStationWindow window{*controller};
};

TEST_F(StationWindowTest, ShowsAHintUntilThereAreStations) {
    EXPECT_TRUE(child<QLabel>("emptyHint").isVisible());
    EXPECT_FALSE(child<QTableView>("table").isVisible());
    EXPECT_FALSE(child<QPushButton>("saver").isEnabled());
    openList();
    EXPECT_FALSE(child<QLabel>("emptyHint").isVisible());
    EXPECT_TRUE(child<QTableView>("table").isVisible());
    EXPECT_TRUE(child<QPushButton>("saver").isEnabled());
    const int rows = child<QTableView>("table").model()->rowCount();
    EXPECT_GT(rows, 1000);
    EXPECT_EQ(child<QLabel>("words").text(), QStringLiteral("%1 stations").arg(rows));
}

TEST_F(StationWindowTest, SavesWhereTheUserSays) {
    openList();
    fake.panels.answers.emplace_back(platform::URL::file((fake.folder / "mine.txt").string()));
    QTest::keyClick(&window, Qt::Key_S, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return fake.panels.timesAsked == 2; }));
    EXPECT_TRUE(std::filesystem::exists(fake.folder / "mine.STNPKG"));
}

TEST_F(StationWindowTest, ShowsEveryStationInFull) {
    openList();
    const auto& table = child<QTableView>("table");
    for (int column = 0; column < table.model()->columnCount(); ++column) {
        SCOPED_TRACE(column);
        for (int row = 0; row < table.model()->rowCount(); row += 7) {
            const QModelIndex index = table.model()->index(row, column);
            ASSERT_GE(table.columnWidth(column), table.sizeHintForIndex(index).width()) << row;
        }
    }
}

TEST_F(StationWindowTest, EveryControlHasANameAndIsReachedByKeyboard) {
    openList();
    const std::set<QString> reached = tabbedThrough();
    EXPECT_EQ(reached.size(), 3U);
    for (QWidget* control : window.findChildren<QWidget*>()) {
        if ((control->focusPolicy() & Qt::TabFocus) == 0 || !control->isVisible()) {
            continue;
        }
        SCOPED_TRACE(control->objectName().toStdString());
        EXPECT_TRUE(reached.contains(control->objectName()));
        QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(control);
        ASSERT_NE(spoken, nullptr);
        EXPECT_FALSE(spoken->text(QAccessible::Name).isEmpty());
        control->setFocus();
        const QImage focused = control->grab().toImage();
        control->clearFocus();
        EXPECT_NE(control->grab().toImage(), focused) << "the focus does not show";
    }
}

TEST_F(StationWindowTest, EveryColumnExplainsItself) {
    const QAbstractItemModel& model = *child<QTableView>("table").model();
    std::set<QString> tips;
    for (int column = 0; column < model.columnCount(); ++column) {
        SCOPED_TRACE(column);
        const auto text = [&](int role) {
            return model.headerData(column, Qt::Horizontal, role).toString();
        };
        EXPECT_FALSE(text(Qt::DisplayRole).isEmpty());
        EXPECT_TRUE(text(Qt::ToolTipRole).startsWith(text(Qt::AccessibleTextRole)));
        tips.insert(text(Qt::ToolTipRole));
    }
    EXPECT_EQ(tips.size(), 16U);
}

TEST(StationWindow, LetsGoOfTheOutletsWhenItDies) {
    support::FakeHost fake;
    const auto controller = SCStationWindowController::initWithWindowNibName(fake.host, "");
    {
        const desktop::SCStationWindow window(*controller);
        controller->windowDidLoad();
        EXPECT_NE(controller->outlets.table, nullptr);
    }
    controller->setWordsStringTHing(2);
    controller->quitting();
    EXPECT_EQ(controller->outlets.table, nullptr);
}

} // namespace
