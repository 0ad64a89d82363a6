// SPDX-License-Identifier: MIT
#include "desktop/map/FurnitureLayer.h"

#include "desktop/controls/CategoryLook.h"
#include "desktop/map/Lettering.h"
#include "desktop/text/Text.h"
#include "map/Measures.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace desktop {

namespace {

constexpr double edge = 6;
constexpr double padding = 4;
constexpr double longestBar = 120;
constexpr double tick = 5;
constexpr int mostCreditLines = 3;
constexpr double northArrowRadius = 16;
/// Around the place of the marker and between it and its label.
constexpr double markerRoom = 14;
constexpr double legendGap = 5;

constexpr std::optional<reports::Category> legendRows[] = {
    reports::Category::VFR,  reports::Category::MVFR,    reports::Category::IFR,
    reports::Category::LIFR, reports::Category::unknown, std::nullopt};
constexpr int legendSize = std::size(legendRows);

QString legendLetter(std::optional<reports::Category> category) {
    return category ? categoryLetter(*category) : QString();
}

QString legendWord(std::optional<reports::Category> category) {
    return category ? shownText(reports::wordOf(*category)) : QStringLiteral("none or old");
}

QFont bolder(QFont font) {
    font.setBold(true);
    return font;
}

} // namespace

void FurnitureLayer::paint(QPainter& painter) const {
    painter.setFont(smallFont());
    drawScaleBar(painter);
    drawCredit(painter);
    drawNorthArrow(painter);
    drawLegend(painter);
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

QRectF FurnitureLayer::middle() const {
    const QFontMetricsF metrics(state_.font);
    const double label = metrics.horizontalAdvance(QStringLiteral("MMMM"));
    const double half = std::max(markerRoom, metrics.height() / 2 + padding);
    return QRectF(-markerRoom, -half, 2 * markerRoom + label, 2 * half)
        .translated(state_.frame().center());
}

std::vector<QRectF> FurnitureLayer::places() const {
    std::vector<QRectF> result;
    for (const QRectF& place :
         {scaleBarPlace(), creditPlace(), northArrowPlace(), legend().place}) {
        if (!place.isEmpty()) {
            result.push_back(place);
        }
    }
    return result;
}

QRectF FurnitureLayer::scaleBarPlace() const {
    const double height = 2 * (QFontMetricsF(smallFont()).height() + padding);
    const QRectF place(edge, state_.frame().height() - edge - height, longestBar + 4 * padding,
                       height);
    return place.top() < 0 || place.intersects(middle()) ? QRectF() : place;
}

void FurnitureLayer::drawScaleBar(QPainter& painter) const {
    const QRectF plate = scaleBarPlace();
    if (plate.isEmpty()) {
        return;
    }
    const map::ScaleBar bar = map::scaleBar(state_.view, longestBar);
    const double text = QFontMetricsF(smallFont()).height();
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

QString FurnitureLayer::wholeCredit() const {
    return state_.server ? shownText(state_.loader->servers()[*state_.server].credit) : QString();
}

FurnitureLayer::Credit FurnitureLayer::credit() const {
    const QString whole = wholeCredit();
    if (whole.isEmpty()) {
        return {};
    }
    const QRectF frame = state_.frame();
    const QFontMetricsF metrics(smallFont());
    const double width =
        std::max(frame.width() - longestBar - 4 * padding - 3 * edge, 0.4 * frame.width()) -
        2 * padding;
    const double room = frame.bottom() - middle().bottom() - edge - padding;
    const auto placeOf = [&](const QString& text) {
        return metrics.boundingRect(QRectF(0, 0, width, frame.height()),
                                    Qt::AlignRight | Qt::TextWordWrap, text);
    };
    const double line = placeOf(QStringLiteral("X")).height();
    const double lines = std::clamp(std::floor(room / line), 1.0, double{mostCreditLines});
    const auto fits = [&](const QString& text) {
        return placeOf(text).height() < (lines + 0.5) * line;
    };
    QString text = whole;
    if (!fits(text)) {
        // As many whole words as there is room for.
        const QStringList words = whole.split(QLatin1Char(' '));
        const auto begin = [&](qsizetype count) {
            return words.first(count).join(QLatin1Char(' ')) + QChar(0x2026);
        };
        qsizetype fitting = 1;
        for (qsizetype tooMany = words.size(); tooMany - fitting > 1;) {
            const qsizetype tried = (fitting + tooMany) / 2;
            (fits(begin(tried)) ? fitting : tooMany) = tried;
        }
        text = begin(fitting);
    }
    QRectF place = grown(placeOf(text), padding, padding / 2);
    place.moveBottomRight(frame.bottomRight() - QPointF(edge, edge));
    return {place, text};
}

QString FurnitureLayer::elidedCredit() const {
    const QString whole = wholeCredit();
    return credit().text == whole ? QString() : whole;
}

void FurnitureLayer::drawCredit(QPainter& painter) const {
    const Credit shown = credit();
    if (shown.place.isEmpty()) {
        return;
    }
    drawPlate(painter, shown.place, state_.scheme);
    painter.drawText(shown.place, Qt::AlignCenter | Qt::TextWordWrap, shown.text);
}

QRectF FurnitureLayer::northArrowPlace() const {
    constexpr double side = 2 * northArrowRadius;
    const QRectF place(state_.frame().right() - edge - side, edge, side, side);
    return state_.isTilted() && !place.intersects(middle()) ? place : QRectF();
}

void FurnitureLayer::drawNorthArrow(QPainter& painter) const {
    const QRectF place = northArrowPlace();
    if (place.isEmpty()) {
        return;
    }
    drawPlate(painter, place, state_.scheme);
    painter.save();
    painter.translate(place.center());
    painter.rotate(-state_.view.heading());
    painter.setPen(Qt::NoPen);
    painter.setBrush(state_.scheme.marker);
    painter.drawPolygon(QPolygonF{{0, -13}, {4.5, 0}, {-4.5, 0}});
    painter.setBrush(state_.scheme.plateText);
    painter.drawPolygon(QPolygonF{{0, 13}, {4.5, 0}, {-4.5, 0}});
    painter.restore();
}

FurnitureLayer::Legend FurnitureLayer::legend() const {
    if (!state_.showsWeather) {
        return {};
    }
    const QFontMetricsF metrics(smallFont());
    const QFontMetricsF bold(bolder(smallFont()));
    const double letter = bold.horizontalAdvance(QLatin1Char('M'));
    double word = 0;
    for (const auto& category : legendRows) {
        word = std::max(word, metrics.horizontalAdvance(legendWord(category)));
    }
    std::vector<QRectF> others{scaleBarPlace(), creditPlace(), northArrowPlace(), middle()};
    for (const bool hasWords : {true, false}) {
        // Dot, letter and word, each with a gap before it.
        const QSizeF cell(metrics.height() + letter + 2 * legendGap +
                              (hasWords ? word + legendGap : 0),
                          metrics.height() + 2);
        for (const int columns : {1, 2, 3, legendSize}) {
            const int rows = legendSize / columns;
            QRectF place(edge, edge, columns * cell.width() + legendGap,
                         rows * cell.height() + padding);
            const bool isInside = place.right() + edge <= state_.frame().right() &&
                                  place.bottom() + edge <= state_.frame().bottom();
            if (isInside && take(others, place)) {
                return {place, columns, cell, hasWords};
            }
        }
    }
    return {};
}

void FurnitureLayer::drawLegend(QPainter& painter) const {
    const Legend shown = legend();
    if (shown.place.isEmpty()) {
        return;
    }
    drawPlate(painter, shown.place, state_.scheme);
    const QFont font = smallFont();
    const QFontMetricsF metrics(font);
    const QFontMetricsF bold(bolder(font));
    const QColor ground = state_.scheme.plate;
    const int rows = legendSize / shown.columns;
    for (int i = 0; i < legendSize; ++i) {
        const auto& category = legendRows[i];
        const int column = i / rows;
        const int row = i % rows;
        QRectF cell(QPointF(shown.place.left() + column * shown.cell.width(),
                            shown.place.top() + padding / 2 + row * shown.cell.height()),
                    shown.cell);
        StationWeather weather;
        weather.category = category;
        const double size = metrics.ascent() * 0.8;
        cell.setLeft(cell.left() + legendGap);
        drawWeatherDot(painter, {cell.left() + metrics.height() / 2, cell.center().y()}, size, 0,
                       weather, {ground, ground, state_.scheme.plateText});
        painter.setPen(state_.scheme.plateText);
        cell.setLeft(cell.left() + metrics.height() + legendGap);
        painter.setFont(bolder(font));
        painter.drawText(cell, Qt::AlignLeft | Qt::AlignVCenter, legendLetter(category));
        cell.setLeft(cell.left() + bold.horizontalAdvance(QLatin1Char('M')) + legendGap);
        painter.setFont(font);
        if (shown.hasWords) {
            painter.drawText(cell, Qt::AlignLeft | Qt::AlignVCenter, legendWord(category));
        }
    }
}

} // namespace desktop
