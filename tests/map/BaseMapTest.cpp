// SPDX-License-Identifier: MIT
#include "map/BaseMap.h"
#include "platform/Files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>

namespace {

using map::BaseMap;
using map::Lines;
using map::WorldRect;

constexpr WorldRect wholeMap{0, 0, 1, 1};
constexpr double finest = 256 * 1024;

const platform::Data& resource() {
    static const platform::Data bytes =
        platform::readFile(NOSIG_SOURCE_DIR "/resources/map/world.map", 1 << 24)
            .value_or(platform::Data());
    return bytes;
}

BaseMap world() {
    return BaseMap::read(resource()).value();
}

std::span<const map::WorldPoint> lineOf(const Lines& lines, std::size_t index) {
    const std::size_t begin = index == 0 ? 0 : lines.ends[index - 1];
    return std::span(lines.points).subspan(begin, lines.ends[index] - begin);
}

/// Where the polygons' edges cross a parallel, from west to east, and which way they go.
std::vector<std::pair<double, int>> crossings(const Lines& polygons, double y) {
    std::vector<std::pair<double, int>> found;
    for (std::size_t i = 0; i < polygons.ends.size(); ++i) {
        const auto ring = lineOf(polygons, i);
        for (std::size_t k = 0; k < ring.size(); ++k) {
            const auto& a = ring[k];
            const auto& b = ring[(k + 1) % ring.size()];
            if ((a.y <= y) != (b.y <= y)) {
                found.emplace_back(a.x + (y - a.y) / (b.y - a.y) * (b.x - a.x), a.y <= y ? 1 : -1);
            }
        }
    }
    std::ranges::sort(found);
    return found;
}

/// Whether polygons, taken by their winding, hold a point.
bool isLand(const Lines& polygons, const map::WorldPoint& point) {
    int winding = 0;
    for (const auto& [x, direction] : crossings(polygons, point.y)) {
        winding += x < point.x ? direction : 0;
    }
    return winding != 0;
}

/// Million square kilometres between 85 degrees north and south, by counting a raster.
double landArea(const Lines& polygons) {
    double area = 0;
    for (double latitude = -84.5; latitude < 85; ++latitude) {
        int winding = 0;
        double covered = 0;
        double west = 0;
        for (const auto& [x, direction] : crossings(polygons, map::projectedLatitude(latitude))) {
            covered += winding != 0 ? x - west : 0;
            winding += direction;
            west = x;
        }
        const double radians = std::numbers::pi / 180;
        area += covered * 2 * std::numbers::pi * std::cos(latitude * radians) * radians *
                6371.0072 * 6371.0072 / 1e6;
    }
    return area;
}

TEST(BaseMap, LandLiesWhereItShouldAtEveryScale) {
    const BaseMap base = world();
    const struct {
        const char* what;
        platform::Location place;
        bool land;
    } places[] = {
        {"Munich", {48.35, 11.8}, true},        {"Chukotka, west", {67, 179}, true},
        {"Chukotka, east", {66.5, -175}, true}, {"South Pole's edge", {-85, 120}, true},
        {"Caspian Sea", {42, 50.5}, false},     {"Arctic", {85, 0}, false},
        {"Pacific", {0, 179.9}, false},         {"Pacific, west", {0, -179.9}, false},
        {"Atlantic", {30, -40}, false},         {"Southern Ocean", {-60, 0}, false},
    };
    for (const double scale : {1.0, 1024.0, 16'384.0, finest}) {
        SCOPED_TRACE(scale);
        Lines land;
        base.addLand(wholeMap, scale, land);
        EXPECT_NEAR(landArea(land), 145.8, scale < 1024 ? 2.5 : 0.6);
        for (const auto& place : places) {
            SCOPED_TRACE(place.what);
            EXPECT_EQ(isLand(land, map::project(place.place)), place.land);
            // A clipped view of the place alone says the same, on the next turn of the earth too.
            const map::WorldPoint point = map::project(place.place);
            for (const double turn : {0.0, 1.0, -1.0}) {
                Lines near;
                base.addLand(
                    WorldRect{point.x - 1e-3, point.y - 1e-3, point.x + 1e-3, point.y + 1e-3}
                        .movedEast(turn),
                    scale, near);
                EXPECT_EQ(isLand(near, {point.x + turn, point.y}), place.land);
            }
        }
    }
}

TEST(BaseMap, ClippedShapesStayInsideAndAreFew) {
    const BaseMap base = world();
    const map::WorldPoint fiji = map::project({-16.8, 180});
    const WorldRect rect{fiji.x - 0.004, fiji.y - 0.004, fiji.x + 0.004, fiji.y + 0.004};
    Lines land;
    Lines coasts;
    Lines borders;
    base.addLand(rect, finest, land);
    base.addCoasts(rect, finest, coasts);
    base.addBorders(rect, finest, borders);
    EXPECT_GT(coasts.points.size(), 20U);
    EXPECT_LT(coasts.points.size(), 500U);
    EXPECT_TRUE(borders.points.empty());
    for (const Lines* lines : {&land, &coasts}) {
        for (const auto& point : lines->points) {
            EXPECT_TRUE(rect.overlaps({point.x, point.y, point.x, point.y}));
        }
    }
    // The date line, along which land was cut, is no coast.
    for (std::size_t i = 0; i < coasts.ends.size(); ++i) {
        const auto line = lineOf(coasts, i);
        const auto isCut = [](const auto& a, const auto& b) { return a.x == 1 && b.x == 1; };
        EXPECT_EQ(std::ranges::adjacent_find(line, isCut), line.end());
    }
}

TEST(BaseMap, NamesStandInsideTheirCountries) {
    const BaseMap base = world();
    ASSERT_GT(base.names().size(), 200U);
    EXPECT_EQ(base.names().front().text, "Russia");
    Lines land;
    base.addLand(wholeMap, finest, land);
    for (std::size_t i = 0; i < 100; ++i) {
        EXPECT_TRUE(isLand(land, base.names()[i].middle)) << base.names()[i].text;
    }
}

TEST(BaseMap, DamagedBytesAreRefusedOrHarmless) {
    const platform::Data& whole = resource();
    ASSERT_GT(whole.size(), 100'000U);
    for (std::size_t size = 0; size < whole.size(); size += size < 64 ? 1 : 7919) {
        EXPECT_FALSE(BaseMap::read(std::span(whole).first(size))) << size;
    }
    for (std::size_t at = 0; at < whole.size(); at += at < 64 ? 1 : 15'013) {
        for (const int value : {0x00, 0x7F, 0x80, 0xFF}) {
            platform::Data damaged = whole;
            damaged[at] = static_cast<std::byte>(value);
            if (const auto base = BaseMap::read(damaged)) {
                Lines land;
                base->addLand(wholeMap, 700, land);
                EXPECT_LT(land.points.size(), 200'000U);
            }
        }
    }
    const auto text = [](std::string_view bytes) { return std::as_bytes(std::span(bytes)); };
    EXPECT_FALSE(BaseMap::read(text(std::string("nosigmap1\0", 10))));
    EXPECT_TRUE(BaseMap::read(text(std::string("nosigmap1\1\0\0\0", 13))));
    // A ring and a border of no point, and a name without text.
    const std::string hollow = std::string("nosigmap1\1\1\0\1\0\1\0\0\0\0", 19);
    const auto base = BaseMap::read(text(hollow));
    ASSERT_TRUE(base);
    Lines lines;
    base->addLand(wholeMap, 256, lines);
    base->addCoasts(wholeMap, 256, lines);
    base->addBorders(wholeMap, 256, lines);
    EXPECT_TRUE(lines.points.empty());
}

} // namespace
