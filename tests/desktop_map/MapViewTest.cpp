// SPDX-License-Identifier: MIT
#include "tests/desktop_map/MapStage.h"
#include "tests/support/LoopbackTiles.h"

#include <cmath>
#include <limits>

namespace {

using platform::Location;
using support::LoopbackTiles;

constexpr const char* world = NOSIG_SOURCE_DIR "/resources/map/world.map";

struct MapViewTest : support::MapStage {
    MapViewTest() : MapStage(support::offlineMap(world)) {}
};

struct ServerOfTiles {
    LoopbackTiles tiles_;
};

/// The same, with tiles of both kinds from a server on loopback.
class TiledMapTest : protected ServerOfTiles, public support::MapStage {
protected:
    TiledMapTest() : MapStage(setup(tiles_)) {}

    static desktop::MapSetup setup(const LoopbackTiles& tiles) {
        desktop::MapSetup setup = support::offlineMap(world);
        setup.tiles = std::make_shared<desktop::TileLoader>(desktop::TileSources{
            {tiles.server(map::Imagery::standard, 19), tiles.server(map::Imagery::satellite, 14)}});
        return setup;
    }
};

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

TEST(MapRegion, ReadsBackAndFitsEveryShapeOfTheView) {
    // Set before the view has its size, as when the program starts, and at the date line.
    const Location place{60.1, 180};
    desktop::MapView view(support::offlineMap());
    const auto show = [&] {
        view.setRegion(view.regionThatFits(map::regionWithDistance(place, 2000, 2000)));
    };
    show();
    for (const QSize& size : {QSize(640, 400), QSize(300, 700), QSize(500, 500)}) {
        view.resize(size);
        view.grab();
        const platform::Region shown = view.region();
        EXPECT_NEAR(shown.centre.latitude, place.latitude, 1e-4);
        EXPECT_NEAR(std::remainder(shown.centre.longitude - place.longitude, 360), 0, 1e-6);
        // Set again, now that the view has its size, it gives the same.
        show();
        EXPECT_NEAR(view.region().latitudeSpan, shown.latitudeSpan, 1e-9);
    }
}

TEST_F(MapViewTest, InvalidPlacesAndTypesChangeNothing) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    showAround({48, 11});
    const QImage before = picture();
    view_.setCenterCoordinate({nan, 11});
    view_.setRegion({{48, 11}, nan, 1});
    view_.setRegion({{91, 11}, 1, 1});
    for (const std::int64_t type : {std::int64_t{-1}, std::int64_t{5}, INT64_MIN}) {
        view_.setMapType(type);
    }
    view_.setMarker(map::Station{"NONE", {nan, nan}});
    EXPECT_EQ(picture(), before);
}

TEST_F(MapViewTest, ShowsLandSeaAndMarkerWithoutTiles) {
    const map::Station munich{"EDDM", {48.35, 11.79}};
    for (int type = 0; type <= 4; ++type) {
        SCOPED_TRACE(type);
        view_.setMapType(type);
        const desktop::MapScheme& scheme = view_.state().scheme;
        const auto share = [&](const QColor& color) {
            const QImage image = picture();
            return count(image, [&](int x, int y) { return image.pixelColor(x, y) == color; }) /
                   static_cast<double>(image.width() * image.height());
        };
        view_.setMarker({});
        showAround({30, -40});
        EXPECT_GT(share(scheme.sea), 0.75);
        // The Channel shows both land and sea.
        showAround({50.5, 0}, 600'000);
        EXPECT_GT(share(scheme.sea), 0.15);
        EXPECT_GT(share(scheme.land), 0.15);
        showAround(munich.location);
        EXPECT_GT(share(scheme.land), 0.75);

        const QImage without = picture();
        view_.setMarker(munich);
        EXPECT_GT(difference(picture(), without), 100);
        EXPECT_EQ(colorAt({300, 200}), scheme.marker);
    }
}

TEST_F(MapViewTest, FollowsThePalette) {
    showAround({48, 11});
    const QColor day = colorAt({40, 90});
    const QColor night(40, 40, 40);
    view_.setPalette(QPalette(night, night));
    EXPECT_LT(colorAt({40, 90}).lightness(), day.lightness() / 2);
}

TEST_F(TiledMapTest, TypesLookDifferentAndFourIsHybrid) {
    const map::Station station{"LSZA", {46.004, 8.911}};
    view_.setStations({station});
    const auto loaded = [&](std::int64_t type, double metres) {
        view_.setMapType(type);
        showAround(station.location, metres);
        EXPECT_TRUE(QTest::qWaitFor([&] {
            return std::ranges::all_of(view_.state().tiles, [&](const map::Tile& tile) {
                return view_.state().loader->image(*view_.state().server, tile);
            });
        }));
        return picture();
    };
    std::vector<QImage> pictures;
    for (int type = 0; type <= 3; ++type) {
        pictures.push_back(loaded(type, 100'000));
        for (std::size_t other = 0; other + 1 < pictures.size(); ++other) {
            EXPECT_GT(difference(pictures.back(), pictures[other]), 500) << type << ' ' << other;
        }
    }
    EXPECT_EQ(loaded(4, 100'000), pictures[2]);

    // Satellite tiles end at their server's highest level and are enlarged beyond it.
    tiles_.requests.clear();
    loaded(1, 2000);
    for (const auto& request : tiles_.requests) {
        EXPECT_TRUE(request.path.startsWith("/satellite/14/")) << request.path.constData();
    }
    EXPECT_FALSE(tiles_.requests.empty());

    // A hidden map requests nothing.
    tiles_.requests.clear();
    view_.setHidden(true);
    view_.setMapType(0);
    showAround({10, 10});
    QTest::qWait(0);
    EXPECT_TRUE(view_.state().tiles.empty());
    EXPECT_TRUE(tiles_.requests.empty());
    view_.setHidden(false);
    EXPECT_FALSE(view_.state().tiles.empty());
}

TEST_F(TiledMapTest, TilesReplaceTheBaseMapAsTheyArrive) {
    tiles_.answer = [](QTcpSocket& socket, const LoopbackTiles::Request& request) {
        // Only the coarse level exists.
        socket.write(request.path.contains("/10/")
                         ? LoopbackTiles::reply(LoopbackTiles::picture(request.path))
                         : LoopbackTiles::reply({}, {}, "404 Not Found"));
    };
    const Location place{47, 8};
    showAround(place, 40'000);
    ASSERT_TRUE(support::settle(*view_.state().loader));
    ASSERT_EQ(view_.state().tiles.front().zoom, 10);
    EXPECT_NE(colorAt({30, 60}), view_.state().scheme.land);
    // Zoomed in, the coarse tile is shown in place of the finer ones that do not exist.
    showAround(place, 12'000);
    EXPECT_NE(colorAt({30, 60}), view_.state().scheme.land);
    showAround({49, 20}, 12'000);
    EXPECT_EQ(colorAt({30, 60}), view_.state().scheme.land);
}

} // namespace
