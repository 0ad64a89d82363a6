// SPDX-License-Identifier: MIT
#include "tests/desktop/AllWindows.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>

namespace {

/// K000 sends nothing, KMET sends METARs; nobody sends TAFs.
class NearestLinksTest : public AllWindows {
protected:
    NearestLinksTest() {
        const auto stations = makeCollection({{"K000", "NOTHING HERE", {}, 50, 8},
                                              {"KMET", "MET & תל אביב", {}, 50.5, 8},
                                              {"KFAR", "FAR", {}, 52, 8}});
        stations->stations->at(1)->METAR = stations->stations->at(2)->METAR = 'X';
        EXPECT_TRUE(platform::KeyedArchiver::archiveRootObject(
            stations, (fake.folder / "resources/Stations.STNPKG").string()));
        start();
        child<QTableView>("table").selectRow(0);
    }
    std::string selected() { return delegate().sw->selectedStation->ICAO.value_or(""); }
    QPushButton& link() { return child<QPushButton>("nearestMetar"); }
};

TEST_F(NearestLinksTest, LeadFromWhatAStationLacksToTheNearestThatHasIt) {
    ASSERT_TRUE(link().isVisible());
    EXPECT_EQ(link().text().toStdString(),
              "Nearest METAR: \u2068KMET MET && תל אביב\u2069, 34 mi N, 360° true (listed as "
              "reporting)");
    EXPECT_FALSE(child<QPushButton>("nearestTaf").isVisible()) << "there is none";
    QTest::keyClicks(&child<QLineEdit>("sf"), QStringLiteral("k000"));
    EXPECT_EQ(child<QTableView>("table").model()->rowCount(), 1);
    link().setFocus();
    QTest::keyClick(&link(), Qt::Key_Space);
    EXPECT_EQ(selected(), "KMET");
    EXPECT_EQ(child<QTableView>("table").model()->rowCount(), 3);
    EXPECT_FALSE(link().isVisible()) << "it sends METARs itself";
}

TEST_F(NearestLinksTest, FollowReportsAndTheirAge) {
    fake.urlSessions.answer("=metars", support::metarReply("K000"));
    EXPECT_TRUE(QTest::qWaitFor([&] {
        fake.mainThread.run();
        return !link().isVisible();
    })) << "it has one after all";
    fake.clock.time = fake.clock.now() + std::chrono::minutes(80);
    child<QTableView>("table").selectRow(2);
    child<QTableView>("table").selectRow(0);
    EXPECT_TRUE(link().isVisible()) << "which is old by now";
}

TEST_F(NearestLinksTest, AreWholeHoweverSmallTheWindow) {
    useFont(20);
    stations().resize(698, 426);
    QApplication::processEvents();
    EXPECT_GE(link().height(), link().heightForWidth(link().width()));
    EXPECT_GT(link().height(), 2 * link().fontMetrics().height()) << "it has not wrapped";
    EXPECT_GE(link().parentWidget()->width(), link().geometry().right());
}

TEST_F(NearestLinksTest, AreInTheMenuOfEveryRow) {
    auto& table = child<QTableView>("table");
    const auto entries = [&](int row, const char* chosen) {
        const QPoint place = table.visualRect(table.model()->index(row, 2)).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, table.mapToGlobal(place));
        QApplication::sendEvent(table.viewport(), &event);
        QWidget& menu = *QApplication::activePopupWidget();
        std::vector<std::pair<std::string, bool>> found;
        for (QAction* entry : menu.actions()) {
            if (entry->text().startsWith(QStringLiteral("Nearest"))) {
                found.emplace_back(entry->text().toStdString(), entry->isEnabled());
            }
            if (entry->text().startsWith(QLatin1String(chosen))) {
                entry->trigger();
            }
        }
        menu.close();
        return found;
    };
    const auto found = entries(1, "Nearest METAR");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_TRUE(found[0].second);
    EXPECT_EQ(found[1].first, "Nearest TAF: no other station is known to send one");
    EXPECT_FALSE(found[1].second);
    EXPECT_EQ(selected(), "KFAR");
}

TEST_F(NearestLinksTest, AChosenNoticeOfAFavoriteBringsTheWindowAndItsStation) {
    QAction* entry = nullptr;
    for (QAction* one : stations().menuBar()->actions().at(1)->menu()->actions()) {
        entry = one->text() == QLatin1String("No&tify When Favorites Worsen") ? one : entry;
    }
    ASSERT_NE(entry, nullptr);
    const auto& status = child<QLabel>("favoriteStatus");
    EXPECT_FALSE(status.isVisible());
    entry->trigger();
    fake.mainThread.run();
    EXPECT_EQ(status.text(), QStringLiteral("To be told of favorites, switch on World Weather or "
                                            "their own weather."));
    QTest::keyClick(&stations(), Qt::Key_D, Qt::ControlModifier);
    child<QPushButton>("worldWeather").click();
    fake.mainThread.run();
    EXPECT_TRUE(status.isVisible());
    EXPECT_EQ(status.text(), QStringLiteral("Watching 1 favorite."));
    const auto reply = [&](const char* category, const char* time) {
        std::string metar = support::metarReply("K000");
        metar.replace(metar.find("T00:00:00Z"), 10, time);
        metar.replace(metar.find(">IFR<"), 5, category);
        ASSERT_TRUE(fake.urlSessions.answer("=metars", metar));
        while (fake.urlSessions.answer("http", {})) {
        }
        for (int times = 0; times < 2; ++times) {
            fake.mainThread.run();
            fake.timers.fire();
        }
    };
    reply(">VFR<", "T00:00:00Z");
    EXPECT_TRUE(fake.notices.shown.empty());
    child<QPushButton>("metarB").click();
    child<QTableView>("table").selectRow(2);
    stations().close();
    reply(">LIFR<", "T00:01:00Z");
    ASSERT_EQ(fake.notices.shown.size(), 1U);
    EXPECT_EQ(fake.notices.shown[0].title, "A favorite has worsened");
    fake.notices.choose(0);
    EXPECT_TRUE(stations().isVisible());
    EXPECT_EQ(selected(), "K000");
}

} // namespace
