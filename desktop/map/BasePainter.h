// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/MapState.h"

class QPainter;

namespace desktop {

/// Draws the shipped outlines of the world. The painter's coordinates are points east and south of
/// the view's centre, except for names, which stand upright on the screen.
class BasePainter {
public:
    explicit BasePainter(const MapState& state) : state_(state) {}

    void drawLand(QPainter& painter);
    void drawBorders(QPainter& painter);
    /// As many names of countries as have room.
    void drawNames(QPainter& painter);

private:
    [[nodiscard]] map::WorldRect rect() const;
    [[nodiscard]] double scale() const;
    void drawLines(QPainter& painter, const QColor& color);

    const MapState& state_;
    /// Kept for its memory.
    map::Lines lines_;
};

} // namespace desktop
