// SPDX-License-Identifier: MIT
#pragma once

#include "map/StationIndex.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace desktop {
class MapView;
}

namespace bench {

/// A map view with the shipped base map, shown on a screen in memory, with tiles from a loopback
/// server or without a network. The first stage starts the toolkit.
class MapStage {
public:
    MapStage(int width, int height, const std::vector<map::Station>& stations, bool withTiles);
    ~MapStage();

    [[nodiscard]] desktop::MapView& view();
    /// Shows a square with sides of `metres`, and waits for all its tiles.
    void show(std::int64_t mapType, const platform::Location& centre, double metres);
    /// Moves the map's centre by `right` points to the right and paints the map.
    void paintMoved(double right);

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace bench
