// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/MapScheme.h"

#include <QPainter>
#include <QRectF>
#include <QString>

#include <algorithm>
#include <vector>

/// Text that is legible on any background.
namespace desktop {

[[nodiscard]] inline QRectF grown(const QRectF& place, double across, double along) {
    return place.adjusted(-across, -along, across, along);
}

/// Takes a place and returns true unless, grown by `across` and `along`, it overlaps one taken.
[[nodiscard]] inline bool take(std::vector<QRectF>& taken, const QRectF& place, double across = 0,
                               double along = 0) {
    const QRectF room = grown(place, across, along);
    const bool isFree = std::none_of(taken.begin(), taken.end(),
                                     [&](const QRectF& other) { return other.intersects(room); });
    if (isFree) {
        taken.push_back(place);
    }
    return isFree;
}

/// Draws text centred, its letters with a thin rim in another colour.
inline void drawHaloed(QPainter& painter, const QRectF& place, const QString& text,
                       const MapScheme& scheme) {
    painter.setPen(scheme.nameHalo);
    for (const QPointF& offset : {QPointF(-1, 0), QPointF(1, 0), QPointF(0, -1), QPointF(0, 1)}) {
        painter.drawText(place.translated(offset), Qt::AlignCenter | Qt::TextDontClip, text);
    }
    painter.setPen(scheme.name);
    painter.drawText(place, Qt::AlignCenter | Qt::TextDontClip, text);
}

/// Draws a rounded plate and sets the pen for its text.
inline void drawPlate(QPainter& painter, const QRectF& place, const MapScheme& scheme) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(scheme.plate);
    painter.drawRoundedRect(place, 3, 3);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(scheme.plateText);
}

} // namespace desktop
