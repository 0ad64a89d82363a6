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

/// What lies between two parallels and two meridians; spans in degrees, around the centre.
struct Region {
    Location centre;
    double latitudeSpan = 0;
    double longitudeSpan = 0;
};

/// The length in metres of the shortest line over the WGS84 ellipsoid from one position to
/// another; infinite when either is no valid position.
[[nodiscard]] double distanceMetres(const Location& from, const Location& to);

/// Answers, cheaply and for many positions, how far they are at least from one centre: the length
/// of the straight line through the earth, which no line over its surface undercuts.
class DistanceBound {
public:
    explicit DistanceBound(const Location& centre);

    /// Metres, never more than `distanceMetres` gives for the same two positions; infinite when
    /// that is. Once the difference in latitude alone exceeds `enough` metres, the bound that
    /// follows from it is answered without measuring further.
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
