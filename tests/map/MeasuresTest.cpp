// SPDX-License-Identifier: MIT
#include "map/Measures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

using testing::ElementsAre;

map::Camera cameraOf(const platform::Region& region) {
    map::Camera camera;
    camera.setSize({600, 400});
    camera.show(region);
    return camera;
}

std::vector<std::string> labels(const std::vector<map::GraticuleLine>& lines) {
    std::vector<std::string> result;
    for (const auto& line : lines) {
        result.push_back(line.label);
    }
    return result;
}

TEST(Graticule, LabelsRoundAngles) {
    const auto world = map::graticule(cameraOf({{0, 0}, 100, 360}), 100);
    EXPECT_THAT(labels(world.meridians),
                ElementsAre("120°W", "60°W", "0°", "60°E", "120°E", "180°"));
    EXPECT_THAT(labels(world.parallels), ElementsAre("60°S", "0°", "60°N"));

    // Across the date line, the lines keep their places on the next turn of the earth.
    const map::Camera fiji = cameraOf({{-17, 180}, 3, 3});
    const auto dateLine = map::graticule(fiji, 100);
    EXPECT_THAT(labels(dateLine.meridians),
                ElementsAre("178°E", "179°E", "180°", "179°W", "178°W"));
    EXPECT_NEAR(fiji.toScreen({dateLine.meridians[2].at, fiji.centre().y})->x, 300, 1e-6);
}

TEST(Graticule, TakesTheNextRoundStepWhenZoomingIn) {
    map::Camera camera;
    camera.setSize({1200, 400});
    std::vector<std::string> steps;
    for (; camera.zoom() < 20; camera.zoomBy(1.1, {600, 200})) {
        const auto all = labels(map::graticule(camera, 201).meridians);
        const auto next = std::ranges::find(all, "0°") + 1;
        if (next < all.end() && (steps.empty() || steps.back() != *next)) {
            steps.push_back(*next);
        }
    }
    EXPECT_THAT(steps,
                ElementsAre("90°E", "60°E", "45°E", "30°E", "15°E", "10°E", "5°E", "2°E", "1°E",
                            "0°30′E", "0°10′E", "0°05′E", "0°02′E", "0°01′E", "0°00′30″E",
                            "0°00′10″E", "0°00′05″E", "0°00′02″E", "0°00′01″E"));
}

TEST(ScaleBar, HasRoundLabelsAndTrueLengths) {
    const struct {
        platform::Region region;
        const char* kilometres;
        const char* miles;
    } rows[] = {
        {map::regionWithDistance({0, 0}, 2000, 2000), "0.5 km", "0.2 mi"},
        {map::regionWithDistance({60, 20}, 200'000, 200'000), "50 km", "20 mi"},
        {map::regionWithDistance({60, 20}, 400'000, 400'000), "100 km", "50 mi"},
        {{{0, 0}, 100, 360}, "5000 km", "2000 mi"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.kilometres);
        const map::Camera camera = cameraOf(row.region);
        const map::ScaleBar bar = map::scaleBar(camera, 120);
        EXPECT_EQ(bar.kilometres.label, row.kilometres);
        EXPECT_EQ(bar.statuteMiles.label, row.miles);
        for (const auto& [mark, unit] :
             {std::pair(bar.kilometres, 1000.0), std::pair(bar.statuteMiles, 1609.344)}) {
            EXPECT_LE(mark.length, 120.001);
            EXPECT_GT(mark.length, 47);
            const auto west = map::unproject(camera.toWorld({300, 200}));
            const auto east = map::unproject(camera.toWorld({301, 200}));
            EXPECT_NEAR(platform::distanceMetres(west, east) * mark.length / unit /
                            std::stod(mark.label),
                        1, 1e-3);
        }
    }
}

} // namespace
