// SPDX-License-Identifier: MIT
#pragma once

#include "map/Clipping.h"
#include "map/Mercator.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace map {

struct CountryName {
    std::string text;
    WorldPoint middle;
    /// The room for the text, as a fraction of the world's width.
    double width = 0;
};

/// The outlines of the world that ship with the program: land, borders between countries, and their
/// names. Outlines are stored once for each of several scales, without what would be too small to
/// see there.
class BaseMap {
public:
    /// Reads the resource "world.map". Absent if the bytes are not such a map. Takes time and
    /// memory at most in proportion to their number.
    [[nodiscard]] static std::optional<BaseMap> read(std::span<const std::byte> bytes);

    /// Adds what lies inside a rectangle, which may extend over several turns of the earth, as
    /// exactly as a scale of so many points per turn can show it.
    void addLand(const WorldRect& rect, double scale, Lines& polygons) const;
    /// The edges of the land, without the cuts at the date line.
    void addCoasts(const WorldRect& rect, double scale, Lines& lines) const;
    void addBorders(const WorldRect& rect, double scale, Lines& lines) const;

    /// The largest country first.
    [[nodiscard]] const std::vector<CountryName>& names() const { return names_; }

private:
    struct Shapes {
        Lines lines;
        std::vector<WorldRect> bounds;

        void add(std::span<const WorldPoint> line, double distance);
        [[nodiscard]] std::span<const WorldPoint> line(std::size_t index) const;
    };
    struct Level {
        Shapes land;
        Shapes borders;
    };

    [[nodiscard]] const Level& levelFor(double scale) const;

    std::vector<Level> levels_;
    std::vector<CountryName> names_;
};

} // namespace map
