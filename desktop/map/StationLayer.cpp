// SPDX-License-Identifier: MIT
#include "desktop/map/StationLayer.h"

#include "desktop/map/Lettering.h"
#include "desktop/text/Text.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace desktop {

namespace {

/// In points; stations in the same square of this side share one dot.
constexpr double leastApart = 2;
/// With more dots than this, none has its identifier beside it.
constexpr std::size_t mostLabels = 400;
constexpr double labelGap = 6;
/// Fits into the marker.
constexpr double markedDotSize = 8;

/// A dot's diameter without its rim, in points: small when the whole world is in view, large enough
/// to point at when there are few dots.
double dotSize(double zoom) {
    return std::clamp(1 + zoom / 2, 2.0, 7.0);
}

/// Zero where dots lie close together: rims would hide everything else.
double rimWidth(double zoom) {
    return std::clamp(zoom / 2 - 1.5, 0.0, 1.0);
}

QPixmap dotPicture(double zoom, double pixelsPerPoint, const MapScheme& scheme) {
    const double whole = dotSize(zoom) + 2 * rimWidth(zoom) + 1;
    const double ratio = std::ceil(pixelsPerPoint);
    QPixmap picture((QSizeF(whole, whole) * ratio).toSize());
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    const QPointF middle = QPointF(picture.width(), picture.height()) / ratio / 2;
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    for (const auto& [color, radius] :
         {std::pair(scheme.dotRim, dotSize(zoom) / 2 + rimWidth(zoom)),
          std::pair(scheme.dot, dotSize(zoom) / 2)}) {
        painter.setBrush(color);
        painter.drawEllipse(middle, radius, radius);
    }
    return picture;
}

} // namespace

void StationLayer::paint(QPainter& painter, const std::vector<QRectF>& furniture) {
    painter.setFont(state_.font);
    shown_.clear();
    if (state_.showsWeather) {
        weather_.drawDots(painter, shown_);
        weather_.drawBarbs(painter, furniture);
    } else {
        drawDots(painter);
    }
    if (state_.type == platform::hybridMap) {
        drawLabels(painter);
    }
}

void StationLayer::paintTop(QPainter& painter) const {
    painter.setFont(state_.font);
    drawMarker(painter);
    if (state_.pointed) {
        const map::Station& station = state_.stations[*state_.pointed];
        if (const auto at = screenPoint(station.location)) {
            drawLabel(painter, *at, station.identifier);
        }
    }
}

std::optional<QPointF> StationLayer::screenPoint(const platform::Location& location) const {
    const auto point = state_.view.toScreen(map::project(location));
    return point ? std::optional(QPointF(point->x, point->y)) : std::nullopt;
}

void StationLayer::drawDots(QPainter& painter) {
    const map::Camera& view = state_.view;
    state_.index.add(view.seen(), leastApart / view.scale(), shown_);
    const QPixmap dot = dotPicture(view.zoom(), state_.pixelsPerPoint, state_.scheme);
    const QSizeF size = dot.deviceIndependentSize();
    const QPointF middle(size.width() / 2, size.height() / 2);
    const QRectF frame = grown(state_.frame(), size.width(), size.height());
    for (const map::PlacedStation& station : shown_) {
        const auto point = view.toScreen(station.point);
        if (point && frame.contains(point->x, point->y)) {
            painter.drawPixmap(QPointF(point->x, point->y) - middle, dot);
        }
    }
}

void StationLayer::drawLabels(QPainter& painter) const {
    if (shown_.size() > mostLabels) {
        return;
    }
    const QFontMetricsF metrics(state_.font);
    std::vector<QRectF> taken;
    for (const map::PlacedStation& station : shown_) {
        const auto point = state_.view.toScreen(station.point);
        if (!point || !state_.frame().contains(point->x, point->y)) {
            continue;
        }
        const QString text = shownText(state_.stations[station.number].identifier);
        const QRectF place(point->x + labelGap, point->y - metrics.height() / 2,
                           metrics.horizontalAdvance(text), metrics.height());
        if (take(taken, place)) {
            drawHaloed(painter, place, text, state_.scheme);
        }
    }
}

void StationLayer::drawMarker(QPainter& painter) const {
    if (!state_.marker) {
        return;
    }
    const auto at = screenPoint(state_.marker->location);
    if (!at) {
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    if (state_.markerWeather) {
        // The furniture may be below.
        painter.setBrush(state_.scheme.land);
    }
    for (const auto& [color, width] :
         {std::pair(state_.scheme.dotRim, 5.0), std::pair(state_.scheme.marker, 2.5)}) {
        painter.setPen(QPen(color, width));
        painter.drawEllipse(*at, 8, 8);
    }
    if (state_.markerWeather) {
        const MapScheme& scheme = state_.scheme;
        drawWeatherDot(painter, *at, markedDotSize, 0, *state_.markerWeather,
                       {scheme.land, scheme.dotRim, scheme.name});
    } else {
        painter.setPen(Qt::NoPen);
        painter.setBrush(state_.scheme.marker);
        painter.drawEllipse(*at, 2.5, 2.5);
    }
    drawLabel(painter, *at + QPointF(6, 0), state_.marker->identifier);
}

void StationLayer::drawLabel(QPainter& painter, const QPointF& at, const std::string& text) const {
    const QString shown = shownText(text);
    const QFontMetricsF metrics(state_.font);
    QRectF plate(0, 0, metrics.horizontalAdvance(shown) + 8, metrics.height() + 4);
    plate.moveCenter(at);
    plate.moveLeft(at.x() + labelGap);
    if (plate.right() > state_.frame().right()) {
        plate.moveRight(at.x() - labelGap - 12);
    }
    drawPlate(painter, plate, state_.scheme);
    painter.drawText(plate, Qt::AlignCenter, shown);
}

} // namespace desktop
