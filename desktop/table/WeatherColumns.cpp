// SPDX-License-Identifier: MIT
#include "desktop/table/WeatherColumns.h"

#include "reports/Cells.h"

#include <limits>

namespace desktop {

namespace {

using platform::Date;
using reports::Metar;
using enum catalogue::StationColumn::Alignment;

SortKey keyOf(const std::optional<double>& number) {
    return number ? SortKey::of(*number) : SortKey();
}

SortKey severity(const Metar& metar) {
    return metar.category == reports::Category::unknown
               ? SortKey{SortKey::Kind::unknown, 0, {}}
               : SortKey::of(static_cast<double>(metar.category));
}

/// By the speed; gusts tell equal speeds apart.
SortKey strength(const Metar& metar) {
    const auto& wind = metar.conditions.wind;
    return wind ? SortKey::of(wind->speed + wind->gust.value_or(0) / 1e6) : SortKey();
}

/// "10 or more" comes after 10.
SortKey distance(const Metar& metar) {
    const auto& visibility = metar.conditions.visibility;
    return visibility ? SortKey::of(visibility->miles + (visibility->isOrMore ? 1e-6 : 0))
                      : SortKey();
}

SortKey height(const Metar& metar) {
    const reports::Ceiling ceiling = ceilingOf(metar.conditions);
    switch (ceiling.state) {
    case reports::Ceiling::State::known:
        return SortKey::of(ceiling.feet);
    case reports::Ceiling::State::none:
        return SortKey::of(std::numeric_limits<double>::infinity());
    case reports::Ceiling::State::unknown:
        break;
    }
    return {};
}

} // namespace

constexpr std::array<WeatherColumn, 8> weatherColumns{{
    {"category", "Category", "Flight category",
     "VFR, MVFR, IFR or LIFR, from best to worst,\nby ceiling and visibility", left, "M unknown",
     [](const Metar& metar, Date) { return std::string(wordOf(metar.category)); }, severity},
    {"wind", "Wind", "Wind", "Degrees it comes from, true, and knots\nG = gusts, VRB = variable",
     left, "230° 25G40 kt",
     [](const Metar& metar, Date) { return windCell(metar.conditions.wind); }, strength},
    {"visibility", "Visibility", "Visibility", "Statute miles\n+ = or more", right, "10+ SM",
     [](const Metar& metar, Date) { return visibilityCell(metar.conditions.visibility); },
     distance},
    {"ceiling", "Ceiling", "Ceiling",
     "The lowest broken or overcast layer, or the vertical visibility,\nin feet above the ground\n"
     "≤ = there may be a lower one",
     right, "25,000 ft", [](const Metar& metar, Date) { return ceilingCell(metar.conditions); },
     height},
    {"temperature", "Temp.", "Temperature", "Degrees Celsius", right, "-30 °C",
     [](const Metar& metar, Date) { return reports::temperatureCell(metar.temperature); },
     [](const Metar& metar) { return keyOf(metar.temperature); }},
    {"dewPoint", "Dew point", "Dew point", "Degrees Celsius", right, "-30 °C",
     [](const Metar& metar, Date) { return reports::temperatureCell(metar.dewPoint); },
     [](const Metar& metar) { return keyOf(metar.dewPoint); }},
    {"qnh", "QNH", "QNH", "The altimeter setting in hectopascals", right, "1013 hPa",
     [](const Metar& metar, Date) { return reports::pressureCell(metar.altimeter); },
     [](const Metar& metar) { return keyOf(metar.altimeter); }},
    {"age", "Age", "Age of the report", "Since the observation\nahead = its time is yet to come",
     right, "119 min",
     [](const Metar& metar, Date now) { return reports::ageCell(metar.observed, now); },
     // The youngest first.
     [](const Metar& metar) {
         return SortKey::of(-static_cast<double>(metar.observed.time_since_epoch().count()));
     }},
}};

} // namespace desktop
