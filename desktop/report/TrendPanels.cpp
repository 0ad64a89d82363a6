// SPDX-License-Identifier: MIT
#include "desktop/report/TrendPanels.h"

#include "reports/Category.h"
#include "reports/Description.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace desktop {

namespace {

using reports::Ceiling;
using reports::Metar;

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
        // Where it may be lower, only the lowest band is certain.
        return ceiling.mayBeLower && ceiling.feet >= feet[1]
                   ? std::nullopt
                   : std::optional(heightOn(feet, ceiling.feet));
    case Ceiling::State::none:
        return 1;
    case Ceiling::State::unknown:
        break;
    }
    return {};
}

std::optional<double> visibilityHeight(const Metar& metar) {
    const auto& visibility = metar.conditions.visibility;
    // "At least 4 miles" may be any height from there up.
    return visibility && (!visibility->isOrMore || visibility->miles > miles[3])
               ? std::optional(heightOn(miles, visibility->miles))
               : std::nullopt;
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
    return metar.altimeter ? std::optional(*metar.altimeter * reports::hectopascalsPerInch)
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

struct Quantity {
    const char* name;
    std::optional<double> (*value)(const Metar&);
};

/// A scale of round numbers that holds all values of the quantities, and `room` beyond the middle
/// of them at least. With a foot, it begins there.
TrendPanel scaled(const std::vector<Metar>& metars, const std::vector<Quantity>& quantities,
                  double room, std::optional<double> foot = {}) {
    std::optional<double> least = foot;
    std::optional<double> most = foot;
    for (const Metar& metar : metars) {
        for (const Quantity& quantity : quantities) {
            if (const auto found = quantity.value(metar)) {
                least = std::min(*found, least.value_or(*found));
                most = std::max(*found, most.value_or(*found));
            }
        }
    }
    const double middle = foot ? *foot : (least.value_or(0) + most.value_or(0)) / 2;
    const double low = foot ? *foot : std::min(least.value_or(0), middle - room);
    const double high = std::max(most.value_or(0), middle + room);
    const double step = roundStep(high - low, 3);
    const double bottom = std::floor(low / step) * step;
    const double height = std::ceil((high - bottom) / step) * step;
    TrendPanel panel;
    const int steps = static_cast<int>(std::lround(height / step));
    for (int mark = 0; mark <= steps; ++mark) {
        panel.marks.push_back({double{1} * mark / steps, QString::number(bottom + mark * step)});
    }
    for (const Quantity& quantity : quantities) {
        const auto value = quantity.value;
        panel.curves.push_back(
            {QString::fromUtf8(quantity.name), [value, bottom, height](const Metar& metar) {
                 std::optional<double> found = value(metar);
                 if (found) {
                     *found = (*found - bottom) / height;
                 }
                 return found;
             }});
    }
    return panel;
}

TrendPanel sky() {
    TrendPanel panel;
    panel.curves = {{QStringLiteral("Ceiling, ft"), ceilingHeight},
                    {QStringLiteral("Visibility, SM"), visibilityHeight}};
    panel.marks = {{0.25, QStringLiteral("500")},
                   {0.5, QStringLiteral("1,000")},
                   {0.75, QStringLiteral("3,000")},
                   {1, QStringLiteral("none")}};
    panel.marksOnTheRight = {{0.25, QStringLiteral("1")},
                             {0.5, QStringLiteral("3")},
                             {0.75, QStringLiteral("5")},
                             {1, QStringLiteral("10+")}};
    panel.hasBands = true;
    return panel;
}

} // namespace

std::vector<TrendPanel> trendPanels(const std::vector<Metar>& metars) {
    TrendPanel wind = scaled(metars, {{"Wind", speed}, {"Gust, kt", gust}}, 10, 0);
    wind.hasArrows = true;
    return {scaled(metars,
                   {{"Temperature", [](const Metar& metar) { return metar.temperature; }},
                    {"Dew point, °C", [](const Metar& metar) { return metar.dewPoint; }}},
                   2),
            wind, sky(), scaled(metars, {{"Pressure, hPa", pressure}}, 2)};
}

} // namespace desktop
