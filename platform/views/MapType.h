// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace platform {

/// What a map shows, as the numbers that the logic holds and the settings store.
enum MapType : std::int64_t {
    standardMap,
    satelliteMap,
    hybridMap,
    /// Aerial imagery on tilted ground.
    flyoverMap,
    /// A chart instead of the map.
    chartMap,
};

/// The type that a map view draws: it cannot draw the chart and shows the hybrid instead.
[[nodiscard]] constexpr std::int64_t drawnType(std::int64_t type) {
    return type == chartMap ? hybridMap : type;
}

} // namespace platform
