// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

/// The ellipsoid that positions refer to.
namespace wgs84 {
/// In metres.
inline constexpr double equatorialRadius = 6378137;
inline constexpr double flattening = 1 / 298.257223563;
inline constexpr double eccentricitySquared = flattening * (2 - flattening);
} // namespace wgs84

/// A position on the earth in degrees, north and east positive.
struct Location {
    double latitude = 0;
    double longitude = 0;

    /// Latitude within -90 to 90 and longitude within -180 to 180, both ends included.
    [[nodiscard]] bool isValid() const;
};

/// The area between two parallels and two meridians; spans are in degrees, around the centre.
struct Region {
    Location centre;
    double latitudeSpan = 0;
    double longitudeSpan = 0;
};

/// The length in metres of the shortest line on the WGS84 ellipsoid between two positions; infinite
/// if either is invalid.
[[nodiscard]] double distanceMetres(const Location& from, const Location& to);

/// Where that line sets out for, in degrees clockwise from true north: 0 up to, but not including,
/// 360. From a pole, where every direction is one, it is a value that means nothing; so is that for
/// two equal positions. Not a number if either is invalid.
[[nodiscard]] double initialBearing(const Location& from, const Location& to);

/// Gives, cheaply and for many positions, a lower bound of their distance from one centre: the
/// length of the straight line through the earth, which no line on its surface undercuts.
class DistanceBound {
public:
    explicit DistanceBound(const Location& centre);

    /// In metres, never more than `distanceMetres` for the same two positions; infinite if that is.
    /// If the difference in latitude alone gives a bound above `enough` metres, that bound is
    /// returned without measuring further.
    [[nodiscard]] double leastMetres(const Location& to, double enough) const;

private:
    struct Point {
        double x, y, z;
    };
    static Point pointAt(const Location& location);
    Location centre_;
    Point centrePoint_;
};

} // namespace platform
