// SPDX-License-Identifier: MIT
#include "desktop/map/MapView.h"
#include "tests/support/LoopbackTiles.h"

#include <QImage>
#include <QPalette>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

using desktop::MapView;
using platform::Location;
using platform::Region;

desktop::MapSetup offline() {
    desktop::MapSetup setup;
    setup.baseMap = QStringLiteral(NOSIG_SOURCE_DIR "/resources/map/world.map");
    // A credit without a server behind it: nobody listens on the discard port.
    for (map::TileServer& server : setup.tileServers) {
        server.address = "http://127.0.0.1:9/{z}/{x}/{y}";
    }
    return setup;
}

void showAround(MapView& view, const Location& centre, double metres = 2000) {
    view.setCenterCoordinate(centre);
    view.setRegion(view.regionThatFits(map::regionWithDistance(centre, metres, metres)));
}

double metresNorth(const Region& region) {
    const double half = region.latitudeSpan / 2;
    return platform::distanceMetres({region.centre.latitude - half, 0},
                                    {region.centre.latitude + half, 0});
}

double metresEast(const Region& region) {
    return platform::distanceMetres({region.centre.latitude, 0},
                                    {region.centre.latitude, region.longitudeSpan});
}

/// Pixels in which two pictures differ.
int difference(const QImage& one, const QImage& other) {
    int count = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            count += one.pixel(x, y) != other.pixel(x, y);
        }
    }
    return count;
}

class MapViewTest : public testing::Test {
protected:
    static QImage picture(MapView& view) { return view.viewport()->grab().toImage(); }
};

TEST_F(MapViewTest, RegionIsReadBackAndFitsEveryShapeOfTheView) {
    const struct {
        const char* what;
        Location place;
        double latitude;
    } rows[] = {{"equator", {0, 9.4}, 0},
                {"sixty north", {60.1, -149.4}, 60.1},
                {"near the edge", {82.52, -62.3}, 82.52},
                {"beyond the edge", {-90, 0}, -map::highestLatitude},
                {"date line", {-16.69, 180}, -16.69}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        MapView view(offline());
        // Set before the view has its size, as at the start of the program.
        showAround(view, row.place);
        for (const QSize& size : {QSize(640, 400), QSize(300, 700), QSize(500, 500)}) {
            view.resize(size);
            view.grab();
            const Region shown = view.region();
            EXPECT_NEAR(shown.centre.latitude, row.latitude, 1e-4);
            EXPECT_NEAR(std::remainder(shown.centre.longitude - row.place.longitude, 360), 0, 1e-6);
            EXPECT_NEAR(std::min(metresNorth(shown), metresEast(shown)), 2000, 1);
            EXPECT_NEAR(metresEast(shown) / metresNorth(shown),
                        size.width() / static_cast<double>(size.height()),
                        0.008 * size.width() / size.height());
            // The same when the logic asks the view that has its size.
            showAround(view, row.place);
            EXPECT_NEAR(view.region().latitudeSpan, shown.latitudeSpan, 1e-9);
        }
    }
}

TEST_F(MapViewTest, InvalidPlacesAndTypesChangeNothing) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    MapView view(offline());
    view.resize(600, 400);
    showAround(view, {48, 11});
    const QImage before = picture(view);
    view.setCenterCoordinate({nan, 11});
    view.setCenterCoordinate({48, 181});
    view.setRegion({{48, 11}, nan, 1});
    view.setRegion({{91, 11}, 1, 1});
    view.setMapType(-1);
    view.setMapType(5);
    view.setMapType(std::numeric_limits<std::int64_t>::min());
    view.setMarker(map::Station{"NONE", {nan, nan}});
    EXPECT_EQ(picture(view), before);
    view.resize(400, 300);
    view.resize(600, 400);
    EXPECT_EQ(picture(view), before);
}

TEST_F(MapViewTest, OfflineMapShowsLandSeaAndFurniture) {
    MapView view(offline());
    view.resize(600, 400);
    const map::Station munich{"EDDM", {48.35, 11.79}};
    for (int type = 0; type <= 4; ++type) {
        SCOPED_TRACE(type);
        view.setMapType(type);
        const desktop::MapScheme& scheme = view.state().scheme;
        const auto share = [&](const QColor& color) {
            const QImage image = picture(view);
            int count = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    count += image.pixelColor(x, y) == color;
                }
            }
            return count / static_cast<double>(image.width() * image.height());
        };
        view.setMarker({});
        showAround(view, munich.location);
        EXPECT_GT(share(scheme.land), 0.75);
        showAround(view, {30, -40});
        EXPECT_GT(share(scheme.sea), 0.75);
        // The Channel has both, and on the other shore another country's name.
        showAround(view, {50.5, 0}, 600'000);
        EXPECT_GT(share(scheme.sea), 0.15);
        EXPECT_GT(share(scheme.land), 0.15);

        showAround(view, munich.location);
        const QImage without = picture(view);
        view.setMarker(munich);
        const QImage with = picture(view);
        EXPECT_GT(difference(with, without), 100);
        EXPECT_EQ(with.pixelColor(300, 200), scheme.marker);
        view.setStations({munich, {"NEAR", {48.352, 11.795}}});
        EXPECT_GT(difference(picture(view), with), 10);
        view.setStations({});
    }
}

