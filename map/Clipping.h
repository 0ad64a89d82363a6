// SPDX-License-Identifier: MIT
#pragma once

#include "map/Mercator.h"

#include <cstddef>
#include <span>
#include <vector>

/// Lines and polygons cut down to what a view needs: drawing code has no room for a coast that runs
/// on for a million points beyond the screen.
namespace map {

/// Many lines, or closed polygons, in one run of points.
struct Lines {
    std::vector<WorldPoint> points;
    /// One past the last point of each line.
    std::vector<std::size_t> ends;

    void endLine() { ends.push_back(points.size()); }
    void clear() {
        points.clear();
        ends.clear();
    }
};

/// Adds the part of a closed polygon inside a rectangle, if any. Where the polygon leaves and comes
/// back, the part runs along the rectangle's sides: right to be filled, not to be outlined.
void addClippedPolygon(std::span<const WorldPoint> polygon, const WorldRect& rect, Lines& to);

/// Adds the parts of a line inside a rectangle.
void addClippedLine(std::span<const WorldPoint> line, const WorldRect& rect, Lines& to);

/// Adds a line without those inner points that lie within `distance` of the last one kept, along
/// either axis. Points on the date line are kept, so that what was cut there still meets.
void addThinnedLine(std::span<const WorldPoint> line, double distance, Lines& to);

} // namespace map
