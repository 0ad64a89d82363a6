// SPDX-License-Identifier: MIT
#include "desktop/report/TafBar.h"

#include "desktop/controls/CategoryLook.h"
#include "desktop/controls/Contrast.h"
#include "desktop/report/TimeAxis.h"
#include "desktop/text/Text.h"
#include "reports/Description.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace desktop {

namespace {

using reports::Date;
using reports::Forecast;

/// More parts at one time than this share the last lane.
constexpr int mostLanes = 4;
/// Between neighbours.
constexpr double gap = 1;
constexpr double hatchStep = 6;
/// A part shorter than this can still be seen, pointed at and framed.
constexpr double narrowest = 3;

bool lasts(const Forecast& forecast) {
    return forecast.kind != Forecast::Kind::temporary && forecast.kind != Forecast::Kind::probable;
}

/// Slanted lines over a place: upwards for what is temporary, downwards for what is only probable.
void drawHatch(QPainter& painter, const QRectF& place, bool upwards) {
    painter.save();
    painter.setClipRect(place, Qt::IntersectClip);
    const double height = place.height();
    const int lines = static_cast<int>((place.width() + height) / hatchStep);
    for (int line = 0; line <= lines; ++line) {
        const double x = place.left() - height + line * hatchStep;
        painter.drawLine(QPointF(x, upwards ? place.bottom() : place.top()),
                         QPointF(x + height, upwards ? place.top() : place.bottom()));
    }
    painter.restore();
}

} // namespace

TafBar::TafBar(QWidget* parent) : PaintedList(QStringLiteral("TAF timeline"), parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void TafBar::setTaf(const reports::Taf* taf, Date now) {
    now_ = now;
    setAccessibleDescription(taf ? shownText(reports::tafInWords(*taf, now))
                                 : QStringLiteral("No TAF is known."));
    update();
    if (taf ? taf_ == *taf : !taf_) {
        return;
    }
    taf_.reset();
    if (taf) {
        taf_ = *taf;
    }
    arrange();
    updateGeometry();
    int held = 0;
    for (int item = 0; item < count(); ++item) {
        const auto at = static_cast<std::size_t>(item);
        held = parts_[at].lane == 0 && parts_[at].begins <= now ? item : held;
    }
    itemsChanged(held);
}

void TafBar::arrange() {
    parts_.clear();
    lanes_ = 1;
    // What a cancelled forecast says must not pass for a forecast.
    if (!taf_ || taf_->isCancelled) {
        return;
    }
    Part* last = nullptr;
    std::vector<Date> taken;
    parts_.reserve(taf_->forecasts.size());
    for (const Forecast& forecast : taf_->forecasts) {
        Part& part = parts_.emplace_back(Part{forecast.begins, forecast.ends, {}, 0});
        if (lasts(forecast)) {
            // A part holds until the next one takes its place, whatever end the service gives it.
            part.ends = taf_->ends;
            if (last) {
                last->ends = part.begins;
            }
            if (forecast.kind == Forecast::Kind::becoming) {
                part.complete = forecast.complete;
            }
            last = &part;
            continue;
        }
        const auto free =
            std::ranges::find_if(taken, [&](Date end) { return end <= forecast.begins; });
        const auto lane = std::min<std::ptrdiff_t>(free - taken.begin(), mostLanes - 1);
        if (free == taken.end() && std::ssize(taken) < mostLanes) {
            taken.push_back(forecast.ends);
        } else {
            Date& end = taken[static_cast<std::size_t>(lane)];
            end = std::max(end, forecast.ends);
        }
        part.lane = static_cast<int>(lane) + 1;
        lanes_ = std::max(lanes_, part.lane + 1);
    }
}

int TafBar::count() const {
    return static_cast<int>(parts_.size());
}

QString TafBar::words(int item) const {
    return shownText(reports::forecastInWords(taf_->forecasts[static_cast<std::size_t>(item)]));
}

bool TafBar::canBeDrawn() const {
    return taf_ && taf_->begins < taf_->ends && !parts_.empty();
}

TimeAxis TafBar::axis() const {
    const double margin = hourWidth(fontMetrics()) / 2;
    return {taf_->begins, taf_->ends, margin, std::max(width() - margin, margin + 1)};
}

double TafBar::laneHeight() const {
    return std::ceil(1.4 * QFontMetricsF(fontMetrics()).height());
}

double TafBar::laneTop(int lane) const {
    // The triangle of the mark for now is above the first one.
    return laneHeight() / 4 + lane * (laneHeight() + 2 * gap);
}

QRectF TafBar::frameOf(const Part& part) const {
    if (!canBeDrawn() || part.ends < part.begins || part.ends < taf_->begins ||
        part.begins > taf_->ends) {
        return {};
    }
    const TimeAxis time = axis();
    const double left = std::min(time.x(part.begins), time.right() - narrowest);
    const double right = std::max(time.x(part.ends), left + narrowest);
    return {left, laneTop(part.lane), right - left, laneHeight()};
}

QRect TafBar::place(int item) const {
    return frameOf(parts_[static_cast<std::size_t>(item)]).toAlignedRect();
}

int TafBar::itemAt(const QPoint& point) const {
    // Of two that overlap, the later one is drawn over the other.
    for (int item = count() - 1; item >= 0; --item) {
        if (place(item).contains(point)) {
            return item;
        }
    }
    return -1;
}

QSize TafBar::sizeHint() const {
    const QFontMetricsF metrics(fontMetrics());
    return {static_cast<int>(40 * metrics.averageCharWidth()),
            static_cast<int>(std::ceil(laneTop(lanes_) + axisHeight(metrics)))};
}

QSize TafBar::minimumSizeHint() const {
    return {static_cast<int>(12 * QFontMetricsF(fontMetrics()).averageCharWidth()),
            sizeHint().height()};
}

bool TafBar::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) {
        return PaintedList::event(event);
    }
    const auto& help = static_cast<const QHelpEvent&>(*event);
    const int item = itemAt(help.pos());
    if (item < 0) {
        QToolTip::hideText();
        event->ignore();
    } else {
        QToolTip::showText(help.globalPos(), toolTipOf(words(item)), this, place(item));
    }
    return true;
}

void TafBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setLayoutDirection(Qt::LeftToRight);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette().color(QPalette::WindowText));
    if (!canBeDrawn()) {
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap,
                         !taf_               ? QStringLiteral("No TAF is known.")
                         : taf_->isCancelled ? QStringLiteral("This TAF is cancelled.")
                                             : QStringLiteral("This TAF has no parts to draw."));
        return;
    }
    axis().draw(painter, laneTop(lanes_));
    for (std::size_t item = 0; item < parts_.size(); ++item) {
        if (frameOf(parts_[item]).isEmpty()) {
            continue;
        }
        if (parts_[item].lane == 0) {
            drawLasting(painter, item);
        } else {
            drawPassing(painter, item);
        }
    }
    drawNow(painter);
    if (hasFocus() && current() >= 0) {
        const QRectF frame = frameOf(parts_[static_cast<std::size_t>(current())]);
        painter.setBrush(Qt::NoBrush);
        for (const auto& [role, inset] :
             {std::pair(QPalette::WindowText, 0.0), std::pair(QPalette::Window, 2.0)}) {
            painter.setPen(QPen(palette().color(role), 2));
            painter.drawRect(frame.adjusted(inset, inset, -inset, -inset));
        }
    }
}

void TafBar::drawLasting(QPainter& painter, std::size_t item) const {
    const Part& part = parts_[item];
    const QColor ground = palette().color(QPalette::Window);
    const reports::Category category = taf_->forecasts[item].category;
    const QColor fill = categoryColor(category, ground);
    const QRectF frame = frameOf(part).adjusted(0, 0, -gap, 0);
    QRectF steady = frame;
    painter.fillRect(frame, fill);
    if (part.complete && *part.complete > part.begins) {
        // What held before gives way from its upper left to its lower right.
        const auto before =
            std::find_if(parts_.rbegin() + static_cast<std::ptrdiff_t>(parts_.size() - item),
                         parts_.rend(), [](const Part& one) { return one.lane == 0; });
        steady.setLeft(std::min(axis().x(std::min(*part.complete, part.ends)), frame.right()));
        QPainterPath slope;
        slope.addPolygon(QPolygonF{frame.topLeft(), QPointF(steady.left(), frame.top()),
                                   frame.bottomLeft(), frame.topLeft()});
        const QColor held =
            before == parts_.rend()
                ? ground
                : categoryColor(
                      taf_->forecasts[static_cast<std::size_t>(parts_.rend() - before - 1)]
                          .category,
                      ground);
        painter.fillPath(slope, held);
        painter.setPen(QPen(ground, gap));
        painter.drawLine(frame.bottomLeft(), QPointF(steady.left(), frame.top()));
    }
    painter.setPen(oppositeOf(fill));
    // A change that lasts to the part's end leaves only the slope to write on.
    const bool isAllChange = steady.width() < steady.height();
    drawCategory(painter, besideNow(isAllChange ? frame : steady), category, {},
                 isAllChange ? fill : QColor());
}

void TafBar::drawPassing(QPainter& painter, std::size_t item) const {
    const Forecast& forecast = taf_->forecasts[item];
    const QColor ground = palette().color(QPalette::Window);
    const QColor color = categoryColor(forecast.category, ground);
    const QRectF frame = frameOf(parts_[item]).adjusted(0.5, 0.5, -gap - 0.5, -0.5);
    const bool isTemporary = forecast.kind == Forecast::Kind::temporary;
    painter.setPen(QPen(color, 1));
    drawHatch(painter, frame, isTemporary);
    painter.setPen(QPen(color, 1, forecast.probability ? Qt::DashLine : Qt::SolidLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(frame);
    painter.setPen(color);
    drawCategory(painter, besideNow(frame), forecast.category,
                 forecast.probability ? QStringLiteral("%1 %").arg(*forecast.probability)
                                      : QString(),
                 ground);
}

QRectF TafBar::besideNow(const QRectF& frame) const {
    constexpr double clearance = 4;
    QRectF room = frame.adjusted(2, 1, -2, -1);
    const TimeAxis time = axis();
    const double x = time.x(now_);
    if (!time.contains(now_) || x + clearance < room.left() || x - clearance > room.right()) {
        return room;
    }
    if (x < room.center().x()) {
        room.setLeft(x + clearance);
    } else {
        room.setRight(x - clearance);
    }
    return room;
}

void TafBar::drawNow(QPainter& painter) const {
    const TimeAxis time = axis();
    if (!time.contains(now_)) {
        return;
    }
    const double x = time.x(now_);
    const double bottom = laneTop(lanes_);
    const QColor ink = palette().color(QPalette::WindowText);
    for (const auto& [color, width] :
         {std::pair(palette().color(QPalette::Window), 4.0), std::pair(ink, 2.0)}) {
        painter.setPen(QPen(color, width));
        painter.drawLine(QPointF(x, laneTop(0)), QPointF(x, bottom));
    }
    const double reach = laneTop(0);
    QPainterPath mark;
    mark.addPolygon(QPolygonF{{x - reach, 0}, {x + reach, 0}, {x, reach}, {x - reach, 0}});
    painter.fillPath(mark, ink);
}

} // namespace desktop
