// SPDX-License-Identifier: MIT
#include "map/Tiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace {

using map::Camera;
using map::Imagery;
using map::Tile;

Camera cameraAt(const platform::Location& place, double metres, double width = 700,
                double height = 450) {
    Camera camera;
    camera.setSize({width, height});
    camera.show(map::regionWithDistance(place, metres, metres));
    return camera;
}

/// Expects every ninth point of the view to be in a tile, unless off the map, and every tile to be
/// visible.
void expectToCover(const Camera& camera, const std::vector<Tile>& tiles) {
    for (double x = 0.5; x < camera.size().width; x += 9) {
        for (double y = 0.5; y < camera.size().height; y += 9) {
            const map::WorldPoint point = camera.toWorld({x, y});
            const auto holds = [&](const Tile& tile) {
                return tile.rect().overlaps({point.x, point.y, point.x, point.y});
            };
            ASSERT_EQ(std::ranges::any_of(tiles, holds), point.y >= 0 && point.y < 1)
                << x << ' ' << y;
        }
    }
    for (const Tile& tile : tiles) {
        EXPECT_TRUE(camera.maySee(tile.rect()));
    }
}

TEST(Tiles, CoverTheViewAndNoMore) {
    const struct {
        const char* what;
        Camera camera;
        int zoom;
        std::size_t most;
    } rows[] = {
        {"station", cameraAt({48.35, 11.79}, 2000), 15, 20},
        {"date line", cameraAt({-17.7, 179.999}, 50'000), 10, 20},
        {"edge", cameraAt({85.05, 0}, 2000), 12, 16},
        {"large screen", cameraAt({0, 0}, 1e8, 3840, 2160), 4, 170},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(map::tileZoom(row.camera, 19, 1), row.zoom);
        const auto tiles = map::tilesIn(row.camera, row.zoom, 1000);
        expectToCover(row.camera, tiles);
        EXPECT_LE(tiles.size(), row.most);

        Camera tilted = row.camera;
        tilted.setAttitude(33, 50);
        expectToCover(tilted, map::tilesIn(tilted, row.zoom, 1000));
    }
}

TEST(Tiles, NearestFirstAndNeverTooMany) {
    const Camera camera = cameraAt({48.35, 11.79}, 2000);
    const auto tiles = map::tilesIn(camera, 15, 5);
    ASSERT_EQ(tiles.size(), 5U);
    const map::WorldPoint centre = camera.centre();
    EXPECT_TRUE(tiles.front().rect().overlaps({centre.x, centre.y, centre.x, centre.y}));
    // A level far too fine for the view gives no tiles, without counting them.
    EXPECT_TRUE(map::tilesIn(cameraAt({0, 0}, 1e8), 30, 100).empty());
}

TEST(Tiles, AddressesUseTheFirstTurn) {
    EXPECT_EQ(map::tileAddress("http://h/{z}/{x}/{y}.png?{q}{", {3, -1, 5}),
              "http://h/3/7/5.png?{q}{");
    EXPECT_EQ((Tile{3, -1, 5}.parent()), (Tile{2, -1, 2}));
}

TEST(Tiles, UnitedStatesHaveTheirOwnImagery) {
    const auto servers = map::worldTileServers();
    const struct {
        const char* what;
        platform::Location place;
        bool unitedStates;
    } rows[] = {
        {"KJFK", {40.64, -73.78}, true},   {"KSAN", {32.73, -117.19}, true},
        {"KDTW", {42.21, -83.35}, true},   {"PANC", {61.17, -150.0}, true},
        {"PHNL", {21.32, -157.92}, true},  {"TJSJ", {18.44, -66.0}, true},
        {"KFVE", {47.28, -68.3}, true},    {"KBRO", {25.92, -97.42}, true},
        {"K8Y8", {48.27, -92.48}, true},   {"KK70", {25.32, -80.28}, true},
        {"KFTN", {28.22, -100.02}, true},  {"KT89", {29.28, -103.68}, true},
        {"CWSP", {48.38, -123.92}, false}, {"CWCI", {47.33, -85.8}, false},
        {"CYWG", {49.91, -97.24}, false},  {"CYZR", {43.0, -82.3}, false},
        {"MMTJ", {32.54, -116.97}, false}, {"EDDM", {48.35, 11.79}, false},
        {"CYQG", {42.28, -82.96}, false},  {"NZSP", {-90, 0}, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const auto found = map::serverFor(servers, Imagery::satellite, cameraAt(row.place, 2000));
        ASSERT_TRUE(found);
        EXPECT_EQ(servers[*found].highestZoom == 16, row.unitedStates);
    }
    // A view that reaches across the border uses the world's server.
    const auto wide =
        map::serverFor(servers, Imagery::satellite, cameraAt({42.21, -83.35}, 200'000));
    EXPECT_EQ(servers[wide.value()].highestZoom, 14);
    EXPECT_EQ(map::serverFor(servers, Imagery::standard, cameraAt({0, 0}, 1e8)), 0U);
    EXPECT_FALSE(map::serverFor({}, Imagery::standard, cameraAt({0, 0}, 1e8)));
}

} // namespace
