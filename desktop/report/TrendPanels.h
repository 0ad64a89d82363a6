// SPDX-License-Identifier: MIT
#pragma once

#include "reports/Report.h"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace desktop {

/// One quantity as a height in its panel: 0 at the foot to 1 at the top. Absent where a report does
/// not tell it, or tells only how low it is at most or at least.
struct TrendCurve {
    QString name;
    std::function<std::optional<double>(const reports::Metar&)> height;
};

struct TrendMark {
    double height = 0;
    QString text;
};

/// One or two quantities with a scale of their own.
struct TrendPanel {
    std::vector<TrendCurve> curves;
    /// From the lowest upwards.
    std::vector<TrendMark> marks;
    std::vector<TrendMark> marksOnTheRight;
    /// A quarter of the height for each flight category, the worst at the foot.
    bool hasBands = false;
    /// Arrows to where the wind blows stand above the curves.
    bool hasArrows = false;
};

/// Temperatures, wind, ceiling with visibility, and pressure, on scales that hold all the reports'
/// values. Those of ceiling and visibility are always the same.
[[nodiscard]] std::vector<TrendPanel> trendPanels(const std::vector<reports::Metar>& metars);

} // namespace desktop
