// SPDX-License-Identifier: MIT
#include "map/Tiles.h"

#include <gtest/gtest.h>

#include <algorithm>

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
        {"southern edge", cameraAt({-85.05, 0}, 2000), 12, 16},
        {"large screen", cameraAt({0, 0}, 1e8, 3840, 2160), 4, 170},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(map::tileZoom(row.camera, 19, 1), row.zoom);
        EXPECT_EQ(map::tileZoom(row.camera, 19, 2), row.zoom + 1);
        EXPECT_EQ(map::tileZoom(row.camera, 3, 1), 3);
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
    EXPECT_EQ(tiles.front(), (Tile{15, 17457, 11342}));
    EXPECT_EQ(tiles.back(), (Tile{15, 17458, 11342}));
    EXPECT_EQ(map::tilesIn(camera, 0, 5), (std::vector<Tile>{{0, 0, 0}}));
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
        {"CYQG", {42.27, -82.96}, false},  {"KBRO", {25.91, -97.42}, true},
        {"KFVE", {47.29, -68.31}, true},   {"CWCI", {47.34, -85.81}, false},
        {"CWNL", {45.64, -82.95}, false},  {"CWPF", {48.43, -123.44}, false},
        {"K13G", {43.27, -79.06}, true},   {"K8Y8", {48.27, -92.48}, true},
        {"KAPY", {26.97, -99.25}, true},   {"KCXL", {32.67, -115.52}, true},
        {"KDET", {42.41, -83.01}, true},   {"KDLF", {29.37, -100.78}, true},
        {"KIPN", {28.09, -87.99}, true},   {"KK70", {25.32, -80.28}, true},
        {"KOGS", {44.68, -75.46}, true},   {"KT89", {29.28, -103.69}, true},
        {"PALU", {68.87, -166.1}, true},   {"TJIG", {18.46, -66.09}, true},
        {"CWWZ", {43.24, -79.22}, false},  {"CYZR", {42.99, -82.31}, false},
        {"PHNL", {21.32, -157.92}, true},  {"MMTJ", {32.54, -116.97}, false},
        {"EDDM", {48.35, 11.79}, false},   {"NZSP", {-90, 0}, false},
        {"CYWH", {48.42, -123.39}, false}, {"CWEZ", {48.78, -123.05}, false},
        {"CYAM", {46.48, -84.5}, false},   {"KANJ", {46.48, -84.36}, true},
        {"CWSS", {45.21, -67.25}, false},  {"KEPM", {44.91, -67.01}, true},
        {"KFGN", {49.32, -94.9}, true},    {"PASY", {52.71, 174.11}, true},
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
