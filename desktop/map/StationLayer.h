// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/MapState.h"
#include "desktop/map/WeatherLayer.h"

#include <QPixmap>

namespace desktop {

/// The stations as dots, the selected one's marker, and the identifiers shown beside them.
class StationLayer {
public:
    explicit StationLayer(const MapState& state) : state_(state), weather_(state) {}

    /// To be called when the stations or their weather have changed.
    void renew() { weather_.renew(); }

    /// Keeps barbs off the furniture.
    void paint(QPainter& painter, const std::vector<QRectF>& furniture);
    /// The marker and the label at the pointer, which belong on top of everything.
    void paintTop(QPainter& painter) const;

private:
    void drawDots(QPainter& painter);
    void drawLabels(QPainter& painter) const;
    void drawMarker(QPainter& painter) const;
    /// Draws a label beside a place, inside the view if possible.
    void drawLabel(QPainter& painter, const QPointF& at, const std::string& text) const;
    [[nodiscard]] std::optional<QPointF> screenPoint(const platform::Location& location) const;

    const MapState& state_;
    WeatherLayer weather_;
    /// A member so that its memory is reused.
    std::vector<map::PlacedStation> shown_;
};

} // namespace desktop