TEST_F(MapViewTest, TypesDifferAndFourIsHybrid) {
    support::LoopbackTiles tiles;
    desktop::MapSetup setup = offline();
    setup.tileServers = {tiles.server(map::Imagery::standard, 19),
                         tiles.server(map::Imagery::satellite, 14)};
    MapView view(std::move(setup));
    view.resize(600, 400);
    view.show();
    const map::Station station{"LSZA", {46.004, 8.911}};
    view.setStations({station});
    const auto loaded = [&](std::int64_t type, double metres) {
        view.setMapType(type);
        showAround(view, station.location, metres);
        EXPECT_TRUE(QTest::qWaitFor([&] {
            return std::ranges::all_of(view.state().tiles, [&](const map::Tile& tile) {
                return view.state().loader->image(*view.state().server, tile);
            });
        }));
        return picture(view);
    };
    std::vector<QImage> pictures;
    for (int type = 0; type <= 3; ++type) {
        pictures.push_back(loaded(type, 100'000));
        for (int other = 0; other < type; ++other) {
            EXPECT_GT(difference(pictures[static_cast<std::size_t>(type)],
                                 pictures[static_cast<std::size_t>(other)]),
                      500)
                << type << ' ' << other;
        }
    }
    EXPECT_EQ(loaded(4, 100'000), pictures[2]);

    // Satellite pictures end at their server's highest level, and are enlarged beyond.
    tiles.requests.clear();
    loaded(1, 2000);
    for (const auto& request : tiles.requests) {
        EXPECT_TRUE(request.path.startsWith("/satellite/14/")) << request.path.constData();
    }
    EXPECT_FALSE(tiles.requests.empty());

    // A map that nobody sees asks for nothing.
    tiles.requests.clear();
    view.setHidden(true);
    view.setMapType(0);
    showAround(view, {10, 10});
    QTest::qWait(0);
    EXPECT_TRUE(view.state().tiles.empty());
    EXPECT_TRUE(tiles.requests.empty());
    view.setHidden(false);
    EXPECT_FALSE(view.state().tiles.empty());
}

TEST_F(MapViewTest, TilesTakeTheBaseMapsPlaceAsTheyCome) {
    support::LoopbackTiles tiles;
    tiles.answer = [](QTcpSocket& socket, const support::LoopbackTiles::Request& request) {
        // Only the coarse level is there.
        socket.write(
            request.path.contains("/10/")
                ? support::LoopbackTiles::reply(support::LoopbackTiles::picture(request.path))
                : support::LoopbackTiles::reply({}, {}, "404 Not Found"));
    };
    desktop::MapSetup setup = offline();
    setup.tileServers = {tiles.server(map::Imagery::standard, 19)};
    MapView view(std::move(setup));
    view.resize(512, 384);
    view.show();
    const Location place{47, 8};
    showAround(view, place, 40'000);
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return !tiles.requests.empty() && !view.state().loader->isBusy(); }));
    ASSERT_EQ(view.state().tiles.front().zoom, 10);
    EXPECT_NE(picture(view).pixelColor(30, 60), view.state().scheme.land);
    // Nearer, the coarse picture stands in for the finer ones that do not come.
    showAround(view, place, 12'000);
    EXPECT_NE(picture(view).pixelColor(30, 60), view.state().scheme.land);
    showAround(view, {49, 20}, 12'000);
    EXPECT_EQ(picture(view).pixelColor(30, 60), view.state().scheme.land);
}

TEST_F(MapViewTest, BearsAnyNumberOfStationsAnywhere) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    std::mt19937 random(3);
    std::uniform_real_distribution<double> latitude(-90, 90);
    std::uniform_real_distribution<double> longitude(-180, 180);
    std::vector<map::Station> stations{{"", {nan, nan}}, {"\xFF\xFE", {0, 0}}, {"X", {1e300, 0}}};
    for (int i = 0; i < 300'000; ++i) {
        stations.push_back({"ZZZZ", {latitude(random), longitude(random)}});
    }
    MapView view(offline());
    view.resize(600, 400);
    view.setStations(stations);
    for (int type = 0; type <= 3; ++type) {
        view.setMapType(type);
        EXPECT_FALSE(picture(view).isNull());
        showAround(view, {0, 0});
        EXPECT_FALSE(picture(view).isNull());
    }
    view.setStations({});
}

TEST_F(MapViewTest, DoesWithoutItsBaseMap) {
    for (const char* path :
         {"", "/nowhere/world.map", NOSIG_SOURCE_DIR "/README.md", NOSIG_SOURCE_DIR}) {
        desktop::MapSetup setup = offline();
        setup.baseMap = QString::fromUtf8(path);
        MapView view(std::move(setup));
        view.resize(600, 400);
        showAround(view, {48, 11});
        EXPECT_EQ(picture(view).pixelColor(40, 90), view.state().scheme.sea);
    }
}

TEST_F(MapViewTest, FollowsThePalette) {
    MapView view(offline());
    view.resize(600, 400);
    showAround(view, {48, 11});
    const QColor day = picture(view).pixelColor(40, 90);
    QPalette night = view.palette();
    night.setColor(QPalette::Window, QColor(40, 40, 40));
    night.setColor(QPalette::WindowText, Qt::white);
    view.setPalette(night);
    EXPECT_LT(picture(view).pixelColor(40, 90).lightness(), day.lightness() / 2);
}

} // namespace
