// SPDX-License-Identifier: MIT
#pragma once

#include "map/Camera.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Map pictures in tiles: 2^zoom by 2^zoom squares of the world, counted from the upper left.
namespace map {

inline constexpr double tileSize = 256;

struct Tile {
    int zoom = 0;
    /// From 0 up to but excluding 2^zoom; other values are on another turn of the earth.
    int x = 0;
    int y = 0;

    friend bool operator==(const Tile&, const Tile&) = default;

    [[nodiscard]] WorldRect rect() const;
    /// The same picture's tile on the first turn, which servers know by its numbers.
    [[nodiscard]] Tile onFirstTurn() const;
    /// The tile one level up, of which this one is a quarter.
    [[nodiscard]] Tile parent() const;
};

/// The level from 0 to `highest` whose pixels come nearest in size to the screen's.
[[nodiscard]] int tileZoom(const Camera& camera, int highest, double pixelsPerPoint);

/// The tiles of a level that a view shows, those nearest to its centre first; at most `most`.
[[nodiscard]] std::vector<Tile> tilesIn(const Camera& camera, int zoom, std::size_t most);

/// Returns `pattern` with "{z}", "{x}" and "{y}" replaced by the numbers of the tile on the first
/// turn.
[[nodiscard]] std::string tileAddress(std::string_view pattern, const Tile& tile);

enum class Imagery { standard, satellite };

/// A service that provides tiles.
struct TileServer {
    Imagery imagery = Imagery::standard;
    std::string address;
    int highestZoom = 0;
    /// Shown for as long as the server's tiles may be on the screen.
    std::string credit;
    /// The page about the credit; empty if there is none.
    std::string creditPage;
    /// Polygons within which the server has pictures; empty means everywhere. No polygon crosses
    /// the date line.
    std::vector<std::vector<platform::Location>> coverage;

    /// Whether one of the polygons contains the middle and all corners of the view.
    [[nodiscard]] bool covers(const Camera& camera) const;
};

/// The servers of the address table. Of several that cover a view, the first is used.
[[nodiscard]] std::vector<TileServer> worldTileServers();

/// The index of the server to use for a view; absent if there is none.
[[nodiscard]] std::optional<std::size_t> serverFor(std::span<const TileServer> servers,
                                                   Imagery imagery, const Camera& camera);

} // namespace map
