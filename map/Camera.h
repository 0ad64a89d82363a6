// SPDX-License-Identifier: MIT
#pragma once

#include "map/Mercator.h"

#include <array>
#include <optional>

namespace map {

/// In points from the view's upper left corner; y grows downward.
struct ScreenPoint {
    double x = 0;
    double y = 0;
};

struct ScreenSize {
    double width = 0;
    double height = 0;

    friend bool operator==(const ScreenSize&, const ScreenSize&) = default;
};

/// Which part of the world a rectangle of the screen, the view, shows: a plain value. By default it
/// is flat, with north up and the same scale everywhere. When tilted, the middle of the view keeps
/// its scale, what lies ahead shrinks and what is near grows.
///
/// The view never shows less than a few metres, nor more than one turn of the earth (when tilted, a
/// little more toward the horizon, which itself stays out of sight). Requests beyond these limits
/// are moved to the nearest possible value; values that are not numbers are ignored.
class Camera {
public:
    [[nodiscard]] const WorldPoint& centre() const { return centre_; }
    /// Points per turn of the earth.
    [[nodiscard]] double scale() const { return scale_; }
    /// The zoom level for tiles of 256 points: at 0, one of them shows the world.
    [[nodiscard]] double zoom() const;
    [[nodiscard]] const ScreenSize& size() const { return size_; }
    /// The direction ahead, in degrees clockwise from north, from 0 up to but excluding 360.
    [[nodiscard]] double heading() const { return heading_; }
    /// Degrees; 0 is flat.
    [[nodiscard]] double tilt() const { return tilt_; }

    void setSize(const ScreenSize& size);
    void setCentre(const platform::Location& centre);
    /// The tilt is limited to 50 degrees.
    void setAttitude(double heading, double tilt);

    /// The region that the view shows when flat. Its centre is the middle of its latitude span,
    /// which the projection draws slightly off the middle of the view.
    [[nodiscard]] platform::Region region() const;
    /// Returns the smallest region of this view's shape that contains `region`, as `region()` would
    /// report it once shown; `region` itself if it is invalid or the view has no size.
    [[nodiscard]] platform::Region fitted(const platform::Region& region) const;
    /// Returns false and changes nothing if `region` is not a region of the earth.
    bool show(const platform::Region& region);

    /// Moves the map by so many points, measured at the middle of the view.
    void move(double right, double down);
    /// Enlarges by a factor; the place under `fixed` stays there.
    void zoomBy(double factor, const ScreenPoint& fixed);

    /// The point on the turn of the earth nearest to the centre; absent if it is behind the eye.
    [[nodiscard]] std::optional<ScreenPoint> toScreen(const WorldPoint& point) const;
    /// x is not wrapped into the unit square.
    [[nodiscard]] WorldPoint toWorld(const ScreenPoint& point) const;
    /// The upper left, upper right, lower right and lower left corner.
    [[nodiscard]] std::array<WorldPoint, 4> corners() const;
    /// The smallest upright rectangle around everything that is seen.
    [[nodiscard]] WorldRect seen() const;
    /// False only if `rect` is certain to lie wholly outside the view.
    [[nodiscard]] bool maySee(const WorldRect& rect) const;

    /// The projective transform to the screen from points east and south of the centre, that is,
    /// from (world - centre) times the scale: x' = (m0 x + m3 y + m6) / w and
    /// y' = (m1 x + m4 y + m7) / w with w = m2 x + m5 y + m8.
    [[nodiscard]] std::array<double, 9> matrix() const;

private:
    void setScale(double scale);
    void setCentrePoint(WorldPoint centre);

    WorldPoint centre_{0.5, 0.5};
    double scale_ = 256;
    ScreenSize size_;
    double heading_ = 0;
    double tilt_ = 0;
};

} // namespace map
