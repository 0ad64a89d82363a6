// SPDX-License-Identifier: MIT
#include "map/Camera.h"

#include "platform/values/Units.h"

#include <algorithm>
#include <cmath>

namespace map {

namespace {

using platform::radiansPerDegree;

constexpr double greatestScale = 256.0 * (1 << 20);
/// With the eye this many view heights away from the middle of a tilted view, no tilt up to the
/// steepest one brings the horizon into the view.
constexpr double eyeDistance = 1.5;
constexpr double steepestTilt = 50;

bool isUsable(const platform::Region& region) {
    return region.centre.isValid() && region.latitudeSpan > 0 && region.longitudeSpan > 0 &&
           std::isfinite(region.latitudeSpan) && std::isfinite(region.longitudeSpan);
}

/// Regions are cut off here, some kilometres beyond the map's edge: the surroundings of a place at
/// the edge are shown whole, but those of half the earth do not extend to the far-away pole.
constexpr double lastShown = highestLatitude + 0.1;

/// The upright rectangle of a region; it may extend beyond the unit square to the east or west.
WorldRect rectOf(const platform::Region& region) {
    const auto y = [&](double side) {
        return projectedLatitude(std::clamp(region.centre.latitude + side * region.latitudeSpan / 2,
                                            -lastShown, lastShown));
    };
    const double middle = 0.5 + region.centre.longitude / 360;
    return {middle - region.longitudeSpan / 720, y(1), middle + region.longitudeSpan / 720, y(-1)};
}

} // namespace

double Camera::zoom() const {
    return std::log2(scale_ / 256);
}

void Camera::setSize(const ScreenSize& size) {
    size_ = {std::max(size.width, 0.0), std::max(size.height, 0.0)};
    setScale(scale_);
}

void Camera::setScale(double scale) {
    const double least = std::max({size_.width, size_.height, 1.0});
    // In this order, so that NaN gives the smallest scale.
    scale_ = std::min(std::max(least, scale), std::max(least, greatestScale));
}

void Camera::setCentrePoint(WorldPoint centre) {
    centre_ = {centre.x - std::floor(centre.x), std::clamp(centre.y, 0.0, 1.0)};
}

void Camera::setCentre(const platform::Location& centre) {
    if (centre.isValid()) {
        setCentrePoint(project(centre));
    }
}

void Camera::setAttitude(double heading, double tilt) {
    if (std::isfinite(heading) && std::isfinite(tilt)) {
        heading_ = heading - 360 * std::floor(heading / 360);
        tilt_ = std::clamp(tilt, 0.0, steepestTilt);
    }
}

platform::Region Camera::region() const {
    const double halfHeight = size_.height / 2 / scale_;
    const double north = unproject({centre_.x, centre_.y - halfHeight}).latitude;
    const double south = unproject({centre_.x, centre_.y + halfHeight}).latitude;
    return {{(north + south) / 2, unproject(centre_).longitude},
            north - south,
            360 * size_.width / scale_};
}

platform::Region Camera::fitted(const platform::Region& region) const {
    Camera there = *this;
    const bool hasSize = size_.width > 0 && size_.height > 0;
    return hasSize && there.show(region) ? there.region() : region;
}

bool Camera::show(const platform::Region& region) {
    if (!isUsable(region)) {
        return false;
    }
    const WorldRect rect = rectOf(region);
    setScale(
        std::min(size_.width / (rect.right - rect.left), size_.height / (rect.bottom - rect.top)));
    setCentrePoint({(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2});
    return true;
}

void Camera::move(double right, double down) {
    const ScreenPoint middle{size_.width / 2, size_.height / 2};
    const WorldPoint there = toWorld({middle.x - right, middle.y - down});
    // No further beyond the map's edges than the view already is.
    const double margin = size_.height / 2 / scale_;
    setCentrePoint({there.x, std::clamp(there.y, std::min(margin, centre_.y),
                                        std::max(1 - margin, centre_.y))});
}

void Camera::zoomBy(double factor, const ScreenPoint& fixed) {
    if (!(factor > 0) || !std::isfinite(factor)) {
        return;
    }
    const WorldPoint before = toWorld(fixed);
    setScale(scale_ * factor);
    const WorldPoint after = toWorld(fixed);
    setCentrePoint({centre_.x + before.x - after.x, centre_.y + before.y - after.y});
}

std::array<double, 9> Camera::matrix() const {
    const double sine = std::sin(heading_ * radiansPerDegree);
    const double cosine = std::cos(heading_ * radiansPerDegree);
    const double height = std::cos(tilt_ * radiansPerDegree);
    const double depth =
        std::sin(tilt_ * radiansPerDegree) / std::max(eyeDistance * size_.height, 1.0);
    // The direction toward the eye is -sine x + cosine y; each point in it reduces the distance by
    // `depth`.
    const double wx = depth * sine;
    const double wy = -depth * cosine;
    const double halfWidth = size_.width / 2;
    const double halfHeight = size_.height / 2;
    return {cosine + halfWidth * wx,
            -sine * height + halfHeight * wx,
            wx,
            sine + halfWidth * wy,
            cosine * height + halfHeight * wy,
            wy,
            halfWidth,
            halfHeight,
            1};
}

std::optional<ScreenPoint> Camera::toScreen(const WorldPoint& point) const {
    const double east = point.x - centre_.x;
    const double x = (east - std::round(east)) * scale_;
    const double y = (point.y - centre_.y) * scale_;
    const auto m = matrix();
    const double w = m[2] * x + m[5] * y + m[8];
    if (w < 1e-3) {
        return std::nullopt;
    }
    return ScreenPoint{(m[0] * x + m[3] * y + m[6]) / w, (m[1] * x + m[4] * y + m[7]) / w};
}

WorldPoint Camera::toWorld(const ScreenPoint& point) const {
    const double sine = std::sin(heading_ * radiansPerDegree);
    const double cosine = std::cos(heading_ * radiansPerDegree);
    const double depth =
        std::sin(tilt_ * radiansPerDegree) / std::max(eyeDistance * size_.height, 1.0);
    const double down = point.y - size_.height / 2;
    // Points above the horizon, which are outside the view, are mapped to places far ahead.
    const double v = down / std::max(std::cos(tilt_ * radiansPerDegree) + down * depth, 0.01);
    const double u = (point.x - size_.width / 2) * (1 - v * depth);
    return {centre_.x + (u * cosine - v * sine) / scale_,
            centre_.y + (u * sine + v * cosine) / scale_};
}

std::array<WorldPoint, 4> Camera::corners() const {
    return {toWorld({0, 0}), toWorld({size_.width, 0}), toWorld({size_.width, size_.height}),
            toWorld({0, size_.height})};
}

WorldRect Camera::seen() const {
    WorldRect rect{centre_.x, centre_.y, centre_.x, centre_.y};
    for (const WorldPoint& corner : corners()) {
        rect = rect.with(corner);
    }
    return rect;
}

bool Camera::maySee(const WorldRect& rect) const {
    const std::array<WorldPoint, 4> inside = corners();
    const std::array<WorldPoint, 4> points{{{rect.left, rect.top},
                                            {rect.right, rect.top},
                                            {rect.right, rect.bottom},
                                            {rect.left, rect.bottom}}};
    for (std::size_t side = 0; side < 4; ++side) {
        const WorldPoint& from = inside[side];
        const WorldPoint& to = inside[(side + 1) % 4];
        // The corners run clockwise on the screen, where y grows downward: the outside is to the
        // left of each side.
        if (std::ranges::all_of(points, [&](const WorldPoint& p) {
                return (to.x - from.x) * (p.y - from.y) < (to.y - from.y) * (p.x - from.x);
            })) {
            return false;
        }
    }
    return rect.overlaps(seen());
}

} // namespace map
