// SPDX-License-Identifier: MIT
#pragma once

#include "map/Mercator.h"

#include <cstddef>
#include <span>
#include <vector>

/// Clips lines and polygons to what a view needs, because drawing code cannot cope with a coast
/// that runs on for a million points beyond the screen.
namespace map {

/// Many lines, or closed polygons, in one array of points.
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

/// Adds the part of a closed polygon inside a rectangle, if any. Where the polygon leaves the
/// rectangle and re-enters it, that part follows the rectangle's sides: it may be filled, but not
/// outlined.
void addClippedPolygon(std::span<const WorldPoint> polygon, const WorldRect& rect, Lines& to);

/// Adds the parts of a line inside a rectangle.
void addClippedLine(std::span<const WorldPoint> line, const WorldRect& rect, Lines& to);

/// Adds a line without those inner points that lie within `distance` of the last one kept, on both
/// axes. Points on the date line are kept, so that parts that were cut there still meet.
void addThinnedLine(std::span<const WorldPoint> line, double distance, Lines& to);

} // namespace map
