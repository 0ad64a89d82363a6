// SPDX-License-Identifier: MIT
#include "map/Camera.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

using map::Camera;
using platform::Location;
using platform::Region;

Camera cameraOf(double width, double height) {
    Camera camera;
    camera.setSize({width, height});
    return camera;
}

double metresNorth(const Region& region) {
    const double half = region.latitudeSpan / 2;
    return platform::distanceMetres({region.centre.latitude - half, 0},
                                    {region.centre.latitude + half, 0});
}

double metresEast(const Region& region) {
    return platform::distanceMetres({region.centre.latitude, 0},
                                    {region.centre.latitude, region.longitudeSpan});
}

TEST(Camera, FittedRegionOfTwoKilometresIsWhatItShows) {
    const struct {
        const char* where;
        Location asked;
        double latitude;
    } places[] = {
        {"sixty north", {60.2, 24.96}, 60.2},
        {"at the very edge", {85.05, 20}, 85.05},
        {"beyond the edge", {-89.99, 0}, -map::highestLatitude},
        {"date line", {-16.5, 180}, -16.5},
    };
    for (const auto& place : places) {
        for (const auto& size : {map::ScreenSize{700, 450}, {300, 900}, {400, 400}}) {
            SCOPED_TRACE(place.where);
            Camera camera = cameraOf(size.width, size.height);
            const Region asked = map::regionWithDistance(place.asked, 2000, 2000);
            const Region fitted = camera.fitted(asked);
            camera.setCentre(place.asked);
            camera.show(fitted);
            const Region shown = camera.region();

            EXPECT_NEAR(shown.centre.latitude, place.latitude, 1e-4);
            EXPECT_NEAR(std::remainder(shown.centre.longitude - place.asked.longitude, 360), 0,
                        1e-6);
            EXPECT_NEAR(shown.latitudeSpan, fitted.latitudeSpan, 1e-9);
            EXPECT_NEAR(shown.longitudeSpan, fitted.longitudeSpan, 1e-9);
            // The shorter side shows the two kilometres and the longer one proportionally more. A
            // point is not quite as high as wide on the ground, since the earth is flattened and
            // the map's projection is not.
            const double square = std::min(size.width, size.height);
            EXPECT_NEAR(metresEast(shown) * square / size.width, 2000, 14);
            EXPECT_NEAR(metresNorth(shown) * square / size.height, 2000, 14);
            EXPECT_GE(std::min(metresEast(shown), metresNorth(shown)), 1999.9);
            EXPECT_LE(std::min(metresEast(shown), metresNorth(shown)), 2000.1);
        }
    }
}

TEST(Camera, ZoomsWithinItsLimits) {
    Camera camera;
    camera.setAttitude(0, 50);
    EXPECT_EQ(camera.toScreen(camera.centre())->y, 0) << "it has no size yet";
    camera = cameraOf(800, 500);
    EXPECT_EQ(camera.scale(), 800);
    camera.zoomBy(1e-9, {});
    EXPECT_EQ(camera.scale(), 800);
    camera.zoomBy(1e30, {});
    EXPECT_EQ(camera.zoom(), 20);
    for (const double none : {0.0, -2.0, std::nan(""), HUGE_VAL}) {
        camera.zoomBy(none, {});
        EXPECT_EQ(camera.zoom(), 20);
        EXPECT_FALSE(camera.show({{0, 0}, none, 1}) || camera.show({{0, 0}, 1, none}));
    }
    EXPECT_FALSE(camera.show({{90.1, 0}, 1, 1}));
    camera.show({{47, 11}, 1, 1});
    const map::WorldPoint under = camera.toWorld({100, 400});
    camera.zoomBy(3, {100, 400});
    const auto back = camera.toScreen(under).value();
    EXPECT_NEAR(back.x, 100, 1e-6);
    EXPECT_NEAR(back.y, 400, 1e-6);
}

TEST(Camera, MovesAcrossTheDateLineAndStopsAtTheEdges) {
    Camera camera = cameraOf(800, 500);
    camera.show({{0, 179.9}, 1, 1});
    camera.move(-500, 0);
    EXPECT_NEAR(camera.toScreen(map::project({0, 179.9}))->x, -100, 1e-6);

    camera.zoomBy(1e-9, {});
    camera.move(0, 1e6);
    EXPECT_NEAR(camera.seen().top, 0, 1e-9);
    camera.move(0, -1e6);
    EXPECT_NEAR(camera.seen().bottom, 1, 1e-9);
    // A place at the edge may be centred, but no more of the void beyond it can be shown.
    camera.show({{85.05, 0}, 1, 1});
    const double edge = camera.centre().y;
    camera.move(0, 50);
    EXPECT_EQ(camera.centre().y, edge);
    camera.move(0, -50);
    EXPECT_GT(camera.centre().y, edge);
}

TEST(Camera, ScreenAndWorldAreInversesHoweverItIsTurned) {
    for (const double tilt : {-10.0, 20.0, 50.0, 80.0}) {
        for (const double heading : {0.0, 45.0, 190.0, -90.0}) {
            SCOPED_TRACE(testing::Message() << tilt << ' ' << heading);
            Camera camera = cameraOf(700, 450);
            camera.show(map::regionWithDistance({47.26, 11.34}, 2000, 2000));
            camera.setAttitude(heading, tilt);
            camera.setAttitude(std::nan(""), 0);
            EXPECT_EQ(camera.tilt(), std::clamp(tilt, 0.0, 50.0));
            EXPECT_EQ(camera.heading(), heading < 0 ? 270 : heading);
            for (const map::ScreenPoint& point :
                 {map::ScreenPoint{0, 0}, {700, 0}, {350, 225}, {10, 449}, {700, 450}}) {
                const auto back = camera.toScreen(camera.toWorld(point)).value();
                EXPECT_NEAR(back.x, point.x, 1e-4);
                EXPECT_NEAR(back.y, point.y, 1e-4);
            }
        }
    }
    Camera camera = cameraOf(700, 450);
    camera.show(map::regionWithDistance({47.26, 11.34}, 2000, 2000));
    camera.setAttitude(90, 45);
    // East is ahead, and what is further ahead looks smaller.
    const map::WorldPoint middle = camera.centre();
    const auto ahead = camera.toScreen({middle.x + 100 / camera.scale(), middle.y}).value();
    const auto behind = camera.toScreen({middle.x - 100 / camera.scale(), middle.y}).value();
    // The eye is one and a half heights of the view away.
    EXPECT_NEAR(ahead.y, 225 - 70.71 / (1 + 70.71 / 675), 1e-3);
    EXPECT_NEAR(ahead.x, 350, 1e-6);
    EXPECT_GT(behind.y - 225, 225 - ahead.y);
    EXPECT_FALSE(camera.toScreen({middle.x - 1000 / camera.scale(), middle.y}));
}

} // namespace
