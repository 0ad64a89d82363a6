// SPDX-License-Identifier: MIT
#include "desktop/report/FavoriteReports.h"
#include "desktop/report/ReportPage.h"
#include "desktop/report/ReportText.h"
#include "desktop/report/TafBar.h"
#include "tests/support/ServedProgram.h"

#include <QTabWidget>
#include <gmock/gmock.h>

namespace {

using support::metarRaw;
using testing::HasSubstr;
using testing::StartsWith;

/// The Report and Trend tabs of the real window, fed by a real server.
class ReportTest : public support::ServedProgram {
protected:
    ReportTest() {
        setCatalogue({{"KAAA", "ALPHA", "ALABAMA", 33.18, -86.78},
                      {"KBBB", "BRAVO", "ALABAMA", 34.18, -86.78},
                      {"KCCC", "CHARLIE", "ALABAMA", 35.18, -86.78},
                      {"    ", "NAMELESS", "ALABAMA", 36.18, -86.78}});
    }

    void awaitStatus(const char* part) {
        await(part, [&] { return label("Report status").find(part) != std::string::npos; });
    }
    static void select(const QString& name) {
        const QAbstractItemModel& model = *table().model();
        const auto found = model.match(model.index(0, 1), Qt::DisplayRole, name);
        ASSERT_EQ(found.size(), 1) << name.toStdString();
        table().selectRow(found.front().row());
    }

