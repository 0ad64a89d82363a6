// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"
#include "platform/archive/KeyedArchiver.h"
#include "tests/support/RunningProgram.h"
#include "tests/support/Stations.h"

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTableView>
#include <QToolButton>

#include <functional>
#include <utility>

namespace {

/// The list below the search field, and the line that says why the table is short.
class SuggestionsTest : public ::testing::Test, protected support::RunningProgram {
protected:
    SuggestionsTest() {
        EXPECT_TRUE(platform::KeyedArchiver::archiveRootObject(
            makeCollection({{"KSFO", "SAN FRANCISCO", "CALIFORNIA ", 37.62, -122.37},
                            {"KOAK", "OAKLAND <b>", "CALIFORNIA ", 37.72, -122.22},
                            {"KSJC", "SAN JOSE", "CALIFORNIA ", 37.37, -121.93},
                            {"MROC", "SAN JOSE", "COSTA RICA ", 9.99, -84.2}}),
            (fake.folder / "resources/Stations.STNPKG").string()));
        start();
        search().setFocus();
    }
    static QLineEdit& search() { return child<QLineEdit>("sf"); }
    static QListWidget& list() { return child<QListWidget>("suggestions"); }
    static QTableView& table() { return child<QTableView>("table"); }
    static const QWidget* focused() { return QApplication::focusWidget(); }

    void type(const char* text) {
        QTest::keyClicks(QApplication::focusWidget(), QString::fromLatin1(text));
        settle();
    }
    /// Until the list is there.
    void settle() {
        EXPECT_TRUE(QTest::qWaitFor([this] {
            fake.mainThread.run();
            return list().isVisible();
        })) << search().text().toStdString();
    }
    [[nodiscard]] std::string selected() {
        const auto station = delegate().sw->selectedStation;
        return station ? station->ICAO.value_or("") : "";
    }
};

TEST_F(SuggestionsTest, TheKeyboardGoesIntoTheListAndOut) {
    type("san");
    EXPECT_EQ(focused(), &search());
    EXPECT_EQ(list().count(), 3);
    EXPECT_EQ(list().item(0)->text(), QStringLiteral("KSFO  SAN FRANCISCO · name"));
    EXPECT_TRUE(stations().rect().contains(list().geometry()));
    EXPECT_GE(list().width(), search().width());
    QTest::keyClick(&search(), Qt::Key_Down);
    EXPECT_EQ(focused(), &list());
    EXPECT_EQ(list().currentRow(), 0);
    QTest::keyClick(&list(), Qt::Key_Up);
    EXPECT_EQ(focused(), &search());
    EXPECT_TRUE(list().isVisible());
    QTest::keyClick(&search(), Qt::Key_Down);
    // What is typed in the list belongs to the text.
    QTest::keyClicks(&list(), QStringLiteral(" j"));
    EXPECT_EQ(search().text(), QStringLiteral("san j"));
    EXPECT_EQ(focused(), &search());
    settle();
    QTest::keyClick(&search(), Qt::Key_Down);
    QTest::keyClick(&list(), Qt::Key_Escape);
    EXPECT_EQ(focused(), &search());
    EXPECT_FALSE(list().isVisible());
    EXPECT_EQ(search().text(), QStringLiteral("san j"));
    // Without the list, Down goes to the table, and past its end as well.
    QTest::keyClick(&search(), Qt::Key_Down);
    EXPECT_EQ(focused(), &table());
    search().setFocus();
    type("o");
    QTest::keyClick(&search(), Qt::Key_Down);
    QTest::keyClick(&list(), Qt::Key_Down);
    QTest::keyClick(&list(), Qt::Key_Down);
    EXPECT_EQ(focused(), &table());
    EXPECT_FALSE(list().isVisible());
}

TEST_F(SuggestionsTest, ReturnInTheListOrAClickChooses) {
    type("jose");
    QTest::keyClick(&search(), Qt::Key_Down);
    QTest::keyClick(&list(), Qt::Key_Down);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&list())->text(QAccessible::Name),
              QStringLiteral("Suggestions for the search"));
    QTest::keyClick(&list(), Qt::Key_Return);
    EXPECT_EQ(selected(), "MROC");
    EXPECT_EQ(focused(), &table());
    EXPECT_EQ(search().text(), QStringLiteral("JOSE"));
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
        {"Return", [] { QTest::keyClick(&search(), Qt::Key_Return); }},
        {"Escape", [] { QTest::keyClick(&search(), Qt::Key_Escape); }},
        {"Tab", [] { QTest::keyClick(&search(), Qt::Key_Tab); }},
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
        QTest::keyClicks(&search(), QStringLiteral(" j"));
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
    auto& line = child<QWidget>("filterLine");
    EXPECT_FALSE(line.isVisible());
    const auto words = [](const char* part) {
        const auto& frame = child<QWidget>(part);
        return frame.isVisible() ? frame.findChild<QLabel*>()->text() : QString();
    };
    QTest::keyClicks(&search(), QStringLiteral("oak,xyz"));
    EXPECT_EQ(words("filterSearch"), QStringLiteral("ICAO contains oak or xyz"));
    table().selectRow(0);
    delegate().sw->chooseSuggestion(
        catalogue::SuggestionIndex(delegate().sw->masterCollection().get()).find("oakl").front());
    EXPECT_EQ(words("filterSearch"), QStringLiteral("Name contains OAKLAND"));
    auto& distance = child<QComboBox>("distButton");
    distance.setCurrentIndex(1);
    emit distance.activated(1);
    EXPECT_EQ(words("filterSearch"), QString());
    EXPECT_EQ(words("filterDistance"), QStringLiteral("Within 25 miles of KOAK"));
    table().selectRow(0);
    EXPECT_EQ(selected(), "KSFO");
    EXPECT_EQ(words("filterDistance"), QStringLiteral("Within 25 miles of KOAK"));
    // From the keyboard.
    auto& leave = child<QToolButton>("filterDistanceEnd");
    EXPECT_EQ(leave.accessibleName(), QStringLiteral("Leave the distance"));
    child<QWidget>("showAll").setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    ASSERT_EQ(focused(), &leave);
    QTest::keyClick(&leave, Qt::Key_Space);
    EXPECT_EQ(words("filterSearch"), QStringLiteral("Name contains OAKLAND"));
    EXPECT_EQ(focused(), &table());
    QTest::mouseClick(&child<QToolButton>("filterSearchEnd"), Qt::LeftButton);
    EXPECT_FALSE(line.isVisible());
    EXPECT_EQ(table().model()->rowCount(), 4);
    // An empty table says the same.
    search().setFocus();
    QTest::keyClicks(&search(), QStringLiteral("<xyz>"));
    const auto* hint = table().viewport()->findChild<QLabel*>();
    EXPECT_TRUE(hint->isVisible());
    EXPECT_EQ(hint->text(), QStringLiteral("No station found: Name contains <xyz>"));
    search().clear();
    EXPECT_FALSE(hint->isVisible());
}

} // namespace
