// SPDX-License-Identifier: MIT
#include "desktop/map/MapView.h"
#include "map/Placing.h"
#include "tests/support/LoopbackTiles.h"

#include <QImage>
#include <QPalette>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>

namespace {

using desktop::MapView;
using platform::Location;
using platform::Region;

desktop::MapSetup offline() {
    desktop::MapSetup setup;
    setup.baseMap = QStringLiteral(NOSIG_SOURCE_DIR "/resources/map/world.map");
    // Credits without a server behind them: nobody listens on the discard port.
    desktop::TileSources sources{map::worldTileServers()};
    for (map::TileServer& server : sources.servers) {
        server.address = "http://127.0.0.1:9/{z}/{x}/{y}";
    }
    setup.tiles = std::make_shared<desktop::TileLoader>(sources);
    return setup;
}

/// The same, with tiles of both kinds from a server on loopback.
desktop::MapSetup online(const support::LoopbackTiles& tiles) {
    desktop::MapSetup setup = offline();
    setup.tiles = std::make_shared<desktop::TileLoader>(desktop::TileSources{
        {tiles.server(map::Imagery::standard, 19), tiles.server(map::Imagery::satellite, 14)}});
    return setup;
}

void showAround(MapView& view, const Location& centre, double metres = 2000) {
    view.setCenterCoordinate(centre);
    view.setRegion(view.regionThatFits(map::regionWithDistance(centre, metres, metres)));
}

/// The number of pixels for which `holds` is true.
int count(const QImage& image, const std::function<bool(int x, int y)>& holds) {
    int found = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            found += holds(x, y);
        }
    }
    return found;
}

/// The number of pixels in which two pictures differ.
int difference(const QImage& one, const QImage& other) {
    return count(one, [&](int x, int y) { return one.pixel(x, y) != other.pixel(x, y); });
}

QImage picture(MapView& view) {
    return view.grab().toImage();
}

TEST(MapView, RegionReadsBackAndFitsEveryShapeOfTheView) {
    // Set before the view has its size, as when the program starts, and at the date line.
    const Location place{60.1, 180};
    MapView view(offline());
    showAround(view, place);
    for (const QSize& size : {QSize(640, 400), QSize(300, 700), QSize(500, 500)}) {
        view.resize(size);
        view.grab();
        const Region shown = view.region();
        EXPECT_NEAR(shown.centre.latitude, place.latitude, 1e-4);
        EXPECT_NEAR(std::remainder(shown.centre.longitude - place.longitude, 360), 0, 1e-6);
        // Set again, now that the view has its size, it gives the same.
        showAround(view, place);
        EXPECT_NEAR(view.region().latitudeSpan, shown.latitudeSpan, 1e-9);
    }
}

TEST(MapView, InvalidPlacesAndTypesChangeNothing) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    MapView view(offline());
    view.resize(600, 400);
    showAround(view, {48, 11});
    const QImage before = picture(view);
    view.setCenterCoordinate({nan, 11});
    view.setRegion({{48, 11}, nan, 1});
    view.setRegion({{91, 11}, 1, 1});
    for (const std::int64_t type : {std::int64_t{-1}, std::int64_t{5}, INT64_MIN}) {
        view.setMapType(type);
    }
    view.setMarker(map::Station{"NONE", {nan, nan}});
    EXPECT_EQ(picture(view), before);
}

