// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/MapState.h"

namespace desktop {

/// What stands still while the map moves: scale bar, credit of the tiles, in the
/// flyover an arrow to the north, and the focus frame.
class FurnitureLayer {
public:
    explicit FurnitureLayer(const MapState& state) : state_(state) {}

    void paint(QPainter& painter) const;

    /// Where the credit stands; empty when there is none.
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
