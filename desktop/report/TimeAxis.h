// SPDX-License-Identifier: MIT
#pragma once

#include "reports/Report.h"

#include <vector>

class QFontMetricsF;
class QPainter;

namespace desktop {

/// Times as places on a line, from left to right, in UTC.
class TimeAxis {
public:
    /// `ends` is later than `begins`, `right` greater than `left`.
    TimeAxis(reports::Date begins, reports::Date ends, double left, double right);

    /// Times outside the axis are at its nearer end.
    [[nodiscard]] double x(reports::Date date) const;
    [[nodiscard]] bool contains(reports::Date date) const;
    [[nodiscard]] double left() const { return left_; }
    [[nodiscard]] double right() const { return right_; }

    /// Full hours so far apart that a label of the width fits between two of them, midnight among
    /// them. Never more than there is room for, however long the axis.
    [[nodiscard]] std::vector<reports::Date> hours(double labelWidth) const;

    /// Draws hours and, in a second line, days, in the painter's font and pen colour, downwards
    /// from `top`. Lines of `axisHeight` are all it takes.
    void draw(QPainter& painter, double top) const;

private:
    reports::Date begins_;
    reports::Date ends_;
    double left_;
    double right_;
};

/// The height of an axis drawn in a font.
[[nodiscard]] double axisHeight(const QFontMetricsF& metrics);
/// The width that the label of an hour takes.
[[nodiscard]] double hourWidth(const QFontMetricsF& metrics);
[[nodiscard]] bool isMidnight(reports::Date date);

} // namespace desktop
