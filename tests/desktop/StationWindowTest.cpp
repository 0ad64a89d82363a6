// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"
#include "tests/support/Reports.h"
#include "tests/support/RunningProgram.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

namespace {

/// The main window as the program makes it, on a host without a catalogue.
class StationWindowTest : public ::testing::Test, protected support::RunningProgram {
protected:
    StationWindowTest() { start(); }

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
    SCStationWindowController& controller() { return *delegate().sw; }
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

TEST_F(StationWindowTest, SaysWhileMarksCannotBeStored) {
    openList();
    const auto inTheWay = fake.folder / "support/nosig/kzrfavorites.draft.kzrfv";
    const auto& fault = child<QLabel>("favoriteFault");
    child<QTableView>("table").selectRow(0);
    for (const bool isBlocked : {true, true, false}) {
        std::filesystem::remove_all(inTheWay);
        if (isBlocked) {
            std::filesystem::create_directories(inTheWay / "blocked");
        }
        QTest::keyClick(&child<QTableView>("table"), Qt::Key_D, Qt::ControlModifier);
        EXPECT_EQ(fault.isVisible(), isBlocked);
    }
}

TEST_F(StationWindowTest, NoTwoControlsShareAnAccessKey) {
    QStringList texts;
    for (const QAction* menu : stations().menuBar()->actions()) {
        texts.append(menu->text());
    }
    for (const auto* button : stations().findChildren<QAbstractButton*>()) {
        texts.append(button->text());
    }
    for (const auto* label : stations().findChildren<QLabel*>()) {
        if (label->buddy()) {
            texts.append(label->text());
        }
    }
    std::set<QString> letters;
    for (const QString& text : texts) {
        const QString letter = QKeySequence::mnemonic(text).toString();
        EXPECT_TRUE(letter.isEmpty() || letters.insert(letter).second) << text.toStdString();
    }
    EXPECT_GE(letters.size(), 15U);
}

TEST_F(StationWindowTest, TheKeyboardSearchesAndReturnsToTheTable) {
    openList();
    auto& table = child<QTableView>("table");
    auto& search = child<QLineEdit>("sf");
    const int all = table.model()->rowCount();
    QTest::keyClick(&stations(), Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(QApplication::focusWidget(), &search);
    QTest::keyClicks(&search, QStringLiteral("ksfo"));
    EXPECT_EQ(table.model()->rowCount(), 1);
    QTest::keyClick(&search, Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), &table);
    EXPECT_EQ(controller().nowSelection, 0);
    QTest::keyClick(&table, Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(search.selectedText(), QStringLiteral("ksfo"));
    QTest::keyClick(&search, Qt::Key_Escape);
    EXPECT_EQ(table.model()->rowCount(), all);
    QTest::keyClicks(&search, QStringLiteral("nothing there"));
    EXPECT_EQ(table.model()->rowCount(), 0);
    EXPECT_TRUE(table.isVisible());
    QTest::mouseClick(&child<QPushButton>("showAll"), Qt::LeftButton);
    EXPECT_EQ(table.model()->rowCount(), all);
    EXPECT_EQ(search.text(), QString());
}

TEST_F(StationWindowTest, ArrowsSelectAndFetchAndAShortcutMarksAFavorite) {
    openList();
    auto& table = child<QTableView>("table");
    table.setFocus();
    table.selectRow(0);
    const std::size_t requests = fake.urlSessions.openRequests();
    QTest::keyClick(&table, Qt::Key_Down);
    EXPECT_EQ(controller().nowSelection, 1);
    EXPECT_EQ(fake.urlSessions.openRequests(), requests + 2);
    const QModelIndex name = table.model()->index(1, 1);
    const auto spoken = [&] { return name.data(Qt::AccessibleTextRole).toString(); };
    EXPECT_FALSE(spoken().endsWith(QStringLiteral("favorite")));
    QTest::keyClick(&table, Qt::Key_D, Qt::ControlModifier);
    EXPECT_TRUE(controller().selectedStation->isFavorite());
    EXPECT_TRUE(spoken().endsWith(QStringLiteral("favorite")));
    // Validation would disable this entry now. Its shortcut must not choose it, although it was
    // still enabled a moment ago.
    table.clearSelection();
    QTest::keyClick(&table, Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(controller().allFavorites().size(), 1U);
}

TEST_F(StationWindowTest, ARowsMenuActsOnItsStationHoweverTheTableIsSorted) {
    openList();
    auto& table = child<QTableView>("table");
    QHeaderView& header = *table.horizontalHeader();
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                      {header.sectionViewportPosition(1) + 8, 5});
    const auto identifier = [&] {
        return desktop::shownText(controller().selectedStation->ICAO.value_or(""));
    };
    const auto choose = [&](const QString& text) {
        const QPoint place = table.visualRect(table.model()->index(2, 2)).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, table.mapToGlobal(place));
        QApplication::sendEvent(table.viewport(), &event);
        QWidget& menu = *QApplication::activePopupWidget();
        for (QAction* entry : menu.findChildren<QAction*>() + menu.actions()) {
            if (entry->text().remove(u'&') == text) {
                entry->trigger();
                menu.close();
                return;
            }
        }
        menu.close();
        ADD_FAILURE() << "no entry " << text.toStdString();
    };
    choose(QStringLiteral("Make Favorite"));
    EXPECT_EQ(identifier(), table.model()->index(2, 2).data().toString());
    ASSERT_EQ(controller().allFavorites().size(), 1U);
    EXPECT_EQ(controller().allFavorites().front(), controller().selectedStation);
    EXPECT_TRUE(table.model()
                    ->index(2, 1)
                    .data(Qt::AccessibleTextRole)
                    .toString()
                    .endsWith(QStringLiteral("favorite")));
    ASSERT_TRUE(
        fake.urlSessions.answer("=metars", support::metarReply(identifier().toStdString())));
    choose(QStringLiteral("Copy METAR"));
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
              support::metarRaw(identifier().toStdString()));
    choose(QStringLiteral("Remove Favorite"));
    EXPECT_TRUE(controller().allFavorites().empty());
    const auto near = controller().masterCollection()->stationsWithinDistanceFromStation_within(
        controller().selectedStation, 100);
    choose(QStringLiteral("Within 100 Miles"));
    EXPECT_EQ(table.model()->rowCount(), static_cast<int>(near.size()));
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

} // namespace
