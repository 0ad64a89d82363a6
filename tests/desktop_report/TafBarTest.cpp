// SPDX-License-Identifier: MIT
#include "desktop/report/TafBar.h"

#include "desktop/controls/CategoryLook.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QTest>
#include <QToolTip>
#include <gtest/gtest.h>

#include <array>
#include <utility>

namespace desktop {
namespace {

using namespace std::chrono_literals;
using reports::Category;
using reports::Date;
using reports::Taf;
using Kind = reports::Forecast::Kind;

const Date dawn = Date(std::chrono::sys_days(std::chrono::year(2026) / 11 / 21)) + 6h;

reports::Forecast part(Kind kind, Category category, std::chrono::hours from,
                       std::chrono::hours to) {
    reports::Forecast made;
    made.kind = kind;
    made.category = category;
    made.begins = dawn + from;
    made.ends = dawn + to;
    return made;
}

/// Twenty hours with one part of each kind. Ends are as the service sends them.
Taf ofEveryKind() {
    Taf taf;
    taf.station = "KXYZ";
    taf.begins = dawn;
    taf.ends = dawn + 20h;
    taf.forecasts = {part(Kind::base, Category::VFR, 0h, 4h),
                     part(Kind::temporary, Category::IFR, 1h, 3h),
                     part(Kind::probable, Category::LIFR, 2h, 3h),
                     part(Kind::from, Category::MVFR, 4h, 10h),
                     part(Kind::becoming, Category::LIFR, 10h, 14h),
                     part(Kind::temporary, Category::VFR, 12h, 14h)};
    taf.forecasts[2].probability = 40;
    taf.forecasts[4].complete = dawn + 14h;
    taf.forecasts[4].stated.weather = "<FG>";
    return taf;
}

struct ShownBar {
    explicit ShownBar(const Taf& taf, Date now = dawn + 5h, int width = 640) {
        bar.setTaf(&taf, now);
        bar.resize(width, bar.sizeHint().height());
        bar.show();
        bar.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&bar)) << "the window did not become active";
    }
    QAccessibleInterface& spoken() { return *QAccessible::queryAccessibleInterface(&bar); }
    QImage picture() { return bar.grab().toImage(); }

    TafBar bar;
};

TEST(TafBar, PartsHaveTheirTimesAndLanes) {
    ShownBar shown(ofEveryKind());
    const QRect base = shown.bar.place(0);
    const double left = base.left();
    const double hour = (shown.bar.place(4).right() - left) / 20.0;
    // From and to which hour, and in which lane. The third is at the same time as the second, so
    // below it. Once complete, the fifth lasts to the end. For the last, the first lane is free.
    const std::array<int, 3> cases[] = {{0, 4, 0},  {1, 3, 1},   {2, 3, 2},
                                        {4, 10, 0}, {10, 20, 0}, {12, 14, 1}};
    for (int item = 0; const auto& [begins, ends, lane] : cases) {
        SCOPED_TRACE(item);
        const QRect place = shown.bar.place(item);
        EXPECT_NEAR(place.left(), left + begins * hour, 2);
        EXPECT_NEAR(place.right(), left + ends * hour, 2);
        const int step = shown.bar.place(1).top() - base.top();
        EXPECT_GT(step, base.height() - 2);
        EXPECT_NEAR(place.top(), base.top() + lane * step, 1);
        EXPECT_EQ(shown.bar.itemAt(place.center()), item);
        const QPoint onScreen = shown.bar.mapToGlobal(place.center());
        EXPECT_EQ(shown.spoken().childAt(onScreen.x(), onScreen.y()), shown.spoken().child(item));
        ++item;
    }
    EXPECT_EQ(
        shown.bar.itemAt({static_cast<int>(left + 8 * hour), shown.bar.place(1).center().y()}), -1);
}

TEST(TafBar, AChangeIsASlopeFromOneColourToTheNext) {
    ShownBar shown(ofEveryKind());
    const QImage image = shown.picture();
    const QColor ground = shown.bar.palette().color(QPalette::Window);
    const QRect place = shown.bar.place(4);
    const int hour = place.width() / 10;
    const QColor before = categoryColor(Category::MVFR, ground);
    const QColor after = categoryColor(Category::LIFR, ground);
    EXPECT_EQ(image.pixelColor(place.left() - hour, place.top() + 3), before);
    EXPECT_EQ(image.pixelColor(place.left() + hour, place.top() + 3), before);
    EXPECT_EQ(image.pixelColor(place.left() + 3 * hour, place.bottom() - 3), after);
    EXPECT_EQ(image.pixelColor(place.left() + 5 * hour, place.top() + 3), after);
    // What may be for a while lets the ground through; what lasts does not.
    const QRect passing = shown.bar.place(1);
    int open = 0;
    for (int x = passing.left() + 3; x < passing.left() + 20; ++x) {
        open += image.pixelColor(x, passing.top() + 4) == ground ? 1 : 0;
    }
    EXPECT_GT(open, 3);
    EXPECT_LT(open, 16);
}

