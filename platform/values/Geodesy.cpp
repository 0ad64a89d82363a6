// SPDX-License-Identifier: MIT
#include "platform/values/Geodesy.h"

#include "platform/values/Units.h"

#include <GeographicLib/Geodesic.hpp>

#include <cmath>
#include <limits>

namespace platform {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/// In metres, rounded down. A degree of latitude is shortest at the equator, where it is a(1-e²)
/// radians long: 110,574.2 m on WGS84.
constexpr double shortestDegreeOfLatitude = 110574;

/// In metres, subtracted from every bound, so that rounding (nanometres) can never lift one above
/// the distance.
constexpr double roundingMargin = 0.001;

} // namespace

bool Location::isValid() const {
    return latitude >= -90 && latitude <= 90 && longitude >= -180 && longitude <= 180;
}

double distanceMetres(const Location& from, const Location& to) {
    if (!from.isValid() || !to.isValid()) {
        return infinity;
    }
    double metres = 0;
    GeographicLib::Geodesic::WGS84().Inverse(from.latitude, from.longitude, to.latitude,
                                             to.longitude, metres);
    return metres;
}

double initialBearing(const Location& from, const Location& to) {
    if (!from.isValid() || !to.isValid()) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    double there = 0;
    double onwards = 0;
    GeographicLib::Geodesic::WGS84().Inverse(from.latitude, from.longitude, to.latitude,
                                             to.longitude, there, onwards);
    // Adding a whole turn to the smallest of negative angles gives exactly 360.
    const double turned = there < 0 ? there + 360 : there + 0.0;
    return turned < 360 ? turned : 0;
}

DistanceBound::DistanceBound(const Location& centre)
    : centre_(centre), centrePoint_(pointAt(centre)) {}

double DistanceBound::leastMetres(const Location& to, double enough) const {
    if (!centre_.isValid() || !to.isValid()) {
        return infinity;
    }
    const double northSouth =
        std::abs(to.latitude - centre_.latitude) * shortestDegreeOfLatitude - roundingMargin;
    if (northSouth > enough) {
        return northSouth;
    }
    const Point point = pointAt(to);
    const double chord =
        std::hypot(point.x - centrePoint_.x, point.y - centrePoint_.y, point.z - centrePoint_.z);
    return chord - roundingMargin;
}

DistanceBound::Point DistanceBound::pointAt(const Location& location) {
    using namespace wgs84;
    const double latitude = location.latitude * radiansPerDegree;
    const double longitude = location.longitude * radiansPerDegree;
    const double sine = std::sin(latitude);
    const double cosine = std::cos(latitude);
    const double normal = equatorialRadius / std::sqrt(1 - eccentricitySquared * sine * sine);
    return {normal * cosine * std::cos(longitude), normal * cosine * std::sin(longitude),
            normal * (1 - eccentricitySquared) * sine};
}

} // namespace platform
