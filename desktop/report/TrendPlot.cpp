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
using reports::Ceiling;
using reports::Date;
using reports::Metar;

/// Nothing is known of a longer time without a report.
constexpr std::chrono::minutes longestGap{90};
constexpr double padding = 4;
constexpr double dot = 1.8;

/// The limits between the four categories, and where a scale begins and ends.
constexpr std::array<double, 5> feet{0, 500, 1000, 3000, 12'000};
constexpr std::array<double, 5> miles{0, 1, 3, 5, 10};

/// Each category takes a quarter of the height, so that the limits of ceiling and visibility
/// coincide. Above the last one is the top.
double heightOn(const std::array<double, 5>& limits, double value) {
    for (std::size_t i = 1; i < limits.size(); ++i) {
        if (value < limits[i]) {
            const double share = (value - limits[i - 1]) / (limits[i] - limits[i - 1]);
            return (static_cast<double>(i - 1) + std::max(share, 0.0)) / 4;
        }
    }
    return 1;
}

std::optional<double> ceilingHeight(const Metar& metar) {
    const Ceiling ceiling = reports::ceilingOf(metar.conditions);
    switch (ceiling.state) {
    case Ceiling::State::known:
        return heightOn(feet, ceiling.feet);
    case Ceiling::State::none:
        return 1;
    case Ceiling::State::unknown:
        break;
    }
    return {};
}

std::optional<double> visibilityHeight(const Metar& metar) {
    const auto& visibility = metar.conditions.visibility;
    return visibility ? std::optional(heightOn(miles, visibility->miles)) : std::nullopt;
}

std::optional<double> speed(const Metar& metar) {
    const auto& wind = metar.conditions.wind;
    return wind ? std::optional<double>(wind->speed) : std::nullopt;
}

std::optional<double> gust(const Metar& metar) {
    const auto& wind = metar.conditions.wind;
    return wind && wind->gust ? std::optional<double>(*wind->gust) : std::nullopt;
}

std::optional<double> pressure(const Metar& metar) {
    return metar.altimeter ? std::optional(*metar.altimeter * reports::hectopascalsInInch)
                           : std::nullopt;
}

/// The least of 1, 2, 5, 10, 20 … that divides a range into at most `most` steps.
double roundStep(double range, int most) {
    double step = 1;
    for (const double factor : {2.0, 2.5, 2.0}) {
        step *= range / step > most ? factor : 1;
    }
    while (range / step > most) {
        step *= 2;
    }
    return step;
}

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
    panels_ = panels();
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
    const double x = axis(panels_).x(metars_[static_cast<std::size_t>(item)].observed);
    return {static_cast<int>(x) - 3, 0, 7, height()};
}

int TrendPlot::itemAt(const QPoint& point) const {
    const TimeAxis time = axis(panels_);
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
            static_cast<int>(std::ceil(22 * metrics.height() + axisHeight(metrics)))};
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

std::vector<TrendPlot::Panel> TrendPlot::panels() const {
    using Value = std::optional<double> (*)(const Metar&);
    const auto scaled = [this](std::vector<std::pair<const char*, Value>> curves, double margin,
                               std::optional<double> foot) {
        std::optional<double> least = foot;
        std::optional<double> most = foot;
        for (const Metar& metar : metars_) {
            for (const auto& [name, value] : curves) {
                if (const auto found = value(metar)) {
                    least = std::min(*found, least.value_or(*found));
                    most = std::max(*found, most.value_or(*found));
                }
            }
        }
        const double middle = (least.value_or(0) + most.value_or(0)) / 2;
        const double low = foot ? *foot : std::min(least.value_or(0), middle - margin);
        const double high = std::max(most.value_or(0), (foot ? *foot : middle) + margin);
        const double step = roundStep(high - low, 3);
        const double bottom = std::floor(low / step) * step;
        const double top = std::ceil(high / step) * step;
        Panel panel;
        for (double mark = bottom; mark <= top + step / 2; mark += step) {
            panel.marks.push_back({(mark - bottom) / (top - bottom), QString::number(mark)});
        }
        for (const auto& curve : curves) {
            const Value value = curve.second;
            panel.curves.push_back(
                {QString::fromUtf8(curve.first),
                 [value, bottom, top](const Metar& metar) -> std::optional<double> {
                     const auto found = value(metar);
                     return found ? std::optional((*found - bottom) / (top - bottom))
                                  : std::nullopt;
                 }});
        }
        return panel;
    };
    std::vector<Panel> panels;
    panels.push_back(scaled({{"Temperature", [](const Metar& metar) { return metar.temperature; }},
                             {"Dew point, °C", [](const Metar& metar) { return metar.dewPoint; }}},
                            2, {}));
    panels.push_back(scaled({{"Wind", speed}, {"Gust, kt", gust}}, 10, 0));
    panels.back().hasArrows = true;
    Panel sky;
    sky.curves = {{QStringLiteral("Ceiling, ft"), ceilingHeight},
                  {QStringLiteral("Visibility, SM"), visibilityHeight}};
    sky.marks = {{0.25, QStringLiteral("500")},
                 {0.5, QStringLiteral("1,000")},
                 {0.75, QStringLiteral("3,000")},
                 {1, QStringLiteral("none")}};
    sky.marksOnTheRight = {{0.25, QStringLiteral("1")},
                           {0.5, QStringLiteral("3")},
                           {0.75, QStringLiteral("5")},
                           {1, QStringLiteral("10+")}};
    sky.hasBands = true;
    panels.push_back(std::move(sky));
    panels.push_back(scaled({{"Pressure, hPa", pressure}}, 2, {}));
    return panels;
}

TimeAxis TrendPlot::axis(const std::vector<Panel>& panels) const {
    const QFontMetricsF metrics(fontMetrics());
    double left = hourWidth(metrics) / 2;
    double right = left;
    for (const Panel& panel : panels) {
        for (const Mark& mark : panel.marks) {
            left = std::max(left, metrics.horizontalAdvance(mark.text));
        }
        for (const Mark& mark : panel.marksOnTheRight) {
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
    const TimeAxis time = axis(panels_);
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

void TrendPlot::drawPanel(QPainter& painter, const Panel& panel, const QRectF& place,
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
    for (const Mark& mark : panel.marks) {
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

void TrendPlot::drawMarks(QPainter& painter, const std::vector<Mark>& marks, const QRectF& area,
                          bool onTheRight) const {
    const QFontMetricsF metrics(fontMetrics());
    double free = area.bottom() + metrics.height();
    for (const Mark& mark : marks) {
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

void TrendPlot::drawTitle(QPainter& painter, const Panel& panel, const QRectF& line) const {
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

void TrendPlot::drawCurve(QPainter& painter, const Panel& panel, std::size_t curve,
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
