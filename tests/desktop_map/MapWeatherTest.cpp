// SPDX-License-Identifier: MIT
#include "desktop/controls/CategoryLook.h"
#include "tests/desktop_map/MapStage.h"

#include <QHelpEvent>
#include <QToolTip>

#include <array>
#include <cmath>
#include <map>
#include <random>

namespace {

using reports::Category;
using reports::Metar;

constexpr reports::Date noon{std::chrono::hours(400'000)};

Metar metarOf(Category category, std::chrono::minutes age, std::optional<reports::Wind> wind = {}) {
    Metar metar;
    metar.category = category;
    metar.observed = noon - age;
    metar.conditions.wind = wind;
    return metar;
}

TEST(StationWeather, AReportGrowsPaleThenCountsAsNone) {
    const struct {
        std::chrono::minutes age;
        bool isShown;
        bool isOld;
    } rows[] = {{std::chrono::minutes(-30), true, false},
                {std::chrono::minutes(74), true, false},
                {std::chrono::minutes(75), true, true},
                {std::chrono::minutes(180), true, true},
                {std::chrono::minutes(181), false, false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.age.count());
        const Metar metar = metarOf(Category::VFR, row.age, reports::Wind{10, false, 5, {}});
        const auto weather = desktop::stationWeather(&metar, 0, noon);
        EXPECT_EQ(weather.category.has_value(), row.isShown);
        EXPECT_EQ(weather.isOld, row.isOld);
        EXPECT_EQ(weather.barb.has_value(), row.isShown);
    }
    EXPECT_FALSE(desktop::stationWeather(nullptr, 0, noon).category);
}

TEST(WindBarb, HasItsFeathersWhereTheWindSaysSo) {
    constexpr std::optional<int> none;
    const struct {
        reports::Wind wind;
        double latitude;
        bool isShown;
        /// Flags, long and short feathers; none of them and a ring in a calm.
        std::array<int, 3> feathers;
    } rows[] = {{{0, false, 0, 25}, 50, true, {0, 0, 0}},
                {{200, false, 2, {}}, 50, true, {0, 0, 0}},
                {{360, false, 3, {}}, 50, true, {0, 0, 1}},
                {{90, false, 7, {}}, -1, true, {0, 0, 1}},
                {{270, false, 8, {}}, 50, true, {0, 1, 0}},
                {{225, false, 47, 60}, -33, true, {0, 4, 1}},
                {{10, false, 48, {}}, 1, true, {1, 0, 0}},
                {{130, false, 125, {}}, -50, true, {2, 2, 1}},
                {{130, false, 2'000'000'000, {}}, 50, true, {6, 0, 0}},
                {{none, true, 3, {}}, 50, false, {0, 0, 0}},
                {{90, true, 3, {}}, 50, false, {0, 0, 0}},
                {{none, false, 12, {}}, 50, false, {0, 0, 0}}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.wind.speed);
        const Metar metar = metarOf(Category::VFR, {}, row.wind);
        const auto barb = desktop::stationWeather(&metar, row.latitude, noon).barb;
        ASSERT_EQ(barb.has_value(), row.isShown);
        if (!barb) {
            continue;
        }
        std::array<int, 3> feathers{};
        double tip = 0;
        double outermost = 0;
        // Turned so that the staff points up.
        const QTransform turn = QTransform().rotate(-row.wind.direction.value_or(0));
        for (const QPolygonF& part : turn.map(desktop::barbPath(*barb)).toSubpathPolygons()) {
            const double across = part[1].x();
            if (barb->fives == 0) {
                EXPECT_GT(part.size(), 4);
                EXPECT_NEAR(part.boundingRect().center().manhattanLength(), 0, 0.1);
            } else if (std::abs(across) < 0.01) {
                tip = -part[1].y();
            } else {
                EXPECT_EQ(across > 0, row.latitude > 0);
                outermost = std::max(outermost, -part[0].y());
                ++feathers.at(part.size() > 2 ? 0 : std::abs(across) > 6 ? 1 : 2);
            }
        }
        EXPECT_EQ(feathers, row.feathers);
        if (barb->fives > 0) {
            EXPECT_GT(tip, 20);
            // A lone short feather is set in from the end.
            EXPECT_NEAR(tip - outermost, barb->fives == 1 ? 4 : 0, 0.01);
        }
    }
}

TEST(WindBarb, NoneTouchesAnotherAndMovingTheMapChangesNone) {
    desktop::MapState state;
    // Most of the stations are in one crowd across the date line.
    std::mt19937 random(7);
    const auto part = [&] { return static_cast<double>(random() % 10'000) / 10'000 - 0.5; };
    const auto below = [&](unsigned end) { return static_cast<int>(random() % end); };
    for (int i = 0; i < 4000; ++i) {
        const double spread = i % 4 == 0 ? 360 : 30;
        const platform::Location at{part() * 80, std::remainder(180 + part() * spread, 360)};
        const Metar metar =
            metarOf(Category::VFR, {}, reports::Wind{below(361), false, below(80), {}});
        state.stations.push_back({"", at});
        state.weather.push_back(desktop::stationWeather(&metar, at.latitude, noon));
    }
    state.showsWeather = true;
    desktop::WeatherLayer layer(state);
    layer.renew();
    // What the barbs cover, by station.
    const auto places = [&] {
        std::map<std::uint32_t, QRectF> covered;
        for (const auto& barb : layer.barbs()) {
            const auto at =
                state.view.toScreen(map::project(state.stations[barb.station].location)).value();
            covered[barb.station] = desktop::barbPath(*state.weather[barb.station].barb)
                                        .boundingRect()
                                        .translated(at.x, at.y);
        }
        return covered;
    };
    state.view.setSize({900, 600});
    for (const double span : {60, 31, 12, 3}) {
        SCOPED_TRACE(span);
        ASSERT_TRUE(state.view.show({{10, 180}, span * 2 / 3, span}));
        const auto before = places();
        EXPECT_GE(before.size(), span < 10 ? 4U : 50U);
        for (auto one = before.begin(); one != before.end(); ++one) {
            for (auto other = std::next(one); other != before.end(); ++other) {
                EXPECT_FALSE(one->second.intersects(other->second))
                    << one->first << ' ' << other->first;
            }
        }
        state.view.move(150, -90);
        const QRectF frame = state.frame();
        const auto after = places();
        for (const auto& [station, place] : before) {
            EXPECT_TRUE(after.contains(station) || !frame.intersects(place.translated(150, -90)))
                << station;
        }
        for (const auto& [station, place] : after) {
            EXPECT_TRUE(before.contains(station) ||
                        !frame.adjusted(9, 9, -9, -9).contains(place.translated(-150, 90)))
                << station;
        }
    }
}

class MapWeatherTest : public support::MapStage {
protected:
    MapWeatherTest() {
        view_.resize(700, 500);
        view_.setStations(stations_);
        view_.setRegion(map::regionWithDistance({48.5, 11.5}, 200'000, 200'000));
    }

    void showWeather() {
        view_.setWeather(
            [this](const std::string& identifier) -> const Metar* {
                const auto found = metars_.find(identifier);
                return found == metars_.end() ? nullptr : &found->second;
            },
            noon);
    }
    QColor colorOf(std::size_t station) { return colorAt(pointOf(stations_[station].location)); }
    /// The help at a station, or at a point of the map.
    QString helpAt(std::size_t station) { return helpAt(pointOf(stations_[station].location)); }
    QString helpAt(const QPoint& at) {
        QTest::mouseMove(&view_, at);
        QHelpEvent help(QEvent::ToolTip, at, view_.mapToGlobal(at));
        QCoreApplication::sendEvent(&view_, &help);
        return QToolTip::text();
    }

    std::vector<map::Station> stations_{{"EDDM", {48.35, 11.79}},
                                        {"EDMO", {48.08, 11.28}},
                                        {"ETSI", {48.72, 11.53}},
                                        {"", {49, 11}}};
    std::map<std::string, Metar> metars_{
        {"EDDM", metarOf(Category::LIFR, std::chrono::minutes(12))},
        {"EDMO", metarOf(Category::VFR, std::chrono::minutes(100))}};
};

TEST_F(MapWeatherTest, DotsFollowTheWeatherAndEveryChangeOfTheStations) {
    const QImage without = picture();
    showWeather();
    const QColor land = view_.state().scheme.land;
    const QColor bad = desktop::categoryColor(Category::LIFR, land);
    const QColor sea = view_.state().scheme.sea;
    EXPECT_EQ(colorOf(0), bad);
    EXPECT_NE(colorOf(1), desktop::categoryColor(Category::VFR, land));
    EXPECT_NE(colorOf(1), sea);
    EXPECT_EQ(colorOf(2), sea) << "a hollow dot is filled";
    std::ranges::reverse(stations_);
    view_.setStations(stations_);
    EXPECT_EQ(colorOf(3), bad);
    // The worst one of several at a place is to be seen, wherever it is in the list.
    stations_.push_back({"EDMO", stations_[3].location});
    view_.setStations(stations_);
    EXPECT_EQ(colorOf(4), bad);
    stations_.pop_back();
    view_.setStations(stations_);
    view_.setWeather(nullptr, noon);
    EXPECT_EQ(picture(), without);
}

TEST_F(MapWeatherTest, AToolTipTellsRawTextAndAge) {
    metars_["EDDM"].raw = "METAR EDDM <b>09008KT</b> & 0350";
    EXPECT_EQ(helpAt(0), QString());
    showWeather();
    const QString help = helpAt(0);
    for (const char* part :
         {"EDDM, LIFR", "METAR EDDM &lt;b&gt;09008KT&lt;/b&gt; &amp; 0350", "12 minutes ago"}) {
        EXPECT_TRUE(help.contains(QString::fromUtf8(part))) << part << "\n" << qPrintable(help);
    }
    EXPECT_TRUE(helpAt(2).contains(QStringLiteral("ETSI: no report")));
    std::ranges::reverse(stations_);
    view_.setStations(stations_);
    EXPECT_TRUE(helpAt(3).contains(QStringLiteral("12 minutes ago")));
    helpAt({350, 30});
    EXPECT_TRUE(QTest::qWaitFor([] { return !QToolTip::isVisible(); })) << "the tip stays";
    metars_.clear();
    EXPECT_TRUE(helpAt(3).contains(QStringLiteral("EDDM: no report")));
}

TEST_F(MapWeatherTest, FurnitureKeepsClearOfASelectedStationAndNeverHidesOne) {
    const map::Station munich = stations_[0];
    view_.setMarker(munich);
    showWeather();
    const desktop::FurnitureLayer furniture(view_.state());
    for (const QSize& size : {QSize(1000, 600), QSize(420, 230), QSize(260, 160), QSize(180, 300),
                              QSize(500, 110), QSize(150, 100)}) {
        for (const int type : {0, 1, 2, 3}) {
            SCOPED_TRACE(testing::Message() << size.width() << 'x' << size.height() << ' ' << type);
            view_.setMapType(type);
            view_.resize(size);
            view_.grab();
            showAround(munich.location);
            const std::vector<QRectF> places = furniture.places();
            EXPECT_FALSE(places.empty());
            EXPECT_TRUE(places.size() >= 3 || size.width() < 260);
            for (const QRectF& place : places) {
                EXPECT_TRUE(view_.state().frame().contains(place));
                EXPECT_FALSE(place.intersects(furniture.middle()));
                if (type == platform::flyoverMap) {
                    continue; // it has its scale only in the middle
                }
                const QPointF by = place.center() - pointOf(munich.location);
                map::Camera moved = view_.state().view;
                moved.move(by.x(), by.y());
                view_.setCenterCoordinate(map::unproject(moved.centre()));
                // The marker has the weather inside.
                EXPECT_EQ(colorOf(0),
                          desktop::categoryColor(Category::LIFR, view_.state().scheme.land));
                EXPECT_EQ(colorAt(pointOf(munich.location) + QPoint(0, 8)),
                          view_.state().scheme.marker);
            }
        }
    }
    // A credit that has been cut short is told in full.
    view_.setMapType(1);
    view_.resize(260, 160);
    view_.grab();
    const QString whole = furniture.elidedCredit();
    ASSERT_FALSE(whole.isEmpty());
    EXPECT_TRUE(helpAt(furniture.creditPlace().center().toPoint())
                    .contains(whole.right(40).toHtmlEscaped()));
}

} // namespace
