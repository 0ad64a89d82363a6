// SPDX-License-Identifier: MIT
#include "catalogue/StationCells.h"
#include "desktop/table/StationTable.h"
#include "tests/support/Menus.h"
#include "tests/support/Stations.h"
#include "tests/support/TemporaryFolder.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableView>
#include <QTest>
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <set>

namespace {

using desktop::SortOrder;
using desktop::StationTable;
using desktop::StationTableModel;
using reports::Category;
using reports::Metar;

/// The rows of a window's logic.
struct Listed final : catalogue::StationRows {
    [[nodiscard]] const AviationWeatherStationCollection* shownStations() const override {
        return collection.get();
    }
    void tableViewSelectionDidChange(const platform::TableView& table) override {
        told.push_back(table.selectedRow());
    }

    std::shared_ptr<AviationWeatherStationCollection> collection = makeCollection({});
    std::vector<std::int64_t> told;
};

class SortedTableTest : public ::testing::Test {
protected:
    SortedTableTest() {
        view.setSelectionBehavior(QAbstractItemView::SelectRows);
        view.setSelectionMode(QAbstractItemView::SingleSelection);
        view.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
        view.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
        view.resize(900, 400);
        view.show();
        view.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
        view.setFocus();
        table.setDataSource(&listed);
        table.setDelegate(&listed);
        table.setStations([this](int row) { return listed.stationInRow(row); });
    }

    /// Stations "A000" and so on, with the names of their numbers in an order of its own.
    void list(int count) {
        listed.collection = makeCollection({});
        for (int i = 0; i < count; ++i) {
            listed.collection->stations->push_back(
                makeStation({.ICAO = fmt::format("A{:03}", i),
                             .stationName = fmt::format("{:03}", (i * 37 + 11) % count)}));
        }
        table.reloadData();
    }
    void showWeather() {
        table.setWeather(StationTable::Weather{
            [this](const std::string& identifier) { return metars[identifier]; },
            [] { return platform::Date(std::chrono::hours(100)); }});
    }
    static int column(const char* identifier) { return StationTableModel::columnOf(identifier); }
    void clickHeading(int column) {
        view.horizontalScrollBar()->setValue(header.sectionPosition(column) - 50);
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                          {header.sectionViewportPosition(column) + 8, 5});
    }
    [[nodiscard]] std::string rows() const {
        std::string text;
        for (int shown = 0; shown < view.model()->rowCount(); ++shown) {
            text += std::to_string(table.rowAt(view.model()->index(shown, 0)));
        }
        return text;
    }
    [[nodiscard]] QString copied() {
        QApplication::clipboard()->clear();
        QTest::keySequence(&view, QKeySequence::Copy);
        return QApplication::clipboard()->text();
    }

    QTableView view;
    QHeaderView& header = *view.horizontalHeader();
    Listed listed;
    std::map<std::string, std::shared_ptr<const Metar>> metars;
    StationTable table{view};
};

