// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/MapState.h"

#include <QPixmap>

namespace desktop {

/// The stations as dots, the selected one's marker, and the identifiers shown beside them.
class StationLayer {
public:
    explicit StationLayer(const MapState& state) : state_(state) {}

    void paint(QPainter& painter);

private:
    void drawDots(QPainter& painter);
    void drawLabels(QPainter& painter) const;
    void drawMarker(QPainter& painter) const;
    /// Draws a label beside a place, inside the view if possible.
    void drawLabel(QPainter& painter, const QPointF& at, const std::string& text) const;
    [[nodiscard]] std::optional<QPointF> screenPoint(const platform::Location& location) const;

    const MapState& state_;
    /// A member so that its memory is reused.
    std::vector<map::PlacedStation> shown_;
};

} // namespace desktop
