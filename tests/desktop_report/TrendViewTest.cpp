// SPDX-License-Identifier: MIT
#include "desktop/report/TrendView.h"

#include "desktop/report/TrendPlot.h"

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <gtest/gtest.h>

#include <cmath>

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
    [[nodiscard]] std::string values() const {
        return QAccessible::queryAccessibleInterface(const_cast<QLabel*>(&view.values()))
            ->text(QAccessible::Name)
            .toStdString();
    }

    TrendView view;
};

TEST(TrendView, GapsAreNotDrawnOver) {
    const auto lacking = [](auto change) {
        Metar metar = wholeAt(noon - 8h);
        change(metar);
        return metar;
    };
    const Metar whole = wholeAt(noon - 8h);
    const struct {
        const char* name;
        Metar first;
        std::chrono::minutes after;
        /// Of the seven curves.
        int curves;
    } cases[] = {
        {"an hour", whole, 50min, 7},
        {"an hour and a half", whole, 90min, 7},
        {"longer", whole, 91min, 0},
        {"no temperature", lacking([](Metar& metar) { metar.temperature.reset(); }), 50min, 6},
        {"no wind", lacking([](Metar& metar) { metar.conditions.wind.reset(); }), 50min, 5},
        {"no gust", lacking([](Metar& metar) { metar.conditions.wind->gust.reset(); }), 50min, 6},
        {"no visibility", lacking([](Metar& metar) { metar.conditions.visibility.reset(); }), 50min,
         6},
        {"no clouds told", lacking([](Metar& metar) { metar.conditions.layers.clear(); }), 50min,
         6},
        {"no sky seen", lacking([](Metar& metar) {
             metar.conditions.layers = {{reports::Cover::obscured, {}, ""}};
         }),
         50min, 6},
        {"perhaps lower", lacking([](Metar& metar) {
             metar.conditions.layers.push_back({reports::Cover::overcast, {}, ""});
         }),
         50min, 6},
        {"at least two miles",
         lacking([](Metar& metar) { metar.conditions.visibility->isOrMore = true; }), 50min, 6},
        {"no pressure", lacking([](Metar& metar) { metar.altimeter.reset(); }), 50min, 6},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        // Where nothing is drawn between two reports, it looks as if the first were not there.
        const Metar second = wholeAt(one.first.observed + one.after);
        const Metar last = wholeAt(noon);
        ShownTrend shown({one.first, second, last}, {1280, 560});
        const QImage image = shown.plot().grab().toImage();
        const int x = (shown.plot().place(0).center().x() + shown.plot().place(1).center().x()) / 2;
        ShownTrend without({second, last}, {1280, 560});
        const QImage bare = without.plot().grab().toImage();
        ASSERT_EQ(image.size(), bare.size());
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
        ShownTrend bare({metar, metarAt(noon)});
        metar.conditions = std::move(conditions);
        ShownTrend shown({metar, metarAt(noon)});
        const QImage image = shown.plot().grab().toImage();
        const QImage empty = bare.plot().grab().toImage();
        const int x = shown.plot().place(0).center().x();
        int sum = 0;
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            const bool differs = image.pixel(x, y) != empty.pixel(x, y);
            sum += differs ? y : 0;
            count += differs ? 1 : 0;
        }
        EXPECT_GT(count, 0);
        return double{1} * sum / std::max(count, 1);
    };
    const auto ceiling = [&](int feet) {
        reports::Conditions conditions;
        conditions.layers = {{reports::Cover::overcast, feet, ""}};
        return heightOf(conditions);
    };
    const auto visibility = [&](double miles) {
        reports::Conditions conditions;
        conditions.visibility = reports::Visibility{miles, false};
        return heightOf(conditions);
    };
    double above = ceiling(0);
    for (const auto& [feet, miles] : {std::pair(500, 1.0), std::pair(1000, 3.0),
                                      std::pair(3000, 5.0), std::pair(60'000, 10.0)}) {
        EXPECT_NEAR(ceiling(feet), visibility(miles), 1) << feet;
        EXPECT_LT(ceiling(feet), above - 10);
        above = ceiling(feet);
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

TEST(TrendView, ScrollsRatherThanSqueezes) {
    std::vector<Metar> day;
    for (int hour = 24; hour >= 0; --hour) {
        day.push_back(wholeAt(noon - std::chrono::hours(hour)));
    }
    ShownTrend shown(day, {420, 260});
    auto& bar = *shown.view.findChild<QScrollArea*>()->verticalScrollBar();
    EXPECT_GT(bar.maximum(), 0);
    EXPECT_GE(shown.plot().height(), 20 * shown.plot().fontMetrics().height());
    shown.view.resize(900, 900);
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar.maximum() == 0; })) << "it still scrolls";
    EXPECT_GT(shown.plot().height(), 700);
}

} // namespace
} // namespace desktop