TEST_F(SortedTableTest, SortsByValueWithBlanksLastBothWays) {
    struct Facts {
        const char* name;
        std::int64_t number;
        double degrees;
        std::optional<Metar> metar;
    };
    Metar calm;
    calm.category = Category::MVFR;
    calm.conditions.wind = reports::Wind{.direction = {}, .speed = 5, .gust = 30};
    calm.conditions.visibility = reports::Visibility{10, true};
    calm.conditions.layers = {{reports::Cover::none, {}, {}}};
    calm.observed = platform::Date(std::chrono::hours(1));
    Metar windy = calm;
    windy.category = Category::LIFR;
    windy.conditions.wind = reports::Wind{.direction = {}, .speed = 20, .gust = {}};
    windy.conditions.visibility = reports::Visibility{10, false};
    windy.conditions.layers = {{reports::Cover::broken, 12'000, {}}};
    windy.observed = platform::Date(std::chrono::hours(99));
    windy.temperature = -9;
    Metar bare;
    bare.observed = platform::Date(std::chrono::hours(50));
    bare.temperature = -10;
    const double none = std::numeric_limits<double>::quiet_NaN();
    // Row by row.
    const Facts facts[] = {{"  ", 0, none, {}},      {"ZUG  ", 10, -0.5, calm},
                           {"élan", 9, 0.4, windy},  {"ELAND", -9, -170, bare},
                           {"תל אביב", 0, none, {}}, {"Ängel", 10, -0.5, {}}};
    for (const Facts& one : facts) {
        const int row = static_cast<int>(std::ssize(*listed.collection->stations));
        auto station = makeStation({.ICAO = "K" + std::to_string(row), .stationName = one.name});
        station->SYNOPIndex = one.number;
        station->ELEV = one.number;
        station->longitude = one.degrees;
        listed.collection->stations->push_back(station);
        if (one.metar) {
            metars[*station->ICAO] = std::make_shared<const Metar>(*one.metar);
        }
    }
    table.reloadData();
    showWeather();
    const char* const cases[][3] = {
        {"2", "523140", "413250"},           {"5", "321504", "152304"},
        {"8", "304215", "152043"},           {"7", "315204", "215304"},
        {"category", "123045", "213045"},    {"wind", "120345", "210345"},
        {"visibility", "210345", "120345"},  {"ceiling", "210345", "120345"},
        {"temperature", "320145", "230145"}, {"qnh", "012345", "012345"},
        {"age", "231045", "132045"}};
    for (const auto& [identifier, up, down] : cases) {
        SCOPED_TRACE(identifier);
        clickHeading(column(identifier));
        EXPECT_EQ(rows(), up);
        EXPECT_TRUE(header.isSortIndicatorShown());
        EXPECT_EQ(header.sortIndicatorSection(), column(identifier));
        EXPECT_TRUE(view.accessibleDescription().endsWith("sorted ascending"));
        clickHeading(column(identifier));
        EXPECT_EQ(rows(), down);
        clickHeading(column(identifier));
        EXPECT_EQ(rows(), "012345");
        EXPECT_FALSE(header.isSortIndicatorShown());
    }
}

TEST_F(SortedTableTest, KeepsSelectionMarksAndPlace) {
    const QAbstractItemModelTester tester(view.model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    table.setMarked([](int row) { return row == 7; });
    list(300);
    // The same station twice, as a search lists one that matches two terms.
    listed.collection->stations->at(9) = listed.collection->stations->at(8);
    table.reloadData();
    table.selectRow(9);
    QScrollBar& scroll = *view.verticalScrollBar();
    scroll.setValue(scroll.maximum() / 2);
    const int place = scroll.value();
    listed.told.clear();
    const auto name = [this](int shown) { return view.model()->index(shown, 1); };
    const auto expectKept = [&] {
        EXPECT_EQ(table.selectedRow(), 9);
        EXPECT_TRUE(listed.told.empty());
        EXPECT_EQ(scroll.value(), place);
        const int selected = view.selectionModel()->selectedRows().value(0).row();
        EXPECT_EQ(view.currentIndex().row(), selected);
        EXPECT_EQ(table.rowAt(name(selected - 1)), 8) << "equal stations stay in their order";
        for (int shown = 0; shown < 300; ++shown) {
            EXPECT_EQ(name(shown).data(StationTableModel::markedRole).toBool(),
                      table.rowAt(name(shown)) == 7);
        }
    };
    for (const SortOrder order : {SortOrder::ascending, SortOrder::descending}) {
        table.sortBy(StationTable::Sort{1, order});
        expectKept();
        table.reloadData();
        expectKept();
    }
    // The keyboard walks through the rows as they are shown.
    const int shown = view.currentIndex().row();
    QTest::keyClick(&view, Qt::Key_Down);
    EXPECT_EQ(listed.told, std::vector<std::int64_t>{table.rowAt(name(shown + 1))});
    table.scrollRowToVisible(9);
    EXPECT_TRUE(view.viewport()->rect().intersects(view.visualRect(name(shown))));
    // A search lists fewer; the sort stays.
    list(10);
    EXPECT_EQ(rows(), "4185296307");
}

TEST_F(SortedTableTest, RefreshesInTheMiddleOfASort) {
    list(100);
    // Every answer differs from the one before, as if reports came in while rows are compared.
    const auto unsteady = [asked = 0](const std::string&) mutable {
        auto metar = std::make_shared<Metar>();
        metar->temperature = (++asked * 7919) % 101;
        return metar;
    };
    table.setWeather(StationTable::Weather{unsteady, [] { return platform::Date(); }});
    table.selectRow(50);
    view.verticalScrollBar()->setValue(300);
    listed.told.clear();
    table.sortBy(StationTable::Sort{column("temperature"), SortOrder::ascending});
    for (int refresh = 0; refresh < 3; ++refresh) {
        table.weatherChanged();
        std::set<std::int64_t> all;
        for (int shown = 0; shown < 100; ++shown) {
            all.insert(table.rowAt(view.model()->index(shown, 0)));
        }
        EXPECT_EQ(all.size(), 100U);
        EXPECT_EQ(table.selectedRow(), 50);
        EXPECT_EQ(view.verticalScrollBar()->value(), 300);
    }
    // Without weather there is nothing to sort by, until it comes back.
    table.setWeather({});
    EXPECT_EQ(view.model()->columnCount(), 16);
    EXPECT_EQ(table.rowAt(view.model()->index(42, 0)), 42);
    EXPECT_EQ(table.selectedRow(), 50);
    showWeather();
    EXPECT_EQ(header.sortIndicatorSection(), column("temperature"));
    EXPECT_EQ(table.selectedRow(), 50);
    EXPECT_TRUE(listed.told.empty());
}

TEST_F(SortedTableTest, ColumnsAreArrangedByMenuAndRemembered) {
    const support::TemporaryFolder folder;
    QSettings memory(QString::fromStdString((folder / "table.ini").string()), QSettings::IniFormat);
    list(3);
    showWeather();
    const auto choose = [&](int on, const QString& text) {
        const int x = header.sectionViewportPosition(on) + 5;
        QMenu& menu = support::openMenu(*header.viewport(), {x, 5});
        support::entryOf(menu, {text}).trigger();
        menu.close();
    };
    choose(column("1"), "Move Right");
    choose(column("3"), "Hide");
    choose(column("2"), "Sort Desc");
    header.resizeSection(column("wind"), 177);
    header.moveSection(0, header.visualIndex(column("wind")));
    const auto arranged = [](const QTableView& shown) {
        QString text;
        for (int place = 0; place < shown.model()->columnCount(); ++place) {
            const int one = shown.horizontalHeader()->logicalIndex(place);
            if (!shown.isColumnHidden(one)) {
                text += StationTableModel::identifierOf(one) + u' ';
            }
        }
        return text;
    };
    const QString asArranged = arranged(view);
    EXPECT_TRUE(asArranged.startsWith("1 category wind 2 visibility")) << asArranged.toStdString();
    // Away for a while, and moved about without weather.
    table.setWeather({});
    EXPECT_TRUE(arranged(view).startsWith("1 2 4 5")) << arranged(view).toStdString();
    table.remember(memory);
    {
        QTableView other;
        StationTable recalled(other);
        recalled.recall(memory);
        EXPECT_EQ(arranged(other), arranged(view));
        recalled.setWeather(StationTable::Weather{});
        EXPECT_EQ(arranged(other), asArranged);
        EXPECT_EQ(other.columnWidth(column("wind")), 177);
        EXPECT_EQ(recalled.model().sorting(), (StationTable::Sort{1, SortOrder::descending}));
    }
    showWeather();
    choose(column("2"), "Hide");
    EXPECT_FALSE(table.model().sorting()) << "nothing would show why";
    choose(column("wind"), "Reset");
    EXPECT_TRUE(arranged(view).startsWith("1 2 3 category wind"));
    EXPECT_NE(view.columnWidth(column("wind")), 177);
    for (int hidden = 1; hidden < 24; ++hidden) {
        choose(header.logicalIndex(hidden), "Hide");
    }
    choose(0, "Hide");
    EXPECT_EQ(arranged(view), "1 ");

    const QVariant odd[] = {{},
                            QStringList{"99", "2", "2", QString()},
                            QVariantList{-5, "x", 1e18},
                            QByteArray("\xff\x00", 2)};
    for (const QVariant& value : odd) {
        for (const char* key : {"columns", "columnOrder", "hiddenColumns", "sortedBy"}) {
            memory.setValue(key, value);
        }
        QTableView other;
        StationTable recalled(other);
        recalled.recall(memory);
        recalled.setWeather(StationTable::Weather{});
        EXPECT_GE(other.horizontalHeader()->hiddenSectionCount(), 0);
        EXPECT_LE(other.horizontalHeader()->hiddenSectionCount(), 1);
        EXPECT_FALSE(recalled.model().sorting());
    }
}

TEST_F(SortedTableTest, CopiesWhatIsShownAndOpensItsMenuByTheKeyboard) {
    list(4);
    EXPECT_EQ(copied(), "") << "no row is selected";
    auto metar = std::make_shared<Metar>();
    metar->conditions.wind = reports::Wind{.direction = 230, .speed = 12, .gust = 22};
    metar->altimeter = 29.92;
    metars["A002"] = metar;
    showWeather();
    header.moveSection(0, 3);
    for (int hidden = column("4"); hidden <= column("16"); ++hidden) {
        header.hideSection(hidden);
    }
    table.sortBy(StationTable::Sort{column("wind"), SortOrder::ascending});
    table.selectRow(2);
    EXPECT_EQ(view.currentIndex().row(), 0);
    EXPECT_EQ(copied(), "001\tA002\tunknown\t\t230° 12G22 kt\t\t\t\t\t1013 hPa\t4 d");

    view.setCurrentIndex(view.model()->index(0, column("wind")));
    std::int64_t row = -1;
    table.addToRowMenu = [&row](QMenu&, std::int64_t of) { row = of; };
    QMenu& menu = support::openMenu(view, {0, 0}, QContextMenuEvent::Keyboard);
    EXPECT_EQ(row, 2);
    support::entryOf(menu, {"Copy Cell"}).trigger();
    EXPECT_EQ(QApplication::clipboard()->text(), "230° 12G22 kt");
    support::entryOf(menu, {"Column “Wind”", "Hide"}).trigger();
    EXPECT_TRUE(view.isColumnHidden(column("wind")));
    menu.close();
    // A click selects the row whose menu it opens.
    const QRect third = view.visualRect(view.model()->index(3, 1));
    support::openMenu(*view.viewport(), third.center()).close();
    EXPECT_EQ(row, table.selectedRow());
    EXPECT_EQ(row, 3);
}

} // namespace
