// SPDX-License-Identifier: MIT
#pragma once

#include "map/Camera.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace map {

struct Station {
    std::string identifier;
    platform::Location location;
};

/// A station, by its position in the list that the index was built from.
struct PlacedStation {
    std::uint32_t number = 0;
    WorldPoint point;
};

/// Finds stations by location, in time that depends on how many are asked for rather than on how
/// many there are. Stations without a valid location are never found.
class StationIndex {
public:
    StationIndex() = default;
    explicit StationIndex(std::span<const Station> stations);
    /// Of those that `holds` picks by their positions in the list alone.
    StationIndex(std::span<const Station> stations, const std::function<bool(std::size_t)>& holds);

    /// Adds the stations inside a rectangle, which may extend over several turns of the earth; only
    /// one of those that share a square of side `cell`, or the same place. The squares do not move
    /// with the rectangle.
    void add(const WorldRect& rect, double cell, std::vector<PlacedStation>& found) const;

    /// Returns the station shown nearest to a point, at most `reach` points away from it; of
    /// several at one place, the first in the list.
    [[nodiscard]] std::optional<std::uint32_t>
    nearest(const Camera& camera, const ScreenPoint& point, double reach) const;

    [[nodiscard]] std::size_t size() const { return entries_.size(); }

private:
    /// `code` interleaves the bits of x and y, the highest first, so that every quarter of the
    /// world, every quarter of that, and so on, is one run of entries.
    struct Entry {
        std::uint64_t code;
        std::uint32_t number;
        [[nodiscard]] WorldPoint point() const;
    };
    struct Quarter;
    struct Query;
    static void search(const Quarter& quarter, Query& query);

    std::vector<Entry> entries_;
};

} // namespace map