TEST(TafBar, KeysGoFromPartToPartInView) {
    ShownBar shown(ofEveryKind());
    shown.bar.setFocus();
    // The part that holds now.
    EXPECT_EQ(shown.bar.current(), 3);
    const std::pair<Qt::Key, int> keys[] = {{Qt::Key_Right, 4}, {Qt::Key_End, 5},
                                            {Qt::Key_Right, 5}, {Qt::Key_Home, 0},
                                            {Qt::Key_Left, 0},  {Qt::Key_Right, 1}};
    for (const auto& [key, expected] : keys) {
        QTest::keyClick(&shown.bar, key);
        EXPECT_EQ(shown.bar.current(), expected);
        QImage framed = shown.picture();
        const QRect place = shown.bar.place(expected);
        EXPECT_EQ(framed.pixelColor(place.center().x() + 2, place.top()),
                  shown.bar.palette().color(QPalette::WindowText));
    }
    QTest::mouseClick(&shown.bar, Qt::LeftButton, {}, shown.bar.place(2).center());
    EXPECT_EQ(shown.bar.current(), 2);
    // A minute later nothing has moved.
    const Taf same = ofEveryKind();
    shown.bar.setTaf(&same, dawn + 12h);
    EXPECT_EQ(shown.bar.current(), 2);
}

TEST(TafBar, PartsAreReadInTheirOrderAndHaveToolTips) {
    ShownBar shown(ofEveryKind());
    EXPECT_EQ(shown.spoken().role(), QAccessible::List);
    EXPECT_EQ(shown.spoken().text(QAccessible::Name), "TAF timeline");
    ASSERT_EQ(shown.spoken().childCount(), 6);
    EXPECT_EQ(shown.spoken().child(3)->text(QAccessible::Name), "From 21 Nov 10:00 UTC, MVFR");
    EXPECT_EQ(shown.spoken().child(4)->text(QAccessible::Name),
              "Becoming 21 Nov 16:00 to 20:00 UTC, LIFR: Weather: <FG>");
    EXPECT_EQ(shown.spoken().indexOfChild(shown.spoken().child(2)), 2);
    const QPoint at = shown.bar.place(4).center();
    QHelpEvent help(QEvent::ToolTip, at, shown.bar.mapToGlobal(at));
    QApplication::sendEvent(&shown.bar, &help);
    EXPECT_TRUE(QToolTip::text().contains("Weather: &lt;FG&gt;")) << QToolTip::text().toStdString();
    QToolTip::hideText();

    shown.bar.setFocus();
    QTest::keyClick(&shown.bar, Qt::Key_Left);
    EXPECT_EQ(shown.spoken().focusChild()->text(QAccessible::Name),
              "Probability 40 %, 21 Nov 08:00 to 09:00 UTC, LIFR");
    EXPECT_TRUE(shown.spoken().child(2)->state().focused);

    QAccessibleInterface* gone = shown.spoken().child(5);
    const QAccessible::Id id = QAccessible::uniqueId(gone);
    shown.bar.setTaf(nullptr, dawn);
    EXPECT_EQ(shown.spoken().childCount(), 0);
    EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
    EXPECT_EQ(shown.bar.current(), -1);
}

TEST(TafBar, OddForecastsNeitherHangNorLeaveTheBar) {
    const std::pair<const char*, void (*)(Taf&)> cases[] = {
        {"no parts", [](Taf& taf) { taf.forecasts.clear(); }},
        {"cancelled", [](Taf& taf) { taf.isCancelled = true; }},
        {"no time", [](Taf& taf) { taf.ends = taf.begins; }},
        {"backwards", [](Taf& taf) { taf.ends = taf.begins - 5h; }},
        {"years", [](Taf& taf) { taf.ends = taf.begins + std::chrono::years(7000); }},
        {"parts outside",
         [](Taf& taf) {
             taf.forecasts[1].begins -= 300h;
             taf.forecasts[1].ends -= 300h;
             taf.forecasts[3].begins += std::chrono::years(90);
         }},
        {"parts backwards",
         [](Taf& taf) {
             for (reports::Forecast& one : taf.forecasts) {
                 std::swap(one.begins, one.ends);
                 one.complete = dawn - 30h;
             }
         }},
        {"many at once", [](Taf& taf) { taf.forecasts.resize(3000, taf.forecasts[1]); }},
    };
    for (const auto& [name, change] : cases) {
        SCOPED_TRACE(name);
        Taf taf = ofEveryKind();
        change(taf);
        ShownBar shown(taf);
        shown.bar.setFocus();
        for (const int width : {1, 200, 900}) {
            shown.bar.resize(width, shown.bar.sizeHint().height());
            EXPECT_FALSE(shown.picture().isNull());
            for (int item = 0; item < shown.bar.count(); ++item) {
                const QRect place = shown.bar.place(item);
                EXPECT_TRUE(place.isEmpty() || width == 1 || shown.bar.rect().contains(place))
                    << item;
            }
        }
        QTest::keyClick(&shown.bar, Qt::Key_End);
        EXPECT_EQ(shown.bar.current(), shown.bar.count() - 1);
        EXPECT_EQ(shown.bar.count() == 0, taf.isCancelled || taf.forecasts.empty());
        EXPECT_LT(shown.bar.sizeHint().height(), 12 * shown.bar.fontMetrics().height());
    }
}

} // namespace
} // namespace desktop
