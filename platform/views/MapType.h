// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace platform {

/// What a map shows, by the numbers that the logic keeps and the settings save.
enum MapType : std::int64_t {
    standardMap,
    satelliteMap,
    hybridMap,
    /// Pictures from above on tilted ground.
    flyoverMap,
    /// A chart in the map's place.
    chartMap,
};

/// What a map draws: the chart is not its to draw, and the hybrid stands in for it.
[[nodiscard]] constexpr std::int64_t drawnType(std::int64_t type) {
    return type == chartMap ? hybridMap : type;
}

} // namespace platform
