// SPDX-License-Identifier: MIT
#include "map/Tiles.h"

#include <algorithm>
#include <cmath>

namespace map {

namespace {

/// Higher levels have more tiles than an `int` can count.
constexpr int highestLevel = 30;

/// Returns whether a polygon contains a place, by counting the sides to the east of it.
bool holds(std::span<const platform::Location> polygon, const platform::Location& place) {
    bool inside = false;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const platform::Location& a = polygon[i];
        const platform::Location& b = polygon[(i + 1) % polygon.size()];
        if ((a.latitude <= place.latitude) != (b.latitude <= place.latitude)) {
            const double part = (place.latitude - a.latitude) / (b.latitude - a.latitude);
            inside ^= place.longitude < a.longitude + part * (b.longitude - a.longitude);
        }
    }
    return inside;
}

} // namespace

WorldRect Tile::rect() const {
    const double side = std::ldexp(1.0, -zoom);
    return {x * side, y * side, (x + 1) * side, (y + 1) * side};
}

Tile Tile::onFirstTurn() const {
    return {zoom, x & ((1 << zoom) - 1), y};
}

Tile Tile::parent() const {
    return {zoom - 1, x >> 1, y >> 1};
}

int tileZoom(const Camera& camera, int highest, double pixelsPerPoint) {
    const double exact = camera.zoom() + std::log2(std::max(pixelsPerPoint, 0.125));
    return std::clamp(static_cast<int>(std::lround(exact)), 0,
                      std::clamp(highest, 0, highestLevel));
}

std::vector<Tile> tilesIn(const Camera& camera, int zoom, std::size_t most) {
    zoom = std::clamp(zoom, 0, highestLevel);
    const int count = 1 << zoom;
    const WorldRect seen = camera.seen();
    const auto index = [count](double part) { return static_cast<int>(std::floor(part * count)); };
    const int top = std::max(index(seen.top), 0);
    const int bottom = std::min(index(seen.bottom), count - 1);
    const int left = index(seen.left);
    const int right = index(seen.right);

    std::vector<Tile> tiles;
    const double columns = double{1} + right - left;
    if (top > bottom || columns * (double{1} + bottom - top) > 64 * static_cast<double>(most)) {
        return tiles;
    }
    for (int y = top; y <= bottom; ++y) {
        for (int x = left; x <= right; ++x) {
            if (const Tile tile{zoom, x, y}; camera.maySee(tile.rect())) {
                tiles.push_back(tile);
            }
        }
    }
    std::ranges::sort(tiles, {}, [&](const Tile& tile) {
        const WorldRect rect = tile.rect();
        return std::hypot((rect.left + rect.right) / 2 - camera.centre().x,
                          (rect.top + rect.bottom) / 2 - camera.centre().y);
    });
    tiles.resize(std::min(tiles.size(), most));
    return tiles;
}

std::string tileAddress(std::string_view pattern, const Tile& tile) {
    const Tile asked = tile.onFirstTurn();
    std::string address;
    while (!pattern.empty()) {
        const std::string_view key = pattern.substr(0, 3);
        const int* number = key == "{z}"   ? &asked.zoom
                            : key == "{x}" ? &asked.x
                            : key == "{y}" ? &asked.y
                                           : nullptr;
        address += number ? std::to_string(*number) : std::string(pattern.substr(0, 1));
        pattern.remove_prefix(number ? key.size() : 1);
    }
    return address;
}

bool TileServer::covers(const Camera& camera) const {
    if (coverage.empty()) {
        return true;
    }
    std::vector<platform::Location> places{unproject(camera.centre())};
    for (const WorldPoint& corner : camera.corners()) {
        places.push_back(unproject(corner));
    }
    return std::ranges::any_of(coverage, [&](const auto& polygon) {
        return std::ranges::all_of(places,
                                   [&](const auto& place) { return holds(polygon, place); });
    });
}

std::optional<std::size_t> serverFor(std::span<const TileServer> servers, Imagery imagery,
                                     const Camera& camera) {
    const auto found = std::ranges::find_if(servers, [&](const TileServer& server) {
        return server.imagery == imagery && server.covers(camera);
    });
    return found == servers.end()
               ? std::nullopt
               : std::optional(static_cast<std::size_t>(found - servers.begin()));
}

} // namespace map
