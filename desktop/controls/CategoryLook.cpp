// SPDX-License-Identifier: MIT
#include "desktop/controls/CategoryLook.h"

#include "desktop/controls/Contrast.h"
#include "desktop/text/Text.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace desktop {

namespace {

using reports::Category;

struct Tones {
    QColor onLight;
    QColor onDark;
};

Tones tonesOf(Category category) {
    switch (category) {
    case Category::VFR:
        return {QColor(0, 122, 51), QColor(70, 205, 112)};
    case Category::MVFR:
        return {QColor(20, 84, 214), QColor(112, 170, 255)};
    case Category::IFR:
        return {QColor(200, 16, 40), QColor(255, 112, 104)};
    case Category::LIFR:
        return {QColor(166, 0, 156), QColor(246, 128, 240)};
    case Category::unknown:
        break;
    }
    return {QColor(96, 100, 106), QColor(170, 176, 184)};
}

/// A smaller one could be any of them.
constexpr double smallestShape = 5;

/// Of a shape beside letters.
double shapeSize(const QFontMetricsF& metrics) {
    return std::max(metrics.capHeight(), 6.0);
}

} // namespace

QColor categoryColor(Category category, const QColor& ground) {
    const Tones tones = tonesOf(category);
    return standingOut(oppositeOf(ground) == Qt::white ? tones.onDark : tones.onLight, ground,
                       contrastOfText);
}

QString categoryLetter(Category category) {
    return category == Category::unknown ? QStringLiteral("?")
                                         : shownText(reports::wordOf(category)).left(1);
}

QPainterPath categoryShape(Category category, const QRectF& place) {
    const double side = std::min(place.width(), place.height());
    QPainterPath path;
    if (!(side > 0)) {
        return path;
    }
    const QPointF middle = place.center();
    // Shapes of equal area look equally large; a disc that fills the square sets the measure.
    const double half = side / 2;
    switch (category) {
    case Category::VFR:
        path.addEllipse(middle, half, half);
        break;
    case Category::MVFR: {
        const double reach = 0.89 * half;
        path.addRect(QRectF(middle.x() - reach, middle.y() - reach, 2 * reach, 2 * reach));
        break;
    }
    case Category::IFR:
        path.addPolygon(QPolygonF{{middle.x(), middle.y() - half},
                                  {middle.x() + half, middle.y() + half},
                                  {middle.x() - half, middle.y() + half}});
        path.closeSubpath();
        break;
    case Category::LIFR:
        path.addPolygon(QPolygonF{{middle.x(), middle.y() - half},
                                  {middle.x() + half, middle.y()},
                                  {middle.x(), middle.y() + half},
                                  {middle.x() - half, middle.y()}});
        path.closeSubpath();
        break;
    case Category::unknown:
        path.setFillRule(Qt::OddEvenFill);
        path.addEllipse(middle, half, half);
        path.addEllipse(middle, 0.55 * half, 0.55 * half);
        break;
    }
    return path;
}

void drawCategory(QPainter& painter, const QRectF& place, Category category, const QString& note,
                  const QColor& plate) {
    const QFontMetricsF metrics(painter.font());
    const double size = std::min({shapeSize(metrics), place.width(), place.height()});
    if (size < smallestShape) {
        return;
    }
    const double gap = size / 2;
    const QString word = shownText(reports::wordOf(category));
    QString text;
    double width = size;
    for (const QString& tried :
         {note.isEmpty() ? word : word + QLatin1Char(' ') + note, word, categoryLetter(category)}) {
        const double needed = size + gap + metrics.horizontalAdvance(tried);
        if (place.height() >= metrics.ascent() && needed <= place.width()) {
            text = tried;
            width = needed;
            break;
        }
    }
    const QPointF middle = place.center();
    const double left = middle.x() - width / 2;
    painter.setRenderHint(QPainter::Antialiasing);
    if (plate.isValid()) {
        const QRectF whole(left, middle.y() - metrics.height() / 2, width, metrics.height());
        painter.fillRect(whole.adjusted(-2, 0, 2, 0) & place, plate);
    }
    painter.fillPath(categoryShape(category, {left, middle.y() - size / 2, size, size}),
                     painter.pen().color());
    painter.drawText(QPointF(left + size + gap, middle.y() + metrics.capHeight() / 2), text);
}

CategoryBadge::CategoryBadge(QString name, QWidget* parent)
    : QLabel(parent), name_(std::move(name)) {
    setTextFormat(Qt::PlainText);
    QFont bold;
    bold.setBold(true);
    setFont(bold);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setCategory(Category::unknown);
}

void CategoryBadge::setCategory(Category category) {
    category_ = category;
    const QString word = shownText(reports::wordOf(category));
    setText(word);
    setAccessibleName(name_ + QStringLiteral(": ") + word);
}

QSize CategoryBadge::sizeHint() const {
    const QFontMetricsF metrics(font());
    const double size = shapeSize(metrics);
    return {static_cast<int>(std::ceil(metrics.horizontalAdvance(text()) + 3.5 * size)),
            static_cast<int>(std::ceil(metrics.height() + size / 2))};
}

void CategoryBadge::paintEvent(QPaintEvent* /*event*/) {
    const QColor plate = categoryColor(category_, palette().color(backgroundRole()));
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(plate);
    painter.drawRoundedRect(QRectF(rect()), 4, 4);
    painter.setPen(oppositeOf(plate));
    drawCategory(painter, QRectF(rect()), category_);
}

} // namespace desktop