TEST(MapView, OfflineMapShowsLandSeaAndMarker) {
    MapView view(offline());
    view.resize(600, 400);
    const map::Station munich{"EDDM", {48.35, 11.79}};
    for (int type = 0; type <= 4; ++type) {
        SCOPED_TRACE(type);
        view.setMapType(type);
        const desktop::MapScheme& scheme = view.state().scheme;
        const auto share = [&](const QColor& color) {
            const QImage image = picture(view);
            return count(image, [&](int x, int y) { return image.pixelColor(x, y) == color; }) /
                   static_cast<double>(image.width() * image.height());
        };
        view.setMarker({});
        showAround(view, munich.location);
        EXPECT_GT(share(scheme.land), 0.75);
        showAround(view, {30, -40});
        EXPECT_GT(share(scheme.sea), 0.75);
        // The Channel shows both land and sea.
        showAround(view, {50.5, 0}, 600'000);
        EXPECT_GT(share(scheme.sea), 0.15);
        EXPECT_GT(share(scheme.land), 0.15);

        showAround(view, munich.location);
        const QImage without = picture(view);
        view.setMarker(munich);
        const QImage with = picture(view);
        EXPECT_GT(difference(with, without), 100);
        EXPECT_EQ(with.pixelColor(300, 200), scheme.marker);
    }
}

TEST(MapView, TypesLookDifferentAndFourIsHybrid) {
    support::LoopbackTiles tiles;
    MapView view(online(tiles));
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

    // Satellite tiles end at their server's highest level and are enlarged beyond it.
    tiles.requests.clear();
    loaded(1, 2000);
    for (const auto& request : tiles.requests) {
        EXPECT_TRUE(request.path.startsWith("/satellite/14/")) << request.path.constData();
    }
    EXPECT_FALSE(tiles.requests.empty());

    // A hidden map requests nothing.
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

TEST(MapView, TilesReplaceTheBaseMapAsTheyArrive) {
    support::LoopbackTiles tiles;
    tiles.answer = [](QTcpSocket& socket, const support::LoopbackTiles::Request& request) {
        // Only the coarse level exists.
        socket.write(
            request.path.contains("/10/")
                ? support::LoopbackTiles::reply(support::LoopbackTiles::picture(request.path))
                : support::LoopbackTiles::reply({}, {}, "404 Not Found"));
    };
    MapView view(online(tiles));
    view.resize(512, 384);
    view.show();
    const Location place{47, 8};
    showAround(view, place, 40'000);
    ASSERT_TRUE(support::settle(*view.state().loader));
    ASSERT_EQ(view.state().tiles.front().zoom, 10);
    EXPECT_NE(picture(view).pixelColor(30, 60), view.state().scheme.land);
    // Zoomed in, the coarse tile is shown in place of the finer ones that do not exist.
    showAround(view, place, 12'000);
    EXPECT_NE(picture(view).pixelColor(30, 60), view.state().scheme.land);
    showAround(view, {49, 20}, 12'000);
    EXPECT_EQ(picture(view).pixelColor(30, 60), view.state().scheme.land);
}

TEST(MapView, WorksWithoutItsBaseMap) {
    for (const char* path :
         {"", "/nowhere/world.map", NOSIG_SOURCE_DIR "/README.md", NOSIG_SOURCE_DIR}) {
        desktop::MapSetup setup = offline();
        setup.baseMap = QString::fromUtf8(path);
        MapView view(setup);
        view.resize(600, 400);
        showAround(view, {48, 11});
        EXPECT_EQ(picture(view).pixelColor(40, 90), view.state().scheme.sea);
    }
}

TEST(MapView, FollowsThePalette) {
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

TEST(MapView, ASelectionRequestsOnlyTilesThatAreShownInTheEnd) {
    support::LoopbackTiles tiles;
    const desktop::MapSetup setup = online(tiles);
    MapView view(setup);
    view.resize(600, 400);
    view.show();
    map::showPlace(view, {46.004, 8.911}, 0);
    ASSERT_TRUE(support::settle(*setup.tiles));
    // Showing a place sets the map's type, centre and region one after another.
    for (const std::int64_t type : {1, 1, 0}) {
        tiles.requests.clear();
        map::showPlace(view, {48.35 + static_cast<double>(type), 11.79}, type);
        ASSERT_TRUE(support::settle(*setup.tiles));
        std::set<std::string> shown;
        for (const map::Tile& tile : view.state().tiles) {
            shown.insert(
                map::tileAddress(setup.tiles->servers()[*view.state().server].address, tile));
        }
        std::set<std::string> asked;
        for (const auto& request : tiles.requests) {
            asked.insert("http://127.0.0.1:" + std::to_string(tiles.serverPort()) +
                         request.path.toStdString());
        }
        EXPECT_TRUE(std::ranges::includes(shown, asked));
    }
}

} // namespace