    static desktop::ReportPage& page() {
        return dynamic_cast<desktop::ReportPage&>(child<QWidget>("report"));
    }
    /// The control that is shown under an accessible name; null if none is.
    template <typename T>
    static T* shown(const char* name) {
        for (QWidget* widget : page().findChildren<QWidget*>()) {
            auto* one = dynamic_cast<T*>(widget);
            if (one && one->accessibleName().startsWith(name) && !one->isHidden()) {
                return one;
            }
        }
        return nullptr;
    }
    static std::string label(const char* name) {
        const auto* found = shown<QLabel>(name);
        return found != nullptr ? found->text().toStdString() : "";
    }
    static std::string text(const char* name) {
        const auto* found = shown<desktop::ReportText>(name);
        return found != nullptr ? found->toPlainText().toStdString() : "";
    }
};

class ReportOrderTest : public ReportTest,
                        public testing::WithParamInterface<std::vector<std::string>> {};

TEST_P(ReportOrderTest, OnlyTheSelectedStationsReportsAreShownWhateverComesWhen) {
    for (const char* name : {"ALPHA", "BRAVO", "CHARLIE"}) {
        select(name);
    }
    awaitStatus("Asking localhost");
    for (const std::string& gate : GetParam()) {
        server.gates.open(gate);
        await("its reply", [&] {
            const std::string metar = text("Report METAR");
            EXPECT_TRUE(metar.empty() || metar == metarRaw("KCCC")) << metar;
            const auto known = reports().reportsOf(gate.substr(gate.size() - 4));
            return gate.starts_with("METAR") ? known.metar != nullptr : known.taf != nullptr;
        });
    }
    await("the last station's METAR", [&] { return text("Report METAR") == metarRaw("KCCC"); });
    await("its TAF", [&] { return text("Report TAF").starts_with("TAF KCCC 292320Z"); });
    awaitStatus("Asked localhost");
    select("ALPHA");
    EXPECT_EQ(text("Report METAR"), metarRaw("KAAA")) << "what is known shows at once";
}

INSTANTIATE_TEST_SUITE_P(
    Orders, ReportOrderTest,
    testing::Values(std::vector<std::string>{"METAR KCCC", "TAF KCCC", "METAR KAAA", "TAF KBBB",
                                             "METAR KBBB", "TAF KAAA"},
                    std::vector<std::string>{"TAF KAAA", "METAR KAAA", "TAF KBBB", "METAR KBBB",
                                             "TAF KCCC", "METAR KCCC"}));

TEST_F(ReportTest, SaysWhatThereIsAndNothingElse) {
    server.gates.openAll();
    select("BRAVO");
    await("a METAR", [&] { return !text("Report METAR").empty(); });
    EXPECT_EQ(label("Report category"), "IFR");
    pass(std::chrono::minutes(12));
    EXPECT_EQ(label("Report age"), "00:00 UTC, 12 minutes ago");
    EXPECT_THAT(text("Decoded METAR"), StartsWith("Wind\t↗ from 230° at 12 kt"));
    EXPECT_THAT(text("Decoded METAR"), testing::Not(HasSubstr("Pressure")));
    await("a TAF", [&] { return shown<desktop::TafBar>("") != nullptr; });
    EXPECT_THAT(text("Decoded TAF"), HasSubstr("Visibility: 6 statute miles or more"));

    // The text tells of more than the server has decoded.
    change = "FM010900 1SM OVC003";
    select("CHARLIE");
    await("a TAF that is not decoded in full", [&] { return !label("TAF decoding").empty(); });
    EXPECT_EQ(shown<desktop::TafBar>(""), nullptr);

    select("NAMELESS");
    EXPECT_EQ(label("Report status"), "This station has no identifier by which it could be asked "
                                      "for.");
    EXPECT_EQ(text("Report METAR"), "");
    EXPECT_EQ(label("Report category"), "");
}

TEST_F(ReportTest, LastReportsOutliveTheServerAndTheProgram) {
    server.gates.openAll();
    select("ALPHA");
    awaitStatus("Asked localhost");
    end();
    pass(std::chrono::hours(2));
    fake.userDefaults.setObject(std::string("localhost:1"), "dataserverhost");
    begin();
    select("ALPHA");
    await("the kept METAR", [&] { return text("Report METAR") == metarRaw("KAAA"); });
    awaitStatus("localhost:1 could not be reached at 02:00 UTC; this is what it sent at 00:00 UTC");
    EXPECT_EQ(label("Report age"), "00:00 UTC, 2 hours ago, old");
}

TEST_F(ReportTest, CopiesEachReportAsItWasSentAndTheWholeAsText) {
    change = "BECMG 0106/0108 24015KT";
    server.gates.openAll();
    select("BRAVO");
    await("a METAR", [] { return shown<QPushButton>("Copy METAR") != nullptr; });
    await("a TAF", [] { return shown<QPushButton>("Copy TAF") != nullptr; });
    shown<QPushButton>("Copy METAR")->click();
    EXPECT_EQ(copied(), metarRaw("KBBB"));
    shown<QPushButton>("Copy TAF")->click();
    EXPECT_EQ(copied(), "TAF KBBB 292320Z 0100/0200 24012KT P6SM SCT040 " + std::string(change));

    auto& metar = *shown<desktop::ReportText>("Report METAR");
    metar.setFocus();
    QTest::keyClick(&metar, Qt::Key_C, Qt::ControlModifier);
    EXPECT_THAT(copied(), StartsWith("KBBB · BRAVO"));
    EXPECT_THAT(copied(), testing::AllOf(HasSubstr(metarRaw("KBBB")), HasSubstr("Wind: from 230°"),
                                         HasSubstr("BECMG 0106/0108")));
    QTest::keyClick(&metar, Qt::Key_End, Qt::ShiftModifier);
    QTest::keyClick(&metar, Qt::Key_C, Qt::ControlModifier);
    EXPECT_THAT(metarRaw("KBBB"), StartsWith(copied()));
    EXPECT_FALSE(copied().empty());
}

TEST_F(ReportTest, FavoritesHaveALineEachThatSelectsThem) {
    server.gates.openAll();
    select("BRAVO");
    QTest::keyClick(&table(), Qt::Key_D, Qt::ControlModifier);
    auto& list = page().favorites();
    await("the favourite's METAR", [&] {
        return list.topLevelItemCount() == 1 && list.topLevelItem(0)->text(6) == "0 min";
    });
    QStringList cells;
    for (int column = 0; column < list.columnCount(); ++column) {
        cells += list.topLevelItem(0)->text(column);
    }
    EXPECT_EQ(cells.join(u'|').toStdString(), "KBBB|IFR|230° 12G22 kt|2 SM|800 ft|4 °C|0 min");
    // A search that does not list it ends.
    QTest::keyClicks(&search(), "KCCC");
    table().selectRow(0);
    EXPECT_EQ(selected(), "KCCC");
    page().ensureWidgetVisible(&list);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.visualItemRect(list.topLevelItem(0)).center());
    EXPECT_EQ(selected(), "KBBB");
    EXPECT_EQ(search().text(), "");
}

TEST_F(ReportTest, TrendIsAskedForOnceWhereTheUserStays) {
    server.gates.openAll();
    auto& tabs = child<QTabWidget>("reportTabs");
    EXPECT_EQ(tabs.currentWidget(), &page());
    select("BRAVO");
    awaitStatus("Asked localhost");
    const auto asked = [&] {
        return std::ranges::count_if(server.targets(), [](const std::string& target) {
            return target.find("hours=24") != std::string::npos;
        });
    };
    tabs.setCurrentIndex(2);
    EXPECT_FALSE(tabs.hasHeightForWidth()) << "the trend would take the map's place";
    for (const char* name : {"ALPHA", "CHARLIE", "BRAVO"}) {
        select(name);
    }
    await("the trend's request", [&] { return asked() == 1; });
    EXPECT_THAT(server.targets(),
                testing::Contains("/api/data/metar?ids=KBBB&hours=24&format=xml"));
    select("ALPHA");
    await("another", [&] { return asked() == 2; });
    select("BRAVO");
    child<QPushButton>("metarB").click();
    await("one that the user wants", [&] { return asked() == 3; });
    stations().close();
    end();
    begin();
    EXPECT_EQ(child<QTabWidget>("reportTabs").currentIndex(), 2) << "the tab is remembered";
}

} // namespace
