// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Geodesy.h"

#include <algorithm>

/// Web Mercator (EPSG:3857), with the whole world as the unit square.
namespace map {

/// x grows eastward from the date line, y southward from the northern edge. Values of x outside 0
/// to 1 are the same places, whole turns of the earth away.
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
    /// Extended if necessary to contain the point too.
    [[nodiscard]] WorldRect with(const WorldPoint& point) const {
        return {std::min(left, point.x), std::min(top, point.y), std::max(right, point.x),
                std::max(bottom, point.y)};
    }
};

/// The map ends at this many degrees north and south.
inline constexpr double highestLatitude = 85.051128779806592;

/// Places beyond the map's edge are moved onto it; longitudes beyond 180 degrees give points
/// outside the unit square.
[[nodiscard]] WorldPoint project(const platform::Location& location);
/// Returns longitudes from -180 up to, but excluding, 180.
[[nodiscard]] platform::Location unproject(const WorldPoint& point);
/// Returns y of a parallel, even beyond the map's edge. A pole, which is infinitely far away, is
/// placed at 89.99 degrees.
[[nodiscard]] double projectedLatitude(double latitude);

/// Metres per degree on the WGS84 ellipsoid, along the meridian and along the parallel, at a
/// latitude; beyond the map's edge, the values at the edge.
[[nodiscard]] double metresPerDegreeNorth(double latitude);
[[nodiscard]] double metresPerDegreeEast(double latitude);

/// The region that spans so many metres around a place. A centre beyond the map's edge is moved
/// onto it.
[[nodiscard]] platform::Region regionWithDistance(const platform::Location& centre,
                                                  double northSouthMetres, double eastWestMetres);

} // namespace map
