// SPDX-License-Identifier: MIT
#include "desktop/map/FurnitureLayer.h"

#include "desktop/map/Lettering.h"
#include "desktop/text/Text.h"
#include "map/Measures.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

namespace desktop {

namespace {

constexpr double edge = 6;
constexpr double padding = 4;
constexpr double longestBar = 120;
constexpr double tick = 5;

} // namespace

void FurnitureLayer::paint(QPainter& painter) const {
    painter.setFont(smallFont());
    drawScaleBar(painter);
    drawCredit(painter);
    if (state_.isTilted()) {
        drawNorthArrow(painter);
    }
    if (state_.hasFocus) {
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(state_.scheme.focus, 2));
        painter.drawRect(grown(state_.frame(), -1, -1));
    }
}

QFont FurnitureLayer::smallFont() const {
    QFont font = state_.font;
    font.setPointSizeF(font.pointSizeF() * 0.85);
    return font;
}

void FurnitureLayer::drawScaleBar(QPainter& painter) const {
    const map::ScaleBar bar = map::scaleBar(state_.view, longestBar);
    const QFontMetricsF metrics(smallFont());
    const double text = metrics.height();
    const QRectF plate(edge, state_.frame().height() - edge - 2 * (text + padding),
                       longestBar + 4 * padding, 2 * (text + padding));
    if (plate.top() < 0) {
        return;
    }
    drawPlate(painter, plate, state_.scheme);
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QPointF begin(plate.left() + 2 * padding, plate.center().y());
    const struct {
        const map::ScaleMark& mark;
        double up;
    } marks[] = {{bar.kilometres, 1}, {bar.statuteMiles, -1}};
    for (const auto& [mark, up] : marks) {
        const QPointF end = begin + QPointF(mark.length, 0);
        painter.drawLine(begin, end);
        for (const QPointF& at : {begin, end}) {
            painter.drawLine(at, at - QPointF(0, up * tick));
        }
        QRectF place(begin.x() + padding, begin.y(), longestBar, text);
        place.translate(0, up > 0 ? -text - 1 : 2);
        painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter, shownText(mark.label));
    }
}

QString FurnitureLayer::credit() const {
    return state_.server ? shownText(state_.loader->servers()[*state_.server].credit) : QString();
}

QRectF FurnitureLayer::creditPlace() const {
    const QString text = credit();
    if (text.isEmpty()) {
        return {};
    }
    const QRectF frame = state_.frame();
    const double room =
        std::max(frame.width() - longestBar - 4 * padding - 3 * edge, 0.4 * frame.width());
    QRectF place = grown(QFontMetricsF(smallFont())
                             .boundingRect(QRectF(0, 0, room - 2 * padding, frame.height()),
                                           Qt::AlignRight | Qt::TextWordWrap, text),
                         padding, padding / 2);
    place.moveBottomRight(frame.bottomRight() - QPointF(edge, edge));
    return place;
}

void FurnitureLayer::drawCredit(QPainter& painter) const {
    const QRectF place = creditPlace();
    if (place.isEmpty()) {
        return;
    }
    drawPlate(painter, place, state_.scheme);
    painter.drawText(place, Qt::AlignCenter | Qt::TextWordWrap, credit());
}

void FurnitureLayer::drawNorthArrow(QPainter& painter) const {
    constexpr double radius = 16;
    const QPointF middle = state_.frame().topRight() + QPointF(-edge - radius, edge + radius);
    drawPlate(painter, {middle.x() - radius, middle.y() - radius, 2 * radius, 2 * radius},
              state_.scheme);
    painter.save();
    painter.translate(middle);
    painter.rotate(-state_.view.heading());
    painter.setPen(Qt::NoPen);
    painter.setBrush(state_.scheme.marker);
    painter.drawPolygon(QPolygonF{{0, -13}, {4.5, 0}, {-4.5, 0}});
    painter.setBrush(state_.scheme.plateText);
    painter.drawPolygon(QPolygonF{{0, 13}, {4.5, 0}, {-4.5, 0}});
    painter.restore();
}

} // namespace desktop
