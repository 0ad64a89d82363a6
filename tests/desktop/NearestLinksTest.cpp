// SPDX-License-Identifier: MIT
#include "tests/desktop/AllWindows.h"

namespace {

/// K000 sends nothing, KMET sends METARs; nobody sends TAFs.
class NearestLinksTest : public AllWindows {
protected:
    NearestLinksTest() {
        const auto all = makeCollection({{"K000", "NOTHING HERE", {}, 50, 8},
                                         {"KMET", "MET & תל אביב", {}, 50.5, 8},
                                         {"KFAR", "FAR", {}, 52, 8}});
        all->stations->at(1)->METAR = all->stations->at(2)->METAR = 'X';
        save(all, "resources/Stations.STNPKG");
        start();
        table().selectRow(0);
    }
    static QPushButton& link() { return child<QPushButton>("nearestMetar"); }
};

TEST_F(NearestLinksTest, LeadFromWhatAStationLacksToTheNearestThatHasIt) {
    ASSERT_TRUE(link().isVisible());
    EXPECT_EQ(link().text().toStdString(),
              "Nearest METAR: \u2068KMET MET && תל אביב\u2069, 34 mi N, 360° true (listed as "
              "reporting)");
    EXPECT_FALSE(child<QPushButton>("nearestTaf").isVisible()) << "there is none";
    QTest::keyClicks(&search(), "k000");
    EXPECT_EQ(table().model()->rowCount(), 1);
    link().setFocus();
    QTest::keyClick(&link(), Qt::Key_Space);
    EXPECT_EQ(selected(), "KMET");
    EXPECT_EQ(table().model()->rowCount(), 3);
    EXPECT_FALSE(link().isVisible()) << "it sends METARs itself";
}

TEST_F(NearestLinksTest, FollowReportsAndTheirAge) {
    fake.urlSessions.answer("=metars", support::metarReply("K000"));
    await("a METAR after all", [] { return !link().isVisible(); });
    pass(std::chrono::minutes(80));
    table().selectRow(2);
    table().selectRow(0);
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
    const QModelIndex row = table().model()->index(1, 2);
    QMenu& menu = support::openMenu(*table().viewport(), table().visualRect(row).center());
    const QAction& taf = support::entryOf(menu, {"Nearest TAF"});
    EXPECT_EQ(taf.text(), "Nearest TAF: no other station is known to send one");
    EXPECT_FALSE(taf.isEnabled());
    QAction& metar = support::entryOf(menu, {"Nearest METAR"});
    EXPECT_TRUE(metar.isEnabled());
    metar.trigger();
    menu.close();
    EXPECT_EQ(selected(), "KFAR");
}

TEST_F(NearestLinksTest, AChosenNoticeOfAFavoriteBringsTheWindowAndItsStation) {
    const auto& status = child<QLabel>("favoriteStatus");
    EXPECT_FALSE(status.isVisible());
    entry({"Stations", "Notify When Favorites Worsen"}).trigger();
    fake.mainThread.run();
    EXPECT_EQ(status.text(),
              "To be told of favorites, switch on World Weather or their own weather.");
    QTest::keyClick(&stations(), Qt::Key_D, Qt::ControlModifier);
    click("worldWeather");
    fake.mainThread.run();
    EXPECT_TRUE(status.isVisible());
    EXPECT_EQ(status.text(), "Watching 1 favorite.");
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
    click("metarB");
    table().selectRow(2);
    stations().close();
    reply(">LIFR<", "T00:01:00Z");
    ASSERT_EQ(fake.notices.shown.size(), 1U);
    EXPECT_EQ(fake.notices.shown[0].title, "A favorite has worsened");
    fake.notices.choose(0);
    EXPECT_TRUE(stations().isVisible());
    EXPECT_EQ(selected(), "K000");
}

} // namespace
