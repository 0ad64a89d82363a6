// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Weather reports as values. Whatever a report does not say, or says in a way that cannot be read,
/// is absent; nothing is filled in.
namespace reports {

using platform::Date;

/// The flight categories of the Aviation Weather Center, from best to worst.
enum class Category : std::uint8_t { unknown, VFR, MVFR, IFR, LIFR };

struct Wind {
    /// Where it comes from, in degrees from true north: 1 to 360, or 0 in calm. Absent where it
    /// varies or the report lacks it.
    std::optional<int> direction;
    bool isVariable = false;
    /// In knots, and never negative.
    int speed = 0;
    std::optional<int> gust;

    friend bool operator==(const Wind&, const Wind&) = default;
};

struct Visibility {
    /// In statute miles, as the service has converted it.
    double miles = 0;
    /// It is this far at least.
    bool isOrMore = false;

    friend bool operator==(const Visibility&, const Visibility&) = default;
};

/// How much of the sky a layer covers, or what a report says instead of layers.
enum class Cover : std::uint8_t {
    unknown,   ///< a layer is told of, but not how much it covers
    none,      ///< SKC, CLR, NSC, NCD: no clouds, or none that matter
    CAVOK,     ///< no clouds that matter, and 10 km of visibility without weather
    few,       ///< FEW
    scattered, ///< SCT
    broken,    ///< BKN
    overcast,  ///< OVC
    obscured,  ///< the sky cannot be seen: the vertical visibility counts
};

struct Layer {
    Cover cover = Cover::unknown;
    /// Above the ground, in feet.
    std::optional<int> base;
    /// CB or TCU, or empty.
    std::string kind;

    friend bool operator==(const Layer&, const Layer&) = default;
};

/// What both an observation and a forecast tell of.
struct Conditions {
    std::optional<Wind> wind;
    std::optional<Visibility> visibility;
    /// Present weather in the codes of WMO table 4678, blanks between them. Empty for none.
    std::string weather;
    /// As given; empty where a report tells nothing of the sky.
    std::vector<Layer> layers;
    /// In feet.
    std::optional<int> verticalVisibility;

    friend bool operator==(const Conditions&, const Conditions&) = default;
};

/// Where an aerodrome's report was amended or corrected, a later one takes its place.
enum class Revision : std::uint8_t { none, amended, corrected };

struct Metar {
    /// The identifier that the report gives itself.
    std::string station;
    Date observed;
    /// As it was sent.
    std::string raw;
    Conditions conditions;
    /// In degrees Celsius.
    std::optional<double> temperature;
    std::optional<double> dewPoint;
    /// QNH in inches of mercury, as the service has converted it.
    std::optional<double> altimeter;
    /// The station's own, in metres.
    std::optional<double> elevation;
    /// The service's word where it has one, else what the conditions leave no doubt about.
    Category category = Category::unknown;
    Revision revision = Revision::none;
    bool isSpecial = false;
    bool isAutomatic = false;

    friend bool operator==(const Metar&, const Metar&) = default;
};

struct Forecast {
    enum class Kind : std::uint8_t { base, from, becoming, temporary, probable };

    Kind kind = Kind::base;
    Date begins;
    Date ends;
    /// Of a change that is `becoming`: when it is complete.
    std::optional<Date> complete;
    /// In percent, of a temporary or probable one that has one.
    std::optional<int> probability;
    /// What this part itself says. A change names only what changes.
    Conditions stated;
    /// That, with all that holds on from the parts before it.
    Conditions expected;
    Category category = Category::unknown;

    friend bool operator==(const Forecast&, const Forecast&) = default;
};

struct Taf {
    std::string station;
    Date issued;
    Date begins;
    Date ends;
    std::string raw;
    /// In the order in which they begin; a lasting part before the temporary ones of its time.
    std::vector<Forecast> forecasts;
    Revision revision = Revision::none;
    bool isCancelled = false;

    friend bool operator==(const Taf&, const Taf&) = default;
};

/// Whether the first takes the place of the second where both are of one station: the later one, or
/// at equal times the one that was amended or corrected; where that decides nothing, the first,
/// which came later.
[[nodiscard]] bool replaces(const Metar& report, const Metar& kept);
[[nodiscard]] bool replaces(const Taf& report, const Taf& kept);

} // namespace reports
