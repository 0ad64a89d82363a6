// SPDX-License-Identifier: MIT
#include "map/StationIndex.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace map {

namespace {

/// Per coordinate; the finest square is less than a centimetre wide.
constexpr int bits = 32;

/// Inserts a zero between adjacent bits.
std::uint64_t spread(std::uint64_t value) {
    value = (value | value << 16) & 0x0000FFFF0000FFFF;
    value = (value | value << 8) & 0x00FF00FF00FF00FF;
    value = (value | value << 4) & 0x0F0F0F0F0F0F0F0F;
    value = (value | value << 2) & 0x3333333333333333;
    return (value | value << 1) & 0x5555555555555555;
}

std::uint64_t gathered(std::uint64_t value) {
    value &= 0x5555555555555555;
    value = (value | value >> 1) & 0x3333333333333333;
    value = (value | value >> 2) & 0x0F0F0F0F0F0F0F0F;
    value = (value | value >> 4) & 0x00FF00FF00FF00FF;
    value = (value | value >> 8) & 0x0000FFFF0000FFFF;
    return (value | value >> 16) & 0x00000000FFFFFFFF;
}

std::uint64_t gridded(double part) {
    constexpr auto most = static_cast<double>(std::numeric_limits<std::uint32_t>::max());
    return static_cast<std::uint64_t>(std::clamp(part * (most + 1), 0.0, most));
}

} // namespace

struct StationIndex::Query {
    WorldRect rect;
    double cell;
    std::vector<PlacedStation>& found;
};

/// A square of the world, and the entries in it.
struct StationIndex::Quarter {
    std::span<const Entry> entries;
    std::uint64_t code = 0;
    WorldRect rect{0, 0, 1, 1};
    int level = 0;
};

WorldPoint StationIndex::Entry::point() const {
    return {std::ldexp(static_cast<double>(gathered(code >> 1)), -bits),
            std::ldexp(static_cast<double>(gathered(code)), -bits)};
}

StationIndex::StationIndex(std::span<const Station> stations)
    : StationIndex(stations, [](std::size_t) { return true; }) {}

StationIndex::StationIndex(std::span<const Station> stations,
                           const std::function<bool(std::size_t)>& holds) {
    for (std::size_t i = 0; i < stations.size(); ++i) {
        if (stations[i].location.isValid() && holds(i)) {
            const WorldPoint point = project(stations[i].location);
            entries_.push_back(
                {spread(gridded(point.x - std::floor(point.x))) << 1 | spread(gridded(point.y)),
                 static_cast<std::uint32_t>(i)});
        }
    }
    std::ranges::sort(entries_, [](const Entry& a, const Entry& b) {
        return a.code != b.code ? a.code < b.code : a.number < b.number;
    });
}

void StationIndex::add(const WorldRect& rect, double cell,
                       std::vector<PlacedStation>& found) const {
    const auto first = static_cast<int>(std::floor(rect.left));
    for (int turn = first; turn < rect.right; ++turn) {
        Query query{rect.movedEast(-turn), cell, found};
        search({entries_}, query);
    }
}

void StationIndex::search(const Quarter& quarter, Query& query) {
    const std::span<const Entry> entries = quarter.entries;
    if (entries.empty() || !quarter.rect.overlaps(query.rect)) {
        return;
    }
    const double side = quarter.rect.right - quarter.rect.left;
    if (side <= query.cell || entries.front().code == entries.back().code) {
        const WorldPoint point = entries.front().point();
        if (side <= query.cell || query.rect.overlaps({point.x, point.y, point.x, point.y})) {
            query.found.push_back({entries.front().number, point});
        }
        return;
    }
    auto begin = entries.begin();
    for (std::uint64_t part = 0; part < 4; ++part) {
        Quarter next;
        next.level = quarter.level + 1;
        next.code = quarter.code | part << 2 * (bits - next.level);
        const std::uint64_t last = next.code | ((std::uint64_t{1} << 2 * (bits - next.level)) - 1);
        const auto end = std::ranges::upper_bound(begin, entries.end(), last, {}, &Entry::code);
        next.entries = {begin, end};
        next.rect.left = quarter.rect.left + (part & 2 ? side / 2 : 0);
        next.rect.top = quarter.rect.top + (part & 1 ? side / 2 : 0);
        next.rect.right = next.rect.left + side / 2;
        next.rect.bottom = next.rect.top + side / 2;
        search(next, query);
        begin = end;
    }
}

std::optional<std::uint32_t> StationIndex::nearest(const Camera& camera, const ScreenPoint& point,
                                                   double reach) const {
    WorldRect rect{1e9, 1e9, -1e9, -1e9};
    for (const double right : {-reach, reach}) {
        for (const double down : {-reach, reach}) {
            rect = rect.with(camera.toWorld({point.x + right, point.y + down}));
        }
    }
    std::vector<PlacedStation> found;
    add(rect, 0, found);

    std::optional<std::uint32_t> best;
    double least = reach;
    for (const PlacedStation& station : found) {
        if (const auto shown = camera.toScreen(station.point)) {
            const double distance = std::hypot(shown->x - point.x, shown->y - point.y);
            if (distance <= least) {
                least = distance;
                best = station.number;
            }
        }
    }
    return best;
}

} // namespace map
