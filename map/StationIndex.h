// SPDX-License-Identifier: MIT
#pragma once

#include "map/Camera.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace map {

struct Station {
    std::string identifier;
    platform::Location location;
};

/// A station by its number in the list that an index was made from.
struct PlacedStation {
    std::uint32_t number = 0;
    WorldPoint point;
};

/// Finds stations by where they lie, in time that depends on how many are asked for rather than on
/// how many there are. Those without a valid location are not found.
class StationIndex {
public:
    StationIndex() = default;
    explicit StationIndex(std::span<const Station> stations);

    /// Adds those inside a rectangle, which may run on over several turns of the earth; of those
    /// that share a square of side `cell`, and of those at the same place, only one. The squares
    /// stay where they are when the rectangle moves.
    void add(const WorldRect& rect, double cell, std::vector<PlacedStation>& found) const;

    /// The one that is shown nearest to a point, at most `reach` points away from it; of several at
    /// one place the first of the list.
    [[nodiscard]] std::optional<std::uint32_t>
    nearest(const Camera& camera, const ScreenPoint& point, double reach) const;

    [[nodiscard]] std::size_t size() const { return entries_.size(); }

private:
    /// The bits of x and y in turn, the highest first: every quarter of a quarter of the world is
    /// one run of entries.
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
