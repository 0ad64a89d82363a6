// SPDX-License-Identifier: MIT
#include "tests/support/RunningProgram.h"

#include <QAccessible>
#include <QComboBox>
#include <QListWidget>
#include <QToolButton>

#include <functional>

namespace {

/// The list below the search field, and the line that says why the table is short.
class SuggestionsTest : public ::testing::Test, protected support::RunningProgram {
protected:
    SuggestionsTest() {
        setCatalogue({{"KSFO", "SAN FRANCISCO", "CALIFORNIA ", 37.62, -122.37},
                      {"KOAK", "OAKLAND <b>", "CALIFORNIA ", 37.72, -122.22},
                      {"KSJC", "SAN JOSE", "CALIFORNIA ", 37.37, -121.93},
                      {"MROC", "SAN JOSE", "COSTA RICA ", 9.99, -84.2}});
        start();
        search().setFocus();
    }
    static QListWidget& list() { return child<QListWidget>("suggestions"); }
    static const QWidget* focused() { return QApplication::focusWidget(); }

    static void press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
    void type(const char* text) {
        QTest::keyClicks(QApplication::focusWidget(), text);
        await("the list", [] { return list().isVisible(); });
    }
};

TEST_F(SuggestionsTest, TheKeyboardGoesIntoTheListAndOut) {
    type("san");
    EXPECT_EQ(focused(), &search());
    EXPECT_EQ(list().count(), 3);
    EXPECT_EQ(list().item(0)->text(), "KSFO  SAN FRANCISCO · name");
    EXPECT_TRUE(stations().rect().contains(list().geometry()));
    EXPECT_GE(list().width(), search().width());
    const auto expectAfter = [](Qt::Key key, const QWidget& focus, bool isListed) {
        SCOPED_TRACE(QKeySequence(key).toString().toStdString());
        press(key);
        EXPECT_EQ(focused(), &focus);
        EXPECT_EQ(list().isVisible(), isListed);
    };
    expectAfter(Qt::Key_Down, list(), true);
    EXPECT_EQ(list().currentRow(), 0);
    expectAfter(Qt::Key_Up, search(), true);
    expectAfter(Qt::Key_Down, list(), true);
    // What is typed in the list belongs to the text.
    type(" j");
    EXPECT_EQ(search().text(), "san j");
    EXPECT_EQ(focused(), &search());
    expectAfter(Qt::Key_Down, list(), true);
    expectAfter(Qt::Key_Escape, search(), false);
    EXPECT_EQ(search().text(), "san j");
    // Without the list, Down goes to the table, and past its end as well.
    expectAfter(Qt::Key_Down, table(), false);
    search().setFocus();
    type("o");
    expectAfter(Qt::Key_Down, list(), true);
    expectAfter(Qt::Key_Down, list(), true);
    expectAfter(Qt::Key_Down, table(), false);
}

TEST_F(SuggestionsTest, ReturnInTheListOrAClickChooses) {
    type("jose");
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&list())->text(QAccessible::Name),
              "Suggestions for the search");
    press(Qt::Key_Return);
    EXPECT_EQ(selected(), "MROC");
    EXPECT_EQ(focused(), &table());
    EXPECT_EQ(search().text(), "JOSE");
    EXPECT_TRUE(child<QAbstractButton>("searchName").isChecked());
    search().setFocus();
    search().selectAll();
    type("oak");
    const QRect place = list().visualItemRect(list().item(0));
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, place.center());
    EXPECT_EQ(selected(), "KOAK");
    EXPECT_FALSE(list().isVisible());
}

TEST_F(SuggestionsTest, TheListGoesWithTheTextAndTheFocus) {
    const std::pair<const char*, std::function<void()>> ends[] = {
        {"Return", [] { press(Qt::Key_Return); }},
        {"Escape", [] { press(Qt::Key_Escape); }},
        {"Tab", [] { press(Qt::Key_Tab); }},
        {"a click on what takes no focus",
         [] { QTest::mouseClick(&child<QLabel>("words"), Qt::LeftButton); }},
        {"text set by the logic", [this] { delegate().sw->showAll(); }},
    };
    for (const auto& [how, end] : ends) {
        SCOPED_TRACE(how);
        search().setFocus();
        search().clear();
        type("san");
        // The list would come back with the answer to the longer text.
        QTest::keyClicks(&search(), " j");
        EXPECT_TRUE(QTest::qWaitFor([this] { return fake.mainThread.queued() > 0; }));
        end();
        fake.mainThread.run();
        QApplication::processEvents();
        EXPECT_FALSE(list().isVisible());
    }
    // Where the field moves, the list would lie in the wrong place.
    search().setFocus();
    search().clear();
    type("san");
    stations().resize(stations().size() - QSize(20, 20));
    EXPECT_TRUE(QTest::qWaitFor([] { return !list().isVisible(); }));
}

TEST_F(SuggestionsTest, TheFilterLineShowsTheReasonsAndEndsThem) {
    EXPECT_FALSE(child<QWidget>("filterLine").isVisible());
    const auto words = [](const char* part) {
        const auto& frame = child<QWidget>(part);
        return frame.isVisible() ? frame.findChild<QLabel*>()->text() : QString();
    };
    QTest::keyClicks(&search(), "oak,xyz");
    EXPECT_EQ(words("filterSearch"), "ICAO contains oak or xyz");
    table().selectRow(0);
    auto& distance = child<QComboBox>("distButton");
    distance.setCurrentIndex(1);
    emit distance.activated(1);
    EXPECT_EQ(words("filterSearch"), "");
    EXPECT_EQ(words("filterDistance"), "Within 25 miles of KOAK");
    // From the keyboard.
    auto& leave = child<QToolButton>("filterDistanceEnd");
    EXPECT_EQ(leave.accessibleName(), "Leave the distance");
    child<QWidget>("showAll").setFocus();
    press(Qt::Key_Tab);
    ASSERT_EQ(focused(), &leave);
    press(Qt::Key_Space);
    EXPECT_EQ(words("filterSearch"), "ICAO contains oak or xyz");
    EXPECT_EQ(focused(), &table());
    click("filterSearchEnd");
    EXPECT_FALSE(child<QWidget>("filterLine").isVisible());
    EXPECT_EQ(table().model()->rowCount(), 4);
    // An empty table says the same.
    search().setFocus();
    QTest::keyClicks(&search(), "<xyz>");
    const auto* hint = table().viewport()->findChild<QLabel*>();
    EXPECT_TRUE(hint->isVisible());
    EXPECT_EQ(hint->text(), "No station found: ICAO contains <xyz>");
    search().clear();
    EXPECT_FALSE(hint->isVisible());
}

} // namespace
