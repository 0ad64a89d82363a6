// SPDX-License-Identifier: MIT
#include "map/BaseMap.h"
#include "platform/host/Files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>

namespace {

using map::BaseMap;
using map::Lines;
using map::WorldRect;
using namespace std::string_literals;

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

/// Whether polygons contain a point, by the nonzero winding rule.
bool isLand(const Lines& polygons, const map::WorldPoint& point) {
    int winding = 0;
    for (std::size_t i = 0; i < polygons.ends.size(); ++i) {
        const auto ring = lineOf(polygons, i);
        for (std::size_t k = 0; k < ring.size(); ++k) {
            const auto& a = ring[k];
            const auto& b = ring[(k + 1) % ring.size()];
            if ((a.y <= point.y) != (b.y <= point.y) &&
                a.x + (point.y - a.y) / (b.y - a.y) * (b.x - a.x) < point.x) {
                winding += a.y <= point.y ? 1 : -1;
            }
        }
    }
    return winding != 0;
}

/// "170 5,180 5|", in degrees to the east and north.
std::string told(const Lines& lines) {
    std::ostringstream text;
    for (std::size_t i = 0; i < lines.ends.size(); ++i) {
        for (const auto& point : lineOf(lines, i)) {
            text << std::round((point.x - 0.5) * 3600) / 10 << ' '
                 << std::round(map::unproject(point).latitude * 10) / 10 << ',';
        }
        text << '|';
    }
    return text.str();
}

TEST(BaseMap, ShowsEachShapeOnEveryTurnAsFinelyAsTheScaleNeeds) {
    // Two points per degree: a square west of the date line, an islet, a border, and a name.
    const std::string square = "\x04\xa8\x05\x28\x28\x00\x00\x27\x27\x00"s;
    const std::string islet = "\x03\xa7\x05\x00\x02\x00\x01\x02"s;
    const std::string border = "\x04\xa8\x05\x12\x02\x00\x12\x00\x02\x00"s;
    const std::string bytes =
        "nosigmap1\2\2" + square + islet + "\1" + border + "\1\2LI" + "\0\0\x48"s;
    const BaseMap base = BaseMap::read(std::as_bytes(std::span(bytes))).value();
    EXPECT_EQ(base.names().front().width, 0.1);
    const std::string coast = "530 10,540 10,|540 0,530 0,530 10,|";
    for (const double scale : {256, 512}) {
        Lines coasts;
        Lines borders;
        base.addCoasts({1.1, 0, 2, 1}, scale, coasts);
        base.addBorders({1.1, 0, 2, 1}, scale, borders);
        const bool isFine = scale > 256;
        EXPECT_EQ(told(coasts), coast + (isFine ? "360 0,360.5 0,360 0.5,360 0,|" : ""));
        EXPECT_EQ(told(borders),
                  isFine ? "530 5,530.5 5,535 5,535.5 5,|" : "530 5,535 5,535.5 5,|");
    }
}

TEST(Clipping, KeepsWhatIsInsideInPieces) {
    Lines lines;
    const std::vector<map::WorldPoint> roof{{-1, 0}, {1, 2}, {3, 0}};
    map::addClippedLine(roof, {-0.5, 0, 2.5, 1.5}, lines);
    map::addClippedPolygon(roof, {-0.5, 0.25, 2.5, 1}, lines);
    const std::vector<map::WorldPoint> pieces{
        {-0.5, 0.5}, {0.5, 1.5}, {1.5, 1.5}, {2.5, 0.5}, // of the line
        {-0.5, 0.5}, {0, 1},     {2, 1},     {2.5, 0.5}, {2.5, 0.25}, {-0.5, 0.25}};
    EXPECT_EQ(lines.points, pieces);
    EXPECT_EQ(lines.ends, (std::vector<std::size_t>{2, 4, 10}));
}

TEST(BaseMap, LandIsWhereItShouldBeAtEveryScale) {
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
    };
    for (const double scale : {1.0, 1024.0, 16'384.0, finest}) {
        SCOPED_TRACE(scale);
        Lines land;
        base.addLand(wholeMap, scale, land);
        for (const auto& place : places) {
            SCOPED_TRACE(place.what);
            EXPECT_EQ(isLand(land, map::project(place.place)), place.land);
            // Land clipped to a small rectangle agrees, also one turn of the earth further.
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

TEST(BaseMap, NamesAreInsideTheirCountries) {
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
    constexpr std::size_t signatureSize = 9;
    for (std::size_t size = 0; size < whole.size(); size += size < 64 ? 1 : 7919) {
        EXPECT_FALSE(BaseMap::read(std::span(whole).first(size))) << size;
    }
    for (std::size_t at = 0; at < whole.size(); at += at < 64 ? 1 : 15'013) {
        for (const int value : {0x00, 0x7F, 0x80, 0xFF}) {
            platform::Data damaged = whole;
            damaged[at] = static_cast<std::byte>(value);
            const auto base = BaseMap::read(damaged);
            EXPECT_FALSE(base && at < signatureSize);
            if (base) {
                Lines land;
                base->addLand(wholeMap, 700, land);
                EXPECT_LT(land.points.size(), 200'000U);
            }
        }
    }
    const auto text = [](std::string_view bytes) { return std::as_bytes(std::span(bytes)); };
    EXPECT_FALSE(BaseMap::read(text("nosigmap1\0\0\0\0"s)));
}

} // namespace
