// SPDX-License-Identifier: MIT
#include "tests/support/Reports.h"
#include "tests/support/RunningProgram.h"

#include <QHeaderView>
#include <QToolButton>

#include <set>

namespace {

/// The main window as the program makes it, on a host without a catalogue.
class StationWindowTest : public ::testing::Test, protected support::RunningProgram {
protected:
    StationWindowTest() { start(); }

    void openOurList() { openList(NOSIG_SOURCE_DIR "/resources/catalogue/stations.txt"); }
    static void markFavorite() { QTest::keyClick(&table(), Qt::Key_D, Qt::ControlModifier); }
    static bool isSpokenAsFavorite(int row) {
        const QModelIndex name = table().model()->index(row, 1);
        return name.data(Qt::AccessibleTextRole).toString().endsWith("favorite");
    }
    SCStationWindowController& controller() { return *delegate().sw; }
};

TEST_F(StationWindowTest, ShowsAHintUntilThereAreStations) {
    const auto expectStations = [](bool areThere) {
        EXPECT_NE(child<QLabel>("emptyHint").isVisible(), areThere);
        EXPECT_EQ(table().isVisible(), areThere);
        EXPECT_EQ(child<QPushButton>("saver").isEnabled(), areThere);
    };
    expectStations(false);
    openOurList();
    expectStations(true);
    const int rows = table().model()->rowCount();
    EXPECT_GT(rows, 1000);
    EXPECT_EQ(child<QLabel>("words").text(), QString::number(rows) + " stations");
}

TEST_F(StationWindowTest, SaysWhileMarksCannotBeStored) {
    openOurList();
    const auto inTheWay = fake.folder / "support/nosig/kzrfavorites.draft.kzrfv";
    table().selectRow(0);
    for (const bool isBlocked : {true, true, false}) {
        std::filesystem::remove_all(inTheWay);
        if (isBlocked) {
            std::filesystem::create_directories(inTheWay / "blocked");
        }
        markFavorite();
        EXPECT_EQ(child<QLabel>("favoriteFault").isVisible(), isBlocked);
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
        texts.append(label->buddy() ? label->text() : "");
    }
    std::set<QString> letters;
    for (const QString& text : texts) {
        const QString letter = QKeySequence::mnemonic(text).toString();
        EXPECT_TRUE(letter.isEmpty() || letters.insert(letter).second) << text.toStdString();
    }
    EXPECT_GE(letters.size(), 15U);
}

TEST_F(StationWindowTest, TheKeyboardSearchesAndReturnsToTheTable) {
    openOurList();
    const int all = table().model()->rowCount();
    QTest::keyClick(&stations(), Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(QApplication::focusWidget(), &search());
    QTest::keyClicks(&search(), "ksfo");
    EXPECT_EQ(table().model()->rowCount(), 1);
    QTest::keyClick(&search(), Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), &table());
    EXPECT_EQ(controller().nowSelection, 0);
    QTest::keyClick(&table(), Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(search().selectedText(), "ksfo");
    QTest::keyClicks(&search(), "nothing there");
    const auto& clear = *search().findChild<QToolButton*>();
    EXPECT_TRUE(QTest::qWaitFor([&] { return clear.isVisible(); }));
    EXPECT_EQ(table().model()->rowCount(), 0);
    EXPECT_TRUE(table().isVisible());
    click("showAll");
    EXPECT_EQ(table().model()->rowCount(), all);
    EXPECT_EQ(search().text(), "");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !clear.isVisible(); }));
}

TEST_F(StationWindowTest, ArrowsSelectAndFetchAndAShortcutMarksAFavorite) {
    openOurList();
    table().setFocus();
    table().selectRow(0);
    const std::size_t requests = fake.urlSessions.openRequests();
    QTest::keyClick(&table(), Qt::Key_Down);
    EXPECT_EQ(controller().nowSelection, 1);
    EXPECT_EQ(fake.urlSessions.openRequests(), requests + 2);
    markFavorite();
    // Validation would disable this entry now. Its shortcut must not choose it, although it was
    // still enabled a moment ago.
    table().clearSelection();
    markFavorite();
    EXPECT_EQ(controller().allFavorites().size(), 1U);
}

TEST_F(StationWindowTest, ARowsMenuActsOnItsStationHoweverTheTableIsSorted) {
    openOurList();
    QHeaderView& header = *table().horizontalHeader();
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                      {header.sectionViewportPosition(1) + 8, 5});
    const QModelIndex place = table().model()->index(2, 2);
    const auto choose = [&](const QStringList& titles) {
        QMenu& menu = support::openMenu(*table().viewport(), table().visualRect(place).center());
        support::entryOf(menu, titles).trigger();
        menu.close();
    };
    EXPECT_FALSE(isSpokenAsFavorite(2));
    choose({"Make Favorite"});
    EXPECT_EQ(selected(), place.data().toString().toStdString());
    ASSERT_EQ(controller().allFavorites().size(), 1U);
    EXPECT_EQ(controller().allFavorites().front(), controller().selectedStation);
    EXPECT_TRUE(isSpokenAsFavorite(2));
    ASSERT_TRUE(fake.urlSessions.answer("=metars", support::metarReply(selected())));
    choose({"Copy METAR"});
    EXPECT_EQ(copied(), support::metarRaw(selected()));
    choose({"Remove Favorite"});
    EXPECT_TRUE(controller().allFavorites().empty());
    const auto near = controller().masterCollection()->stationsWithinDistanceFromStation_within(
        controller().selectedStation, 100);
    choose({"Near This", "Within 100 Miles"});
    EXPECT_EQ(table().model()->rowCount(), static_cast<int>(near.size()));
}

TEST_F(StationWindowTest, EveryColumnExplainsItself) {
    const QAbstractItemModel& model = *table().model();
    std::set<QString> tips;
    for (int column = 0; column < model.columnCount(); ++column) {
        const auto tip = model.headerData(column, Qt::Horizontal, Qt::ToolTipRole).toString();
        EXPECT_TRUE(tip.contains(u'\n') && tips.insert(tip).second) << tip.toStdString();
    }
}

} // namespace
