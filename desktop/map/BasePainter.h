// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/MapState.h"

class QPainter;

namespace desktop {

/// Draws the shipped outlines of the world. The painter's coordinates must be points east and south
/// of the view's centre, but screen coordinates for names, which are always upright.
class BasePainter {
public:
    explicit BasePainter(const MapState& state) : state_(state) {}

    void drawLand(QPainter& painter);
    void drawBorders(QPainter& painter);
    /// As many country names as there is room for.
    void drawNames(QPainter& painter);

private:
    [[nodiscard]] map::WorldRect rect() const;
    [[nodiscard]] double scale() const;
    void drawLines(QPainter& painter, const QColor& color);

    const MapState& state_;
    /// A member so that its memory is reused.
    map::Lines lines_;
};

} // namespace desktop
