// SPDX-License-Identifier: MIT
#pragma once

#include "reports/Report.h"

#include <QColor>
#include <QPainterPath>

#include <optional>

class QPainter;

/// What the map shows of a station's latest METAR.
namespace desktop {

/// From this age on, a report counts as none.
inline constexpr std::chrono::hours uselessAge{3};

/// A wind as a barb shows it.
struct WindBarb {
    /// Where it comes from, in degrees from true north.
    int direction = 0;
    /// In steps of 5 kt, rounded to the nearest; 0 for a calm. Nothing on earth blows harder than
    /// the highest value.
    int fives = 0;
    /// The feathers are on the other side there.
    bool isSouthern = false;

    static constexpr int mostFives = 60;

    friend bool operator==(const WindBarb&, const WindBarb&) = default;
};

struct StationWeather {
    /// Absent if there is no report, or only one from before `uselessAge`.
    std::optional<reports::Category> category;
    /// The report is older than `reports::oldAge`.
    bool isOld = false;
    /// Absent without a category, too, and if the wind varies or lacks its direction.
    std::optional<WindBarb> barb;
};

/// `metar` may be null.
[[nodiscard]] StationWeather stationWeather(const reports::Metar* metar, double latitude,
                                            reports::Date now);

/// The barb of a station at the origin, in points with y growing downward and north up; to be
/// stroked, and filled for its flags. The staff points to where the wind comes from. A flag is 50
/// kt, a long feather 10, a short one 5; a calm is a ring (WMO-No. 485, attachment II-4).
[[nodiscard]] QPainterPath barbPath(const WindBarb& barb);

/// Colours that a dot is drawn with.
struct DotColors {
    /// What is around the dot, light or dark.
    QColor ground;
    QColor rim;
    /// Of a hollow dot.
    QColor line;
};

/// Draws a dot of a diameter, in points, with a rim around it: filled with its category's shape,
/// paler if its report is old, and a smaller hollow one without a category.
void drawWeatherDot(QPainter& painter, const QPointF& middle, double size, double rim,
                    const StationWeather& weather, const DotColors& colors);

} // namespace desktop
