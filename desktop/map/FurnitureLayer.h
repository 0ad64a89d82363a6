// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/MapState.h"

namespace desktop {

/// What stays in place while the map moves: the scale bar, the tiles' credit, the focus frame and,
/// in the flyover, an arrow to the north.
class FurnitureLayer {
public:
    explicit FurnitureLayer(const MapState& state) : state_(state) {}

    void paint(QPainter& painter) const;

    /// The rectangle of the credit; empty if there is none.
    [[nodiscard]] QRectF creditPlace() const;

private:
    [[nodiscard]] QFont smallFont() const;
    [[nodiscard]] QString credit() const;
    void drawScaleBar(QPainter& painter) const;
    void drawCredit(QPainter& painter) const;
    void drawNorthArrow(QPainter& painter) const;

    const MapState& state_;
};

} // namespace desktop
