// SPDX-License-Identifier: MIT
#include "desktop/report/TrendPlot.h"

#include "desktop/controls/CategoryLook.h"
#include "desktop/controls/Contrast.h"
#include "desktop/report/TimeAxis.h"
#include "desktop/text/Text.h"
#include "reports/Category.h"
#include "reports/Description.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace desktop {

namespace {

using namespace std::chrono_literals;
using reports::Category;
using reports::Date;
using reports::Metar;

/// Nothing is known of a longer time without a report.
constexpr std::chrono::minutes longestGap{90};
constexpr double padding = 4;
constexpr double dot = 1.8;

} // namespace

TrendPlot::TrendPlot(QWidget* parent)
    : PaintedList(QStringLiteral("Trend of the last 24 hours"), parent) {
    setMouseTracking(true);
}

void TrendPlot::setReports(std::vector<Metar> metars, Date begins, Date ends) {
    const bool isNew = metars != metars_;
    // The report being read stays the current one while the day moves on.
    const bool isChosen = isNew && current() >= 0 && current() < count() - 1 && !metars.empty() &&
                          metars.front().station == metars_.front().station;
    const Date chosen =
        isChosen ? metars_[static_cast<std::size_t>(current())].observed : Date::max();
    metars_ = std::move(metars);
    begins_ = begins;
    ends_ = ends;
    setAccessibleDescription(shownText(reports::trendInWords(metars_)));
    panels_ = trendPanels(metars_);
    update();
    if (isNew) {
        const auto found = std::ranges::find(metars_, chosen, &Metar::observed);
        itemsChanged(found == metars_.end() ? count() - 1
                                            : static_cast<int>(found - metars_.begin()));
    }
}

int TrendPlot::count() const {
    return static_cast<int>(metars_.size());
}

QString TrendPlot::words(int item) const {
    return shownText(reports::metarInWords(metars_[static_cast<std::size_t>(item)]));
}

QRect TrendPlot::place(int item) const {
    const double x = axis().x(metars_[static_cast<std::size_t>(item)].observed);
    return {static_cast<int>(x) - 3, 0, 7, height()};
}

int TrendPlot::itemAt(const QPoint& point) const {
    const TimeAxis time = axis();
    int nearest = -1;
    double least = width();
    for (int item = 0; item < count(); ++item) {
        const double away =
            std::abs(time.x(metars_[static_cast<std::size_t>(item)].observed) - point.x());
        if (away <= least) {
            least = away;
            nearest = item;
        }
    }
    return nearest;
}

QSize TrendPlot::minimumSizeHint() const {
    const QFontMetricsF metrics(fontMetrics());
    return {static_cast<int>(24 * metrics.averageCharWidth()),
            static_cast<int>(std::ceil(26 * metrics.height() + axisHeight(metrics)))};
}

void TrendPlot::currentChanged() {
    if (currentHasChanged) {
        currentHasChanged();
    }
}

void TrendPlot::mouseMoveEvent(QMouseEvent* event) {
    PaintedList::mouseMoveEvent(event);
    setCurrent(itemAt(event->position().toPoint()));
}

TimeAxis TrendPlot::axis() const {
    const QFontMetricsF metrics(fontMetrics());
    double left = hourWidth(metrics) / 2;
    double right = left;
    for (const TrendPanel& panel : panels_) {
        for (const TrendMark& mark : panel.marks) {
            left = std::max(left, metrics.horizontalAdvance(mark.text));
        }
        for (const TrendMark& mark : panel.marksOnTheRight) {
            right = std::max(right, metrics.horizontalAdvance(mark.text));
        }
    }
    left += 2 * padding;
    return {begins_, ends_, left, std::max(width() - right - 2 * padding, left + 1)};
}

QColor TrendPlot::curveColor(std::size_t curve) const {
    const QColor text = palette().color(QPalette::Text);
    return curve == 0 ? text
                      : standingOut(palette().color(QPalette::Highlight),
                                    palette().color(QPalette::Base), contrastOfText);
}

