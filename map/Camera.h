// SPDX-License-Identifier: MIT
#pragma once

#include "map/Mercator.h"

#include <array>
#include <optional>

namespace map {

/// In points from the view's upper left corner, y downward.
struct ScreenPoint {
    double x = 0;
    double y = 0;
};

struct ScreenSize {
    double width = 0;
    double height = 0;

    friend bool operator==(const ScreenSize&, const ScreenSize&) = default;
};

/// What part of the world a rectangle of the screen, its view, shows: a plain value. Flat, north is
/// up and the scale is the same everywhere in it; tilted, the middle of the view keeps its scale,
/// what lies ahead shrinks and what is near grows.
///
/// It never shows less than a few metres, nor more than one turn of the earth (tilted, a little
/// more toward the horizon, which itself stays out of sight). What is asked beyond that is moved to
/// the nearest that is possible; what is no number is ignored.
class Camera {
public:
    [[nodiscard]] const WorldPoint& centre() const { return centre_; }
    /// Points by turn of the earth.
    [[nodiscard]] double scale() const { return scale_; }
    /// Of tiles of 256 points: 0 shows the world in one of them.
    [[nodiscard]] double zoom() const;
    [[nodiscard]] const ScreenSize& size() const { return size_; }
    /// Degrees clockwise from north of what is ahead, from 0 up to 360.
    [[nodiscard]] double heading() const { return heading_; }
    /// Degrees; 0 is flat.
    [[nodiscard]] double tilt() const { return tilt_; }

    void setSize(const ScreenSize& size);
    void setCentre(const platform::Location& centre);
    /// Tilts at most to 50 degrees.
    void setAttitude(double heading, double tilt);

    /// The region that the view shows when flat. Its centre is the middle of its span of latitude,
    /// which the projection draws a little off the middle of the view.
    [[nodiscard]] platform::Region region() const;
    /// The least region of this view's shape that holds `region`, as `region()` would read once it
    /// is shown; `region` itself as long as the view has no size, and when it
    /// is none.
    [[nodiscard]] platform::Region fitted(const platform::Region& region) const;
    /// False, and nothing changes, for what is no region of the earth.
    bool show(const platform::Region& region);

    /// Moves what is shown by so many points at the middle of the view.
    void move(double right, double down);
    /// Enlarges by a factor; the place under `fixed` stays where it is.
    void zoomBy(double factor, const ScreenPoint& fixed);

    /// Of the turn nearest to the centre; nothing for a place behind the eye.
    [[nodiscard]] std::optional<ScreenPoint> toScreen(const WorldPoint& point) const;
    /// x is not brought back into the unit square.
    [[nodiscard]] WorldPoint toWorld(const ScreenPoint& point) const;
    /// Upper left, upper right, lower right and lower left corner.
    [[nodiscard]] std::array<WorldPoint, 4> corners() const;
    /// The least upright rectangle around all that is seen.
    [[nodiscard]] WorldRect seen() const;
    /// False only for what lies wholly outside the view.
    [[nodiscard]] bool maySee(const WorldRect& rect) const;

    /// The projective map from points east and south of the centre, (world - centre) times the
    /// scale, to the screen: x' = (m0 x + m3 y + m6) / w, y' = (m1 x + m4 y + m7) / w with
    /// w = m2 x + m5 y + m8.
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
