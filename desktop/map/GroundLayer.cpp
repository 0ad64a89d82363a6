// SPDX-License-Identifier: MIT
#include "desktop/map/GroundLayer.h"

#include "desktop/map/Lettering.h"
#include "desktop/text/Text.h"
#include "map/Measures.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace desktop {

namespace {

/// Least distance between meridians of the graticule, in points.
constexpr double graticuleStep = 110;

/// How many levels up to look for a coarser picture.
constexpr int coarsest = 5;

/// Maps points east and south of the view's centre to the screen.
QTransform groundTransform(const map::Camera& view) {
    const auto m = view.matrix();
    return {m[0], m[1], m[2], m[3], m[4], m[5], m[6], m[7], m[8]};
}

QRectF groundRect(const map::WorldRect& rect, const map::Camera& view) {
    const map::WorldPoint& centre = view.centre();
    return {QPointF(rect.left - centre.x, rect.top - centre.y) * view.scale(),
            QPointF(rect.right - centre.x, rect.bottom - centre.y) * view.scale()};
}

} // namespace

void GroundLayer::paint(QPainter& painter) {
    painter.fillRect(state_.frame(), state_.scheme.sea);

    const bool anyTile = std::ranges::any_of(
        state_.tiles, [this](const map::Tile& tile) { return pictureFor(tile).image != nullptr; });
    const bool allTiles =
        anyTile && std::ranges::all_of(state_.tiles, [this](const map::Tile& tile) {
            return pictureFor(tile).image != nullptr;
        });
    const QTransform screen = painter.transform();
    painter.setTransform(groundTransform(state_.view), true);
    if (!allTiles) {
        base_.drawLand(painter);
    }
    drawTiles(painter);
    if (state_.type == platform::hybridMap || !anyTile) {
        base_.drawBorders(painter);
    }
    drawGraticule(painter);
    painter.setTransform(screen);

    if (state_.type == platform::hybridMap || !anyTile) {
        base_.drawNames(painter);
    }
    if (!state_.isTilted()) {
        drawGraticuleLabels(painter);
    }
}

GroundLayer::Picture GroundLayer::pictureFor(const map::Tile& tile) const {
    double left = 0;
    double top = 0;
    double side = 1;
    map::Tile there = tile;
    for (int up = 0; up <= coarsest && there.zoom >= 0; ++up, there = there.parent()) {
        if (const QImage* image = state_.loader->image(*state_.server, there)) {
            const double width = image->width();
            const double height = image->height();
            return {image, {left * width, top * height, side * width, side * height}};
        }
        left = (left + (there.x & 1)) / 2;
        top = (top + (there.y & 1)) / 2;
        side /= 2;
    }
    return {};
}

void GroundLayer::drawTiles(QPainter& painter) const {
    const map::Camera& view = state_.view;
    const double pixels = state_.pixelsPerPoint;
    // The edges of flat tiles snap to whole screen pixels; tilted tiles overlap a little instead.
    const QPointF middle(view.size().width / 2, view.size().height / 2);
    const auto snapped = [&](const QPointF& point) {
        return QPointF(std::round((point.x() + middle.x()) * pixels) / pixels,
                       std::round((point.y() + middle.y()) * pixels) / pixels) -
               middle;
    };
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setRenderHint(QPainter::Antialiasing, false);
    for (const map::Tile& tile : state_.tiles) {
        const Picture picture = pictureFor(tile);
        if (!picture.image) {
            continue;
        }
        const QRectF place = groundRect(tile.rect(), view);
        painter.drawImage(state_.isTilted()
                              ? place.adjusted(0, 0, 1, 1)
                              : QRectF(snapped(place.topLeft()), snapped(place.bottomRight())),
                          *picture.image, picture.part);
    }
}

void GroundLayer::drawGraticule(QPainter& painter) const {
    const map::Camera& view = state_.view;
    const map::Graticule lines = map::graticule(view, graticuleStep);
    QPen pen(state_.scheme.graticule, 1);
    pen.setCosmetic(true);
    painter.setPen(pen);
    painter.setRenderHint(QPainter::Antialiasing, state_.isTilted());
    const QRectF seen = groundRect(view.seen(), view);
    for (const map::GraticuleLine& line : lines.meridians) {
        const double x = (line.at - view.centre().x) * view.scale();
        painter.drawLine(QPointF(x, seen.top()), QPointF(x, seen.bottom()));
    }
    for (const map::GraticuleLine& line : lines.parallels) {
        const double y = (line.at - view.centre().y) * view.scale();
        painter.drawLine(QPointF(seen.left(), y), QPointF(seen.right(), y));
    }
}

void GroundLayer::drawGraticuleLabels(QPainter& painter) const {
    const map::Camera& view = state_.view;
    const map::Graticule lines = map::graticule(view, graticuleStep);
    QFont font = state_.font;
    font.setPointSizeF(font.pointSizeF() * 0.8);
    painter.setFont(font);
    const QFontMetricsF metrics(font);
    const auto draw = [&](const map::GraticuleLine& line, QRectF place, const QPointF& middle) {
        const QString text = shownText(line.label);
        place.setWidth(metrics.horizontalAdvance(text));
        place.moveCenter(middle);
        if (place.left() < 2) {
            place.moveLeft(4);
        }
        if (state_.frame().contains(place)) {
            drawHaloed(painter, place, text, state_.scheme);
        }
    };
    const QRectF line(0, 0, 0, metrics.height());
    for (const map::GraticuleLine& meridian : lines.meridians) {
        draw(meridian, line,
             {(meridian.at - view.centre().x) * view.scale() + view.size().width / 2,
              metrics.height()});
    }
    for (const map::GraticuleLine& parallel : lines.parallels) {
        const double y = (parallel.at - view.centre().y) * view.scale() + view.size().height / 2;
        // Keeps clear of the meridians' labels and of the scale bar.
        if (y > 2 * metrics.height() && y < view.size().height - 4 * metrics.height()) {
            draw(parallel, line, {0, y});
        }
    }
}

} // namespace desktop
