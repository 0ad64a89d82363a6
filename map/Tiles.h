// SPDX-License-Identifier: MIT
#pragma once

#include "map/Camera.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Picture tiles: 2^zoom by 2^zoom squares of the world, counted from the upper left.
namespace map {

inline constexpr double tileSize = 256;

struct Tile {
    int zoom = 0;
    /// From 0 up to 2^zoom, beyond it or below 0 on another turn of the earth.
    int x = 0;
    int y = 0;

    friend bool operator==(const Tile&, const Tile&) = default;

    [[nodiscard]] WorldRect rect() const;
    /// The same picture on the first turn, by whose numbers servers know it.
    [[nodiscard]] Tile onFirstTurn() const;
    /// That one level up of which this is a quarter.
    [[nodiscard]] Tile parent() const;
};

/// The level whose pixels come nearest to the screen's, from 0 to `highest`.
[[nodiscard]] int tileZoom(const Camera& camera, int highest, double pixelsPerPoint);

/// What of a level a view shows, nearest to its centre first; no more than `most`.
[[nodiscard]] std::vector<Tile> tilesIn(const Camera& camera, int zoom, std::size_t most);

/// `pattern` with "{z}", "{x}" and "{y}" replaced by the numbers of the tile on the first turn.
[[nodiscard]] std::string tileAddress(std::string_view pattern, const Tile& tile);

enum class Imagery { standard, satellite };

/// A service that tiles come from.
struct TileServer {
    Imagery imagery = Imagery::standard;
    std::string address;
    int highestZoom = 0;
    /// Shown as long as the server's tiles may be.
    std::string credit;
    /// The page about the credit; empty for none.
    std::string creditPage;
    /// Polygons inside of which the server has pictures; none means everywhere. None of them goes
    /// across the date line.
    std::vector<std::vector<platform::Location>> coverage;

    /// Whether the middle and all corners of the view lie in one of the polygons.
    [[nodiscard]] bool covers(const Camera& camera) const;
};

/// The servers of the address table. Of those that cover a view the first is meant.
[[nodiscard]] std::vector<TileServer> worldTileServers();

/// The index of the one for a view; nothing when there is none.
[[nodiscard]] std::optional<std::size_t> serverFor(std::span<const TileServer> servers,
                                                   Imagery imagery, const Camera& camera);

} // namespace map
