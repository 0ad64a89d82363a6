// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/MapScheme.h"
#include "desktop/map/StationWeather.h"
#include "desktop/map/TileLoader.h"
#include "map/BaseMap.h"
#include "map/Camera.h"
#include "map/StationIndex.h"
#include "map/Tiles.h"
#include "platform/views/MapType.h"

#include <QFont>
#include <QRectF>

#include <cstdint>
#include <optional>
#include <vector>

namespace desktop {

/// What the map's layers draw. Only the map view writes it. Positions are in the view's points.
struct MapState {
    map::Camera view;
    /// A type that the map draws, so never the chart.
    std::int64_t type = platform::standardMap;
    MapScheme scheme;
    QFont font;
    double pixelsPerPoint = 1;
    bool hasFocus = false;

    std::optional<map::BaseMap> base;

    TileLoader* loader = nullptr;
    /// The index of this view's tile server, if any, and the tiles on show.
    std::optional<std::size_t> server;
    std::vector<map::Tile> tiles;

    std::vector<map::Station> stations;
    map::StationIndex index;
    bool showsWeather = false;
    /// While weather is shown, one for each of `stations`.
    std::vector<StationWeather> weather;
    std::optional<map::Station> marker;
    /// Of the marked station, which need not be one of `stations`; absent unless weather is shown.
    std::optional<StationWeather> markerWeather;
    /// The index of the station under the pointer.
    std::optional<std::uint32_t> pointed;

    [[nodiscard]] QRectF frame() const { return {0, 0, view.size().width, view.size().height}; }
    [[nodiscard]] bool isTilted() const { return type == platform::flyoverMap; }
};

} // namespace desktop
