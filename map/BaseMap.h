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
    /// Room for the text, as a part of the world's width.
    double width = 0;
};

/// The outlines of the world that the program ships: land, borders between countries and their
/// names. Kept once for each of some scales, without what would be too small to see there.
class BaseMap {
public:
    /// Reads the resource "world.map". Nothing when the bytes are no such map; takes time and
    /// memory in proportion to their number at most.
    [[nodiscard]] static std::optional<BaseMap> read(std::span<const std::byte> bytes);

    /// Adds what lies inside a rectangle, which may run on over several turns of the earth, as
    /// exactly as a scale of so many points by turn can show it.
    void addLand(const WorldRect& rect, double scale, Lines& polygons) const;
    /// Where land ends, without the cuts at the date line.
    void addCoasts(const WorldRect& rect, double scale, Lines& lines) const;
    void addBorders(const WorldRect& rect, double scale, Lines& lines) const;

    /// The greatest country first.
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
