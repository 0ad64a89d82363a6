// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/MapScheme.h"

#include <QPainter>
#include <QRectF>
#include <QString>

/// Text that can be read on any ground.
namespace desktop {

/// Centred, with a thin rim of another colour around its letters.
inline void drawHaloed(QPainter& painter, const QRectF& place, const QString& text,
                       const MapScheme& scheme) {
    painter.setPen(scheme.nameHalo);
    for (const QPointF& offset : {QPointF(-1, 0), QPointF(1, 0), QPointF(0, -1), QPointF(0, 1)}) {
        painter.drawText(place.translated(offset), Qt::AlignCenter | Qt::TextDontClip, text);
    }
    painter.setPen(scheme.name);
    painter.drawText(place, Qt::AlignCenter | Qt::TextDontClip, text);
}

/// A plate with rounded corners, to write on.
inline void drawPlate(QPainter& painter, const QRectF& place, const MapScheme& scheme) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(scheme.plate);
    painter.drawRoundedRect(place, 3, 3);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(scheme.plateText);
}

} // namespace desktop
