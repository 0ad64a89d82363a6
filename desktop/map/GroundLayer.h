// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/BasePainter.h"
#include "desktop/map/Layer.h"

namespace desktop {

/// The earth itself: tiles, and under or over them the shipped outlines, and the graticule.
class GroundLayer final : public Layer {
public:
    explicit GroundLayer(const MapState& state) : Layer(state), base_(state) {}

    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    /// A tile's picture, or the part of a coarser one that is here instead of it.
    struct Picture {
        const QImage* image = nullptr;
        QRectF part;
    };

    [[nodiscard]] Picture pictureFor(const map::Tile& tile) const;
    void drawTiles(QPainter& painter) const;
    void drawGraticule(QPainter& painter) const;
    void drawGraticuleLabels(QPainter& painter) const;

    BasePainter base_;
};

} // namespace desktop
