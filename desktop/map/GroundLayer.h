// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/BasePainter.h"
#include "desktop/map/MapState.h"

namespace desktop {

/// The earth itself: tiles, the shipped outlines under or over them, and the graticule.
class GroundLayer {
public:
    explicit GroundLayer(const MapState& state) : state_(state), base_(state) {}

    void paint(QPainter& painter);

private:
    /// A tile's picture, or the part of a coarser one in its place; null if neither is loaded.
    struct Picture {
        const QImage* image = nullptr;
        QRectF part;
    };

    [[nodiscard]] Picture pictureFor(const map::Tile& tile) const;
    void drawTiles(QPainter& painter) const;
    void drawGraticule(QPainter& painter) const;
    void drawGraticuleLabels(QPainter& painter) const;

    const MapState& state_;
    BasePainter base_;
};

} // namespace desktop
