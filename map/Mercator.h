// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Geodesy.h"

#include <algorithm>

/// Web Mercator (EPSG:3857), with the whole world as the unit square.
namespace map {

/// x grows eastward from the date line, y southward from the northern edge. x may run on beyond 0
/// and 1: the same places again, one turn of the earth further.
struct WorldPoint {
    double x = 0;
    double y = 0;

    friend bool operator==(const WorldPoint&, const WorldPoint&) = default;
};

struct WorldRect {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    [[nodiscard]] bool overlaps(const WorldRect& other) const {
        return left <= other.right && other.left <= right && top <= other.bottom &&
               other.top <= bottom;
    }
    [[nodiscard]] bool holds(const WorldRect& other) const {
        return left <= other.left && other.right <= right && top <= other.top &&
               other.bottom <= bottom;
    }
    [[nodiscard]] WorldRect movedEast(double turns) const {
        return {left + turns, top, right + turns, bottom};
    }
    /// Grown as far as it must to hold the point too.
    [[nodiscard]] WorldRect with(const WorldPoint& point) const {
        return {std::min(left, point.x), std::min(top, point.y), std::max(right, point.x),
                std::max(bottom, point.y)};
    }
};

/// Degrees north and south of which there is no map.
inline constexpr double highestLatitude = 85.051128779806592;

/// Places beyond the map's edge come to lie on it, longitudes beyond 180 degrees beyond the square.
[[nodiscard]] WorldPoint project(const platform::Location& location);
/// Longitudes from -180 up to, but not including, 180.
[[nodiscard]] platform::Location unproject(const WorldPoint& point);
/// y of a parallel, even beyond the map's edge; a pole, which is infinitely far, comes to lie at
/// 89.99 degrees.
[[nodiscard]] double projectedLatitude(double latitude);

/// Metres by degrees on the WGS84 ellipsoid, along the meridian and along the parallel, at a
/// latitude; beyond the map's edge, those at the edge.
[[nodiscard]] double metresPerDegreeNorth(double latitude);
[[nodiscard]] double metresPerDegreeEast(double latitude);

/// The region of so many metres around a place. A centre beyond the map's edge is moved onto it.
[[nodiscard]] platform::Region regionWithDistance(const platform::Location& centre,
                                                  double northSouthMetres, double eastWestMetres);

} // namespace map
