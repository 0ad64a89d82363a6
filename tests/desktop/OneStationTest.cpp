// SPDX-License-Identifier: MIT
#include "tests/support/RunningProgram.h"

#include <fmt/format.h>

#include <functional>
#include <set>

namespace {

using Names = std::vector<std::string>;

/// The line of a list for a station at 40 degrees north and `longitude` degrees west.
std::string line(const char* identifier, int longitude) {
    return fmt::format(
        "ZZ {:16} {:4} ZZQ   72999   40 00N  {:03} 00W 1656   X     T     A    7 US\n",
        fmt::format("PLACE OF {}", identifier), identifier, longitude);
}

/// Whatever the user does in the main window, all its parts refer to the same station.
class OneStation : public ::testing::Test, protected support::RunningProgram {
protected:
    OneStation() {
        setCatalogue({{"KEET", "ALABASTER", "ALABAMA", 33.18, -86.78},
                      {"KJAX", "JACKSONVILLE", "FLORIDA", 30.49, -81.69},
                      {"KJFK", "NEW YORK/JFK", "NEW YORK", 40.64, -73.78},
                      {"KLGA", "NEW YORK/LGA", "NEW YORK", 40.78, -73.88},
                      {"EGLL", "LONDON", "ENGLAND", 51.48, -0.45}});
        start();
    }

    static desktop::MapView& map() {
        return dynamic_cast<desktop::MapView&>(child<QWidget>("mapV"));
    }
    static void press(QWidget& widget, Qt::Key key) { QTest::keyClick(&widget, key); }
    static void type(const char* text) { QTest::keyClicks(&search(), text); }
    static void findKennedy() {
        type("kjfk");
        press(search(), Qt::Key_Return);
    }
    void openListOf(const std::string& lines) {
        openList(fake.folder.write("list.txt", "! a list\n" + lines));
        EXPECT_EQ(search().text(), "");
    }
    /// The stations requested since the last call, each once. Answers all requests, without data.
    Names asked() {
        std::set<std::string> names;
        for (const std::string& address : fake.urlSessions.addresses()) {
            names.insert(address.substr(address.find("stationString=") + 14, 4));
        }
        while (fake.urlSessions.answer("", std::nullopt)) {
        }
        return {names.begin(), names.end()};
    }
    /// Expects everything that shows the selected station to show this one; "" is none.
    void expectSelected(const std::string& identifier) {
        QApplication::processEvents();
        const QModelIndexList rows = table().selectionModel()->selectedRows(2);
        EXPECT_EQ(rows.isEmpty() ? "" : rows.front().data().toString().toStdString(), identifier);
        EXPECT_EQ(selected(), identifier);
        EXPECT_EQ(delegate().sw->nowSelection, rows.isEmpty() ? -1 : rows.front().row());
        EXPECT_EQ(child<QLabel>("stationLine").text().left(4).toStdString(), identifier);
        EXPECT_EQ(child<QPushButton>("metarB").isEnabled(), !identifier.empty());
        if (!rows.isEmpty()) {
            EXPECT_EQ(map().state().marker->identifier, identifier);
            EXPECT_TRUE(table().viewport()->rect().intersects(table().visualRect(rows.front())));
        }
    }
    /// Expects Fetch Again and the favourite shortcut, too, to act on this station; "" is none.
    void expectMeant(const std::string& identifier) {
        const Names meant = identifier.empty() ? Names() : Names{identifier};
        expectSelected(identifier);
        asked();
        click("metarB");
        EXPECT_EQ(asked(), meant);
        QTest::keyClick(&table(), Qt::Key_D, Qt::ControlModifier);
        EXPECT_EQ(identifiers(delegate().sw->allFavorites()), meant);
    }
};

TEST_F(OneStation, IsTheSameEverywhereWhateverHappensToTheRows) {
    const struct {
        const char* name;
        const char* meant;
        /// Whether the action requests its weather and moves the map to it.
        bool isNew;
        int rows;
        std::function<void()> act;
    } cases[] = {
        {"Show All", "KJFK", false, 5, [] { click("showAll"); }},
        {"Escape", "KJFK", false, 5, [] { press(search(), Qt::Key_Escape); }},
        {"a cleared field", "KJFK", false, 5, [] { search().clear(); }},
        {"a cancelled save", "KJFK", true, 1,
         [&] { openListOf(line("KJFK", 70)), click("saver"); }},
        {"a list with it", "KJFK", true, 3,
         [&] { openListOf(line("KEET", 80) + line("KJFK", 70) + line("KLGA", 60)); }},
        {"a list without it", "", false, 1, [&] { openListOf(line("KEET", 80)); }},
        {"a list without stations", "", false, 0, [&] { openListOf(""); }},
        {"another search", "KLGA", true, 1, [] { search().clear(), type("lga"); }},
        {"the same search", "KJFK", true, 1, [] { search().clear(), type("jf"); }},
        {"the favorites", "", false, 0, [&] { delegate().sw->showFavsMenu(); }},
        {"a search mode", "KJFK", false, 1, [] { click("searchName"); }},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        findKennedy();
        expectSelected("KJFK");
        asked();
        press(map(), Qt::Key_Plus);
        const double before = map().region().latitudeSpan;

        one.act();
        EXPECT_EQ(table().model()->rowCount(), one.rows);
        expectSelected(one.meant);
        EXPECT_EQ(asked(), one.isNew ? Names{one.meant} : Names());
        EXPECT_EQ(map().region().latitudeSpan != before, one.isNew);
        expectMeant(one.meant);
        stop();
        std::filesystem::remove_all(fake.folder / "support/nosig");
        start();
    }
}

TEST_F(OneStation, AmongTwoOfTheSameNameIsTheOneInTheRow) {
    const auto named = [](const char* identifier) {
        return line(identifier, 70).replace(3, 16, "ONE NAME FOR TWO");
    };
    openListOf(named("KJFK") + named("KLGA") + line("KEET", 80));
    table().selectRow(1);
    expectSelected("KLGA");
    // The first station of that name moves into the row of the selected one.
    search().setText("kjfk,keet");
    EXPECT_EQ(table().model()->rowCount(), 2);
    expectMeant("KJFK");
}

TEST_F(OneStation, IsFetchedAgainWithoutMovingTheMap) {
    findKennedy();
    click("showAll");
    press(map(), Qt::Key_Left);
    const auto before = map().region().centre.longitude;
    delegate().sw->favMenuItem();
    table().selectRow(0);
    delegate().sw->alwaysShowFavWeatherMenu(*delegate().sw->outlets.alwaysFavItem);
    press(map(), Qt::Key_Left);
    const auto moved = map().region().centre.longitude;
    EXPECT_NE(moved, before);
    asked();
    click("metarB");
    EXPECT_EQ(map().region().centre.longitude, moved);
    EXPECT_EQ(delegate().sw->wGrabber->stationsToCollectWeatherFrom.size(), 2U);
    EXPECT_EQ(asked(), Names{"KEET"});
    // The timer, too, shows the selected station again.
    fake.timers.fire();
    expectSelected("KEET");
    EXPECT_EQ(asked(), Names{"KEET"});
}

} // namespace
