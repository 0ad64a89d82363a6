// SPDX-License-Identifier: MIT
#include "desktop/report/TimeAxis.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace desktop {

namespace {

using namespace std::chrono_literals;
using reports::Date;

constexpr double tick = 4;

/// Differences of times from anywhere in a report may be too great for a whole number.
double seconds(Date date) {
    return std::chrono::duration<double>(date.time_since_epoch()).count();
}

QString dayOf(Date date) {
    const std::chrono::year_month_day day(std::chrono::floor<std::chrono::days>(date));
    return QStringLiteral("%1 %2").arg(
        QString::number(static_cast<unsigned>(day.day())),
        QLocale::c().monthName(static_cast<int>(static_cast<unsigned>(day.month())),
                               QLocale::ShortFormat));
}

std::int64_t hourOf(Date date) {
    return (std::chrono::floor<std::chrono::hours>(date) -
            std::chrono::floor<std::chrono::days>(date)) /
           1h;
}

} // namespace

TimeAxis::TimeAxis(Date begins, Date ends, double left, double right)
    : begins_(begins), ends_(ends), left_(left), right_(right) {}

double TimeAxis::x(Date date) const {
    const double share = (seconds(date) - seconds(begins_)) / (seconds(ends_) - seconds(begins_));
    return left_ + std::clamp(share, 0.0, 1.0) * (right_ - left_);
}

bool TimeAxis::contains(Date date) const {
    return begins_ <= date && date <= ends_;
}

std::vector<Date> TimeAxis::hours(double labelWidth) const {
    const double least =
        (seconds(ends_) - seconds(begins_)) / 3600 * labelWidth / std::max(right_ - left_, 1.0);
    std::int64_t step = 1;
    for (const std::int64_t next : {2, 3, 6, 12, 24}) {
        step = static_cast<double>(step) < least ? next : step;
    }
    while (static_cast<double>(step) < least) {
        step *= 2;
    }
    std::vector<Date> found;
    const auto first = std::chrono::ceil<std::chrono::hours>(begins_).time_since_epoch().count();
    const auto last = std::chrono::floor<std::chrono::hours>(ends_).time_since_epoch().count();
    for (std::int64_t hour = first + ((-first) % step + step) % step; hour <= last; hour += step) {
        found.emplace_back(std::chrono::hours(hour));
    }
    return found;
}

void TimeAxis::draw(QPainter& painter, double top) const {
    const QFontMetricsF metrics(painter.font());
    const double line = metrics.height();
    const std::vector<Date> shown = hours(hourWidth(metrics));
    double free = left_;
    const auto drawDay = [&](Date date, double end) {
        for (const char* zone : {" UTC", ""}) {
            const QString text = dayOf(date) + QString::fromLatin1(zone);
            const double width = metrics.horizontalAdvance(text);
            const double at = x(date) + (isMidnight(date) ? tick : 0);
            if (at >= free && at + width <= end) {
                painter.drawText(QPointF(at, top + tick + line + metrics.ascent()), text);
                free = at + width + metrics.averageCharWidth();
                return;
            }
        }
    };
    const auto midnight = std::ranges::find_if(shown, isMidnight);
    // The first day has no midnight of its own, unless the axis begins with it.
    drawDay(begins_, midnight == shown.end() ? right_ : x(*midnight) - metrics.averageCharWidth());
    for (const Date hour : shown) {
        painter.drawLine(QPointF(x(hour), top), QPointF(x(hour), top + tick));
        const QRectF place(x(hour) - line, top + tick, 2 * line, line);
        painter.drawText(place, Qt::AlignCenter | Qt::TextDontClip,
                         QStringLiteral("%1").arg(hourOf(hour), 2, 10, QLatin1Char('0')));
        if (isMidnight(hour)) {
            painter.drawLine(QPointF(x(hour), top + tick + line),
                             QPointF(x(hour), top + tick + 2 * line));
            drawDay(hour, right_);
        }
    }
}

double axisHeight(const QFontMetricsF& metrics) {
    return std::ceil(tick + 2 * metrics.height());
}

double hourWidth(const QFontMetricsF& metrics) {
    return 1.6 * metrics.horizontalAdvance(QStringLiteral("00"));
}

bool isMidnight(Date date) {
    return std::chrono::floor<std::chrono::days>(date) == date;
}

} // namespace desktop
