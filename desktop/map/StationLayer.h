// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/Layer.h"

#include <QPixmap>

namespace desktop {

/// The stations as dots, the selected one's marker, and the identifiers that are shown beside them.
class StationLayer final : public Layer {
public:
    explicit StationLayer(const MapState& state) : Layer(state) {}

    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    void drawDots(QPainter& painter);
    void drawLabels(QPainter& painter) const;
    void drawMarker(QPainter& painter) const;
    /// Beside a place; inside the view where that can be.
    void drawLabel(QPainter& painter, const QPointF& at, const std::string& text) const;
    [[nodiscard]] std::optional<QPointF> screenPoint(const platform::Location& location) const;

    /// Kept for its memory.
    std::vector<map::PlacedStation> shown_;
};

} // namespace desktop
