// SPDX-License-Identifier: MIT
#include "desktop/map/StationWeather.h"

#include "desktop/controls/CategoryLook.h"
#include "desktop/controls/Contrast.h"
#include "reports/Description.h"

#include <QPainter>
#include <QTransform>

#include <algorithm>

namespace desktop {

namespace {

/// Where the staff ends and where it begins, outside the dot.
constexpr double staff = 25;
constexpr double staffBegin = 5;
constexpr double feather = 9;
/// How far the outer end of a feather is ahead of its root.
constexpr double slant = 3;
constexpr double spacing = 4;
constexpr double flagWidth = 5;
constexpr double calmRadius = 7;

constexpr int fivesOfFlag = 10;
constexpr int fivesOfLong = 2;

/// How much of the ground's colour there is in an old report's.
constexpr double paleness = 0.55;
/// Of a hollow dot's radius to the size of others: with nothing to say, it is to be seen last.
constexpr double hollowRadius = 0.3;

std::optional<WindBarb> barbOf(const std::optional<reports::Wind>& wind, double latitude) {
    if (!wind || wind->isVariable || !wind->direction) {
        return std::nullopt;
    }
    return WindBarb{*wind->direction, (std::clamp(wind->speed, 0, 5 * WindBarb::mostFives) + 2) / 5,
                    latitude < 0};
}

} // namespace

StationWeather stationWeather(const reports::Metar* metar, double latitude, reports::Date now) {
    if (!metar || now - metar->observed > uselessAge) {
        return {};
    }
    return {metar->category, reports::isOld(metar->observed, now),
            barbOf(metar->conditions.wind, latitude)};
}

QPainterPath barbPath(const WindBarb& barb) {
    QPainterPath path;
    if (barb.fives <= 0) {
        path.addEllipse(QPointF(), calmRadius, calmRadius);
        return path;
    }
    const int flags = barb.fives / fivesOfFlag;
    const int longs = barb.fives % fivesOfFlag / fivesOfLong;
    const bool hasShort = barb.fives % fivesOfLong != 0;
    // Drawn for a north wind of the northern hemisphere, then turned.
    const double tip =
        -std::max(staff, staffBegin + flags * (flagWidth + 1) + longs * spacing + 2 * spacing);
    path.moveTo(0, -staffBegin);
    path.lineTo(0, tip);
    double at = tip;
    for (int i = 0; i < flags; ++i, at += flagWidth + 1) {
        path.addPolygon(QPolygonF{{0, at}, {feather, at}, {0, at + flagWidth}, {0, at}});
    }
    for (int i = 0; i < longs; ++i, at += spacing) {
        path.moveTo(0, at);
        path.lineTo(feather, at - slant);
    }
    if (hasShort) {
        // At the tip it could be taken for a long one.
        at += barb.fives == 1 ? spacing : 0;
        path.moveTo(0, at);
        path.lineTo(feather / 2, at - slant / 2);
    }
    QTransform turn;
    turn.rotate(barb.direction);
    turn.scale(barb.isSouthern ? -1 : 1, 1);
    return turn.map(path);
}

void drawWeatherDot(QPainter& painter, const QPointF& middle, double size, double rim,
                    const StationWeather& weather, const DotColors& colors) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    if (!weather.category) {
        const double radius = hollowRadius * size;
        for (const auto& [color, width] :
             {std::pair(colors.rim, 1 + 2 * rim), std::pair(colors.line, 1.0)}) {
            painter.setPen(QPen(color, width));
            painter.drawEllipse(middle, radius, radius);
        }
        return;
    }
    const QRectF place(middle.x() - size / 2, middle.y() - size / 2, size, size);
    const QPainterPath shape = categoryShape(*weather.category, place);
    const QColor color = categoryColor(*weather.category, colors.ground);
    painter.strokePath(shape, QPen(colors.rim, 2 * rim));
    if (weather.category == reports::Category::unknown) {
        // A ring alone could be taken for a hollow dot.
        painter.setPen(Qt::NoPen);
        painter.setBrush(mixed(color, colors.ground, paleness));
        painter.drawEllipse(place);
    }
    painter.fillPath(shape, weather.isOld ? mixed(color, colors.ground, paleness) : color);
    if (weather.isOld) {
        // The paler colour alone would not stand out from the ground.
        painter.setClipPath(shape);
        painter.strokePath(shape, QPen(color, 2));
        painter.setClipping(false);
    }
}

} // namespace desktop