void TrendPlot::paintEvent(QPaintEvent* /*event*/) {
    if (metars_.empty()) {
        return;
    }
    const QFontMetricsF metrics(fontMetrics());
    const TimeAxis time = axis();
    QPainter painter(this);
    painter.setLayoutDirection(Qt::LeftToRight);
    painter.setRenderHint(QPainter::Antialiasing);
    // The bands of the third panel need more room than the scales of the others.
    constexpr std::array<double, 4> shares{5, 5.5, 7, 4.5};
    const double whole = height() - axisHeight(metrics);
    double top = padding;
    for (std::size_t i = 0; i < panels_.size(); ++i) {
        const double share = (whole - padding) * shares[i] / 22;
        drawPanel(painter, panels_[i], {time.left(), top, time.right() - time.left(), share}, time);
        top += share;
    }
    const double x = time.x(metars_[static_cast<std::size_t>(current())].observed);
    painter.setPen(QPen(palette().color(QPalette::WindowText), 1));
    painter.drawLine(QPointF(x, 0), QPointF(x, whole));

    // The axis stays in view where the panels scroll, unless it would leave them no room.
    const QRect seen = visibleRegion().isEmpty() ? rect() : visibleRegion().boundingRect();
    const bool isLow = seen.height() < 3 * axisHeight(metrics);
    const double axisTop = (isLow ? height() : seen.bottom() + 1) - axisHeight(metrics);
    painter.fillRect(QRectF(0, axisTop, width(), axisHeight(metrics)),
                     palette().color(QPalette::Window));
    painter.setPen(palette().color(QPalette::WindowText));
    time.draw(painter, axisTop);
    if (hasFocus()) {
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setPen(QPen(standingOut(palette().color(QPalette::Highlight),
                                        palette().color(QPalette::Window), contrastOfShapes),
                            2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(seen.adjusted(1, 1, -1, -1));
    }
}

void TrendPlot::drawPanel(QPainter& painter, const TrendPanel& panel, const QRectF& place,
                          const TimeAxis& time) const {
    const QFontMetricsF metrics(fontMetrics());
    const double line = metrics.height();
    const QColor ink = palette().color(QPalette::WindowText);
    drawTitle(painter, panel, {0, place.top(), static_cast<double>(width()), line});
    QRectF area = place.adjusted(0, line + padding, 0, -line / 2);
    painter.fillRect(area, palette().color(QPalette::Base));
    if (panel.hasBands) {
        drawBands(painter, area, false);
    }
    const QColor grid = mixed(palette().color(QPalette::Base), ink, 0.25);
    painter.setPen(QPen(grid, 1));
    for (const Date hour : time.hours(hourWidth(metrics))) {
        painter.setPen(QPen(grid, isMidnight(hour) ? 2 : 1));
        painter.drawLine(QPointF(time.x(hour), area.top()), QPointF(time.x(hour), area.bottom()));
    }
    if (panel.hasArrows) {
        drawArrows(painter, {area.left(), area.top(), area.width(), line}, time);
        area.setTop(area.top() + line);
    }
    if (panel.hasBands) {
        drawBands(painter, area, true);
    } else {
        // A little room, so that curves along foot and top can be seen.
        area.adjust(0, 3, 0, -3);
    }
    painter.setPen(QPen(grid, 1));
    for (const TrendMark& mark : panel.marks) {
        const double y = area.bottom() - mark.height * area.height();
        painter.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
    }
    painter.setPen(ink);
    drawMarks(painter, panel.marks, area, false);
    drawMarks(painter, panel.marksOnTheRight, area, true);
    for (std::size_t curve = panel.curves.size(); curve-- > 0;) {
        drawCurve(painter, panel, curve, area, time);
    }
}

void TrendPlot::drawMarks(QPainter& painter, const std::vector<TrendMark>& marks,
                          const QRectF& area, bool onTheRight) const {
    const QFontMetricsF metrics(fontMetrics());
    double free = area.bottom() + metrics.height();
    for (const TrendMark& mark : marks) {
        const double y = area.bottom() - mark.height * area.height();
        if (y + metrics.height() / 2 <= free) {
            free = y - metrics.height() / 2;
            const double left = onTheRight
                                    ? area.right() + padding
                                    : area.left() - padding - metrics.horizontalAdvance(mark.text);
            painter.drawText(QPointF(left, y + metrics.capHeight() / 2), mark.text);
        }
    }
}

void TrendPlot::drawTitle(QPainter& painter, const TrendPanel& panel, const QRectF& line) const {
    const QFontMetricsF metrics(fontMetrics());
    double left = line.left() + padding;
    for (std::size_t curve = 0; curve < panel.curves.size(); ++curve) {
        const double sample = 1.5 * metrics.height();
        painter.setPen(QPen(curveColor(curve), 2, curve == 0 ? Qt::SolidLine : Qt::DashLine));
        painter.drawLine(QPointF(left, line.center().y()),
                         QPointF(left + sample, line.center().y()));
        left += sample + padding;
        painter.setPen(palette().color(QPalette::WindowText));
        const QString name =
            metrics.elidedText(panel.curves[curve].name, Qt::ElideRight, line.right() - left);
        painter.drawText(QPointF(left, line.top() + metrics.ascent()), name);
        left += metrics.horizontalAdvance(name) + metrics.height();
    }
}

void TrendPlot::drawBands(QPainter& painter, const QRectF& area, bool words) const {
    const QColor base = palette().color(QPalette::Base);
    const QFontMetricsF metrics(fontMetrics());
    const double size = metrics.capHeight();
    QRectF band(area.left(), area.bottom(), area.width(), area.height() / 4);
    for (const Category category : {Category::LIFR, Category::IFR, Category::MVFR, Category::VFR}) {
        band.translate(0, -band.height());
        const QColor tint = mixed(base, categoryColor(category, base), 0.14);
        if (!words) {
            painter.fillRect(band, tint);
            continue;
        }
        const double width = 3 * size + metrics.horizontalAdvance(shownText(wordOf(category)));
        const QRectF plate(band.left() + 1, band.center().y() - 0.7 * metrics.height() / 2, width,
                           0.7 * metrics.height());
        painter.fillRect(plate, tint);
        painter.setPen(categoryColor(category, tint));
        drawCategory(painter, QRectF(plate.left(), band.top(), width, band.height()), category);
    }
}

void TrendPlot::drawArrows(QPainter& painter, const QRectF& line, const TimeAxis& time) const {
    const double reach = line.height() * 0.4;
    double free = line.left();
    painter.setPen(QPen(curveColor(0), 1.5));
    for (const Metar& metar : metars_) {
        const auto& wind = metar.conditions.wind;
        const double x = time.x(metar.observed);
        if (!wind || !wind->direction || wind->speed == 0 || x - reach < free ||
            x + reach > line.right()) {
            continue;
        }
        free = x + 1.6 * reach;
        painter.save();
        painter.translate(x, line.center().y());
        // To where it blows: from the north is downwards.
        painter.rotate(*wind->direction);
        painter.drawLine(QPointF(0, -reach), QPointF(0, reach));
        painter.drawPolyline(
            QPolygonF{{-reach / 2, reach / 3}, {0, reach}, {reach / 2, reach / 3}});
        painter.restore();
    }
}

void TrendPlot::drawCurve(QPainter& painter, const TrendPanel& panel, std::size_t curve,
                          const QRectF& area, const TimeAxis& time) const {
    const QColor color = curveColor(curve);
    QPainterPath line;
    QPainterPath dots;
    std::optional<Date> before;
    for (std::size_t i = 0; i < metars_.size(); ++i) {
        const auto height = panel.curves[curve].height(metars_[i]);
        if (!height) {
            before.reset();
            continue;
        }
        const Date observed = metars_[i].observed;
        const QPointF at(time.x(observed), area.bottom() - *height * area.height());
        if (before && observed - *before <= longestGap) {
            line.lineTo(at);
        } else {
            line.moveTo(at);
        }
        const double size = static_cast<int>(i) == current() ? 2 * dot : dot;
        dots.addEllipse(at, size, size);
        before = observed;
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, 2, curve == 0 ? Qt::SolidLine : Qt::DashLine));
    painter.drawPath(line);
    dots.setFillRule(Qt::WindingFill);
    painter.fillPath(dots, color);
}

} // namespace desktop
