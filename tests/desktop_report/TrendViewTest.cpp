// SPDX-License-Identifier: MIT
#include "desktop/report/TrendView.h"

#include "desktop/report/TrendPlot.h"

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QScrollArea>
#include <QTest>
#include <gtest/gtest.h>

namespace desktop {
namespace {

using namespace std::chrono_literals;
using reports::Date;
using reports::Metar;

const Date noon = Date(std::chrono::sys_days(std::chrono::year(2026) / 11 / 21)) + 12h;

Metar metarAt(Date observed) {
    Metar metar;
    metar.station = "KXYZ";
    metar.observed = observed;
    return metar;
}

Metar wholeAt(Date observed) {
    Metar metar = metarAt(observed);
    metar.temperature = 3;
    metar.dewPoint = -2;
    metar.conditions.wind = reports::Wind{230, false, 12, 22};
    metar.conditions.visibility = reports::Visibility{2, false};
    metar.conditions.layers = {{reports::Cover::broken, 2200, ""}};
    metar.altimeter = 29.92;
    return metar;
}

struct ShownTrend {
    explicit ShownTrend(std::vector<Metar> metars, QSize size = {640, 560}) {
        view.setReports(std::move(metars), noon);
        view.resize(size);
        view.show();
        view.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&view)) << "the window did not become active";
        QApplication::processEvents();
    }
    TrendPlot& plot() {
        return dynamic_cast<TrendPlot&>(*view.findChild<QScrollArea*>()->widget());
    }
    QImage picture() { return plot().grab().toImage(); }
    [[nodiscard]] std::string values() const {
        auto* label = const_cast<QLabel*>(&view.values());
        return QAccessible::queryAccessibleInterface(label)->text(QAccessible::Name).toStdString();
    }

    TrendView view;
};

TEST(TrendView, GapsAreNotDrawnOver) {
    const auto nothing = [](Metar&) {};
    const struct {
        const char* name;
        void (*change)(Metar& first);
        /// Of the seven.
        int curves;
        std::chrono::minutes after = 50min;
    } cases[] = {
        {"an hour", nothing, 7},
        {"an hour and a half", nothing, 7, 90min},
        {"longer", nothing, 0, 91min},
        {"no temperature", [](Metar& first) { first.temperature.reset(); }, 6},
        {"no wind", [](Metar& first) { first.conditions.wind.reset(); }, 5},
        {"no gust", [](Metar& first) { first.conditions.wind->gust.reset(); }, 6},
        {"no visibility", [](Metar& first) { first.conditions.visibility.reset(); }, 6},
        {"two miles or more", [](Metar& first) { first.conditions.visibility->isOrMore = true; },
         6},
        {"no clouds told", [](Metar& first) { first.conditions.layers.clear(); }, 6},
        {"no sky seen",
         [](Metar& first) {
             first.conditions.layers = {{reports::Cover::obscured, {}, ""}};
         },
         6},
        {"perhaps lower",
         [](Metar& first) {
             first.conditions.layers.push_back({reports::Cover::overcast, {}, ""});
         },
         6},
        {"no pressure", [](Metar& first) { first.altimeter.reset(); }, 6},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        Metar first = wholeAt(noon - 8h);
        one.change(first);
        const Metar second = wholeAt(first.observed + one.after);
        const Metar last = wholeAt(noon);
        // Where nothing is drawn between two reports, it looks as if the first were not there.
        ShownTrend shown({first, second, last}, {1280, 560});
        const QImage image = shown.picture();
        const QImage bare = ShownTrend({second, last}, {1280, 560}).picture();
        ASSERT_EQ(image.size(), bare.size());
        const int x = (shown.plot().place(0).center().x() + shown.plot().place(1).center().x()) / 2;
        int curves = 0;
        bool isCurve = false;
        for (int y = 0; y < image.height(); ++y) {
            // Dashes may leave out one column, hardly three.
            bool differs = false;
            for (const int dx : {-5, -2, 2, 5}) {
                differs |= image.pixel(x + dx, y) != bare.pixel(x + dx, y);
            }
            curves += differs && !isCurve ? 1 : 0;
            isCurve = differs;
        }
        EXPECT_EQ(curves, one.curves);
    }
}

