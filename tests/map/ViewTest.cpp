// SPDX-License-Identifier: MIT
#include "map/View.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using map::View;
using platform::Location;
using platform::Region;

View viewOf(double width, double height) {
    View view;
    view.setSize({width, height});
    return view;
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

TEST(View, FittedRegionOfTwoKilometresIsWhatItShows) {
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
            View view = viewOf(size.width, size.height);
            const Region asked = map::regionWithDistance(place.asked, 2000, 2000);
            const Region fitted = view.fitted(asked);
            view.setCentre(place.asked);
            view.show(fitted);
            const Region shown = view.region();

            EXPECT_NEAR(shown.centre.latitude, place.latitude, 1e-4);
            EXPECT_NEAR(std::remainder(shown.centre.longitude - place.asked.longitude, 360), 0,
                        1e-6);
            EXPECT_NEAR(shown.latitudeSpan, fitted.latitudeSpan, 1e-9);
            EXPECT_NEAR(shown.longitudeSpan, fitted.longitudeSpan, 1e-9);
            // The narrower way shows the two kilometres, the wider one in proportion more; a point
            // is not quite as high as wide, since the earth is flattened and the map is not.
            const double square = std::min(size.width, size.height);
            EXPECT_NEAR(metresEast(shown) * square / size.width, 2000, 14);
            EXPECT_NEAR(metresNorth(shown) * square / size.height, 2000, 14);
            EXPECT_GE(std::min(metresEast(shown), metresNorth(shown)), 1999.9);
            EXPECT_LE(std::min(metresEast(shown), metresNorth(shown)), 2000.1);
        }
    }
}

TEST(View, ZoomsWithinItsLimits) {
    View view = viewOf(800, 500);
    view.zoomBy(1e-9, {});
    EXPECT_EQ(view.scale(), 800);
    view.zoomBy(1e30, {});
    EXPECT_EQ(view.zoom(), 20);
}

TEST(View, MovesAcrossTheDateLineAndStopsAtTheEdges) {
    View view = viewOf(800, 500);
    view.show({{0, 179.9}, 1, 1});
    view.move(-500, 0);
    EXPECT_LT(view.region().centre.longitude, -179);

    view.zoomBy(1e-9, {});
    view.move(0, 1e6);
    EXPECT_NEAR(view.seen().top, 0, 1e-9);
    // A place at the edge may be looked at, but the void beyond it does not grow.
    view.show({{85.05, 0}, 1, 1});
    const double edge = view.centre().y;
    view.move(0, 50);
    EXPECT_EQ(view.centre().y, edge);
    view.move(0, -50);
    EXPECT_GT(view.centre().y, edge);
}

TEST(View, ScreenAndWorldAreInversesHoweverItIsTurned) {
    for (const double tilt : {0.0, 20.0, 50.0, 80.0}) {
        for (const double heading : {0.0, 45.0, 190.0, -90.0}) {
            SCOPED_TRACE(testing::Message() << tilt << ' ' << heading);
            View view = viewOf(700, 450);
            view.show(map::regionWithDistance({47.26, 11.34}, 2000, 2000));
            view.setAttitude(heading, tilt);
            for (const map::ScreenPoint& point :
                 {map::ScreenPoint{0, 0}, {700, 0}, {350, 225}, {10, 449}, {700, 450}}) {
                const auto back = view.toScreen(view.toWorld(point)).value();
                EXPECT_NEAR(back.x, point.x, 1e-4);
                EXPECT_NEAR(back.y, point.y, 1e-4);
            }
        }
    }
    View view = viewOf(700, 450);
    view.show(map::regionWithDistance({47.26, 11.34}, 2000, 2000));
    view.setAttitude(90, 45);
    // East is ahead, and what is ahead is smaller than what is near.
    const map::WorldPoint middle = view.centre();
    const auto ahead = view.toScreen({middle.x + 100 / view.scale(), middle.y}).value();
    const auto behind = view.toScreen({middle.x - 100 / view.scale(), middle.y}).value();
    EXPECT_LT(ahead.y, 225);
    EXPECT_NEAR(ahead.x, 350, 1e-6);
    EXPECT_GT(behind.y - 225, 225 - ahead.y);
    EXPECT_FALSE(view.toScreen({middle.x - 1000 / view.scale(), middle.y}));
}

} // namespace
