// SPDX-License-Identifier: MIT
#include "map/Mercator.h"

#include "platform/values/Units.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace map {

namespace {

constexpr double pi = std::numbers::pi;
constexpr double nearestToPole = 89.99;

using platform::radiansPerDegree;
using namespace platform::wgs84;

double onTheMap(double latitude) {
    return std::clamp(latitude, -highestLatitude, highestLatitude);
}

/// 1 - e² sin² φ, from which both radii of curvature follow.
double ellipsoidFactor(double latitude) {
    const double sine = std::sin(onTheMap(latitude) * radiansPerDegree);
    return 1 - eccentricitySquared * sine * sine;
}

} // namespace

double projectedLatitude(double latitude) {
    const double sine =
        std::sin(std::clamp(latitude, -nearestToPole, nearestToPole) * radiansPerDegree);
    return 0.5 - std::log((1 + sine) / (1 - sine)) / (4 * pi);
}

WorldPoint project(const platform::Location& location) {
    return {0.5 + location.longitude / 360,
            std::clamp(projectedLatitude(location.latitude), 0.0, 1.0)};
}

platform::Location unproject(const WorldPoint& point) {
    const double turn = point.x - std::floor(point.x);
    return {std::atan(std::sinh(pi * (1 - 2 * point.y))) / radiansPerDegree, turn * 360 - 180};
}

double metresPerDegreeNorth(double latitude) {
    const double factor = ellipsoidFactor(latitude);
    return radiansPerDegree * equatorialRadius * (1 - eccentricitySquared) /
           (factor * std::sqrt(factor));
}

double metresPerDegreeEast(double latitude) {
    return radiansPerDegree * equatorialRadius * std::cos(onTheMap(latitude) * radiansPerDegree) /
           std::sqrt(ellipsoidFactor(latitude));
}

platform::Region regionWithDistance(const platform::Location& centre, double northSouthMetres,
                                    double eastWestMetres) {
    const double latitude = onTheMap(centre.latitude);
    return {{latitude, centre.longitude},
            northSouthMetres / metresPerDegreeNorth(latitude),
            eastWestMetres / metresPerDegreeEast(latitude)};
}

} // namespace map
