// SPDX-License-Identifier: MIT
#include "desktop/map/BasePainter.h"

#include "desktop/map/Lettering.h"
#include "desktop/text/Text.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

namespace desktop {

namespace {

/// In points. Nothing further outside the view is drawn, which hides the edges of clipped polygons.
constexpr double margin = 8;

/// The part of a name's width that must fit into its country.
constexpr double leastRoom = 0.9;

QPolygonF polygonOf(const map::Lines& lines, std::size_t begin, std::size_t end,
                    const map::Camera& view) {
    QPolygonF polygon;
    polygon.reserve(static_cast<qsizetype>(end - begin));
    for (std::size_t i = begin; i < end; ++i) {
        polygon.append({(lines.points[i].x - view.centre().x) * view.scale(),
                        (lines.points[i].y - view.centre().y) * view.scale()});
    }
    return polygon;
}

} // namespace

map::WorldRect BasePainter::rect() const {
    const map::WorldRect seen = state_.view.seen();
    const double around = margin / state_.view.scale();
    return {seen.left - around, seen.top - around, seen.right + around, seen.bottom + around};
}

double BasePainter::scale() const {
    return state_.view.scale() * state_.pixelsPerPoint;
}

void BasePainter::drawLand(QPainter& painter) {
    if (!state_.base) {
        return;
    }
    lines_.clear();
    state_.base->addLand(rect(), scale(), lines_);
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.reserve(static_cast<int>(lines_.points.size() + lines_.ends.size()));
    std::size_t begin = 0;
    for (const std::size_t end : lines_.ends) {
        path.addPolygon(polygonOf(lines_, begin, end, state_.view));
        path.closeSubpath();
        begin = end;
    }
    // Not antialiased, so that no seam shows where land was cut; the coast is, and covers its edge.
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillPath(path, state_.scheme.land);

    lines_.clear();
    state_.base->addCoasts(rect(), scale(), lines_);
    drawLines(painter, state_.scheme.coast);
}

void BasePainter::drawBorders(QPainter& painter) {
    if (!state_.base) {
        return;
    }
    lines_.clear();
    state_.base->addBorders(rect(), scale(), lines_);
    drawLines(painter, state_.scheme.border);
}

void BasePainter::drawLines(QPainter& painter, const QColor& color) {
    painter.setRenderHint(QPainter::Antialiasing);
    QPen pen(color, 1);
    pen.setCosmetic(true);
    painter.setPen(pen);
    std::size_t begin = 0;
    for (const std::size_t end : lines_.ends) {
        painter.drawPolyline(polygonOf(lines_, begin, end, state_.view));
        begin = end;
    }
}

void BasePainter::drawNames(QPainter& painter) {
    if (!state_.base) {
        return;
    }
    painter.setFont(state_.font);
    const QFontMetricsF metrics(state_.font);
    const QRectF frame = state_.frame();
    std::vector<QRectF> taken;
    for (const map::CountryName& name : state_.base->names()) {
        const double room = name.width * state_.view.scale();
        // A quick test: no name is narrower than two letters, and most countries are.
        if (room < metrics.height()) {
            continue;
        }
        const auto middle = state_.view.toScreen(name.middle);
        if (!middle || !frame.contains(middle->x, middle->y)) {
            continue;
        }
        const QString text = shownText(name.text);
        QRectF place(0, 0, metrics.horizontalAdvance(text), metrics.height());
        place.moveCenter({middle->x, middle->y});
        if (place.width() * leastRoom <= room && take(taken, place, 6, 3)) {
            drawHaloed(painter, place, text, state_.scheme);
        }
    }
}

} // namespace desktop