TEST(TrendView, LimitsOfCeilingAndVisibilityCoincide) {
    const auto heightOf = [](reports::Conditions conditions) {
        Metar metar = metarAt(noon - 8h);
        const QImage empty = ShownTrend({metar, metarAt(noon)}).picture();
        metar.conditions = std::move(conditions);
        ShownTrend shown({metar, metarAt(noon)});
        const QImage image = shown.picture();
        const int x = shown.plot().place(0).center().x();
        int y = 0;
        while (y < image.height() && image.pixel(x, y) == empty.pixel(x, y)) {
            ++y;
        }
        EXPECT_LT(y, image.height()) << "nothing is drawn";
        return y;
    };
    int above = 100'000;
    for (const auto& [feet, miles] : {std::pair(0, 0.0), std::pair(500, 1.0), std::pair(1000, 3.0),
                                      std::pair(3000, 5.0), std::pair(60'000, 10.0)}) {
        reports::Conditions low;
        low.layers = {{reports::Cover::overcast, feet, ""}};
        reports::Conditions misty;
        misty.visibility = reports::Visibility{miles, false};
        const int ceiling = heightOf(low);
        EXPECT_NEAR(ceiling, heightOf(misty), 1) << feet;
        EXPECT_LT(ceiling, above - 10);
        above = ceiling;
    }
}

TEST(TrendView, ValuesFollowPointerAndKeys) {
    ShownTrend shown({wholeAt(noon - 3h), metarAt(noon - 2h), wholeAt(noon - 1h)});
    EXPECT_TRUE(shown.values().starts_with("Trend values: 21 Nov 11:00 UTC")) << shown.values();
    QTest::mouseMove(&shown.plot(), QPoint(shown.plot().place(0).center().x() - 60, 40));
    EXPECT_EQ(shown.values(),
              "Trend values: 21 Nov 09:00 UTC, category unknown: 3 °C; dew point -2 °C; wind from "
              "230° at 12 kt, gusts 22 kt; visibility 2 statute miles; ceiling 2,200 ft; 1013 hPa");
    shown.view.setFocus();
    QTest::keyClick(&shown.plot(), Qt::Key_Right);
    EXPECT_EQ(shown.values(), "Trend values: 21 Nov 10:00 UTC, category unknown");
    // What is being read stays when a new report comes, until it is another station's.
    std::vector<Metar> later{wholeAt(noon - 3h), metarAt(noon - 2h), wholeAt(noon)};
    shown.view.setReports(later, noon);
    EXPECT_TRUE(shown.values().starts_with("Trend values: 21 Nov 10:00 UTC"));
    for (Metar& metar : later) {
        metar.station = "KABC";
    }
    shown.view.setReports(later, noon);
    EXPECT_TRUE(shown.values().starts_with("Trend values: 21 Nov 12:00 UTC"));
    QTest::keyClick(&shown.plot(), Qt::Key_Home);
    EXPECT_TRUE(shown.values().starts_with("Trend values: 21 Nov 09:00 UTC"));
}

TEST(TrendView, OnlyTheLastDayIsShown) {
    const char* nothing = "Trend values: No METARs of the last 24 hours are known.";
    const struct {
        const char* name;
        std::vector<Metar> metars;
        int count;
    } cases[] = {
        {"none", {}, 0},
        {"old", {wholeAt(noon - 24h - 1min)}, 0},
        {"far ahead", {wholeAt(noon + 61min)}, 0},
        {"a little ahead", {wholeAt(noon + 10min)}, 1},
        {"in no order", {wholeAt(noon), wholeAt(noon - 24h), wholeAt(noon - 40h)}, 2},
        {"nothing in it", {metarAt(noon - 2h)}, 1},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        ShownTrend shown(one.metars);
        EXPECT_EQ(shown.plot().count(), one.count);
        EXPECT_EQ(shown.values() == nothing, one.count == 0) << shown.values();
        EXPECT_EQ(shown.plot().isVisible(), one.count > 0);
        EXPECT_EQ(shown.plot().accessibleDescription().isEmpty(), one.count == 0);
        EXPECT_FALSE(shown.view.grab().isNull());
    }
}

} // namespace
} // namespace desktop
