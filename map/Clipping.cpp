// SPDX-License-Identifier: MIT
#include "map/Clipping.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

namespace map {

namespace {

/// One side of a rectangle, and the half plane in which the rectangle lies.
struct Side {
    double WorldPoint::*across;
    double WorldPoint::*along;
    double at;
    double inward;

    /// Negative for a point outside.
    [[nodiscard]] double depth(const WorldPoint& point) const {
        return (point.*across - at) * inward;
    }
    /// Where the line between two points, one on each side, crosses it.
    [[nodiscard]] WorldPoint crossing(const WorldPoint& a, const WorldPoint& b) const {
        WorldPoint point;
        point.*across = at;
        point.*along =
            a.*along + (b.*along - a.*along) * (at - a.*across) / (b.*across - a.*across);
        return point;
    }
};

std::array<Side, 4> sidesOf(const WorldRect& rect) {
    constexpr auto x = &WorldPoint::x;
    constexpr auto y = &WorldPoint::y;
    return {{{x, y, rect.left, 1},
             {x, y, rect.right, -1},
             {y, x, rect.top, 1},
             {y, x, rect.bottom, -1}}};
}

/// The part of a segment inside a rectangle.
std::optional<std::pair<WorldPoint, WorldPoint>> clipped(WorldPoint a, WorldPoint b,
                                                         const std::array<Side, 4>& sides) {
    for (const Side& side : sides) {
        const bool aInside = side.depth(a) >= 0;
        const bool bInside = side.depth(b) >= 0;
        if (!aInside && !bInside) {
            return std::nullopt;
        }
        if (aInside != bInside) {
            (aInside ? b : a) = side.crossing(a, b);
        }
    }
    return std::pair(a, b);
}

} // namespace

void addClippedPolygon(std::span<const WorldPoint> polygon, const WorldRect& rect, Lines& to) {
    // Clips at one side after another (Sutherland-Hodgman).
    std::vector<WorldPoint> part(polygon.begin(), polygon.end());
    std::vector<WorldPoint> next;
    for (const Side& side : sidesOf(rect)) {
        next.clear();
        for (std::size_t i = 0; i < part.size(); ++i) {
            const WorldPoint& a = part[i];
            const WorldPoint& b = part[i + 1 < part.size() ? i + 1 : 0];
            const bool aInside = side.depth(a) >= 0;
            if (aInside) {
                next.push_back(a);
            }
            if (aInside != (side.depth(b) >= 0)) {
                next.push_back(side.crossing(a, b));
            }
        }
        std::swap(part, next);
    }
    if (part.size() >= 3) {
        to.points.insert(to.points.end(), part.begin(), part.end());
        to.endLine();
    }
}

void addClippedLine(std::span<const WorldPoint> line, const WorldRect& rect, Lines& to) {
    const std::array<Side, 4> sides = sidesOf(rect);
    bool open = false;
    for (std::size_t i = 1; i < line.size(); ++i) {
        const auto part = clipped(line[i - 1], line[i], sides);
        if (open && (!part || part->first != to.points.back())) {
            to.endLine();
            open = false;
        }
        if (part) {
            if (!open) {
                to.points.push_back(part->first);
                open = true;
            }
            to.points.push_back(part->second);
        }
    }
    if (open) {
        to.endLine();
    }
}

void addThinnedLine(std::span<const WorldPoint> line, double distance, Lines& to) {
    for (std::size_t i = 0; i < line.size(); ++i) {
        const WorldPoint& point = line[i];
        const bool inner = i > 0 && i + 1 < line.size() && point.x != 0 && point.x != 1;
        if (!inner || std::abs(point.x - to.points.back().x) > distance ||
            std::abs(point.y - to.points.back().y) > distance) {
            to.points.push_back(point);
        }
    }
    to.endLine();
}

} // namespace map
