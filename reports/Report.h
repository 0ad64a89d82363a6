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
    /// Where it comes from, in degrees from true north: 1 to 360, or 0 in a calm. Absent if it
    /// varies or is not reported.
    std::optional<int> direction;
    bool isVariable = false;
    /// In knots, never negative; so is the gust.
    int speed = 0;
    std::optional<int> gust;

    friend bool operator==(const Wind&, const Wind&) = default;
};

struct Visibility {
    /// In statute miles, as converted by the service.
    double miles = 0;
    /// The visibility is at least this far.
    bool isOrMore = false;

    friend bool operator==(const Visibility&, const Visibility&) = default;
};

/// How much of the sky a layer covers, or what a report says instead of layers.
enum class Cover : std::uint8_t {
    unknown,   ///< a layer is reported, but not how much it covers
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

/// What observations and forecasts have in common.
struct Conditions {
    std::optional<Wind> wind;
    std::optional<Visibility> visibility;
    /// Present weather in the codes of WMO table 4678, separated by blanks; empty if there is none.
    std::string weather;
    /// In the report's order; empty if it says nothing about the sky.
    std::vector<Layer> layers;
    /// In feet.
    std::optional<int> verticalVisibility;

    friend bool operator==(const Conditions&, const Conditions&) = default;
};

/// Whether a report was sent anew, and why: it takes the place of the original of the same time.
enum class Revision : std::uint8_t { none, amended, corrected };

struct Metar {
    /// The station's identifier, as the report itself gives it.
    std::string station;
    Date observed;
    /// As it was sent.
    std::string raw;
    Conditions conditions;
    /// In degrees Celsius.
    std::optional<double> temperature;
    std::optional<double> dewPoint;
    /// QNH in inches of mercury, as converted by the service.
    std::optional<double> altimeter;
    /// Of the station, in metres.
    std::optional<double> elevation;
    /// As the service gives it; otherwise what follows from the conditions beyond doubt.
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
    /// When a change of the kind `becoming` is complete.
    std::optional<Date> complete;
    /// In percent; only some temporary and probable parts have one.
    std::optional<int> probability;
    /// What this part itself says. A change names only what changes.
    Conditions stated;
    /// What it states, together with what still holds from the parts before it.
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
    /// In the order in which they begin; a lasting part before the temporary ones that begin with
    /// it.
    std::vector<Forecast> forecasts;
    Revision revision = Revision::none;
    bool isCancelled = false;

    friend bool operator==(const Taf&, const Taf&) = default;
};

/// Whether `report` takes the place of `kept`, which came before it from the same station. The
/// later of the two counts; at equal times the amended or corrected one; otherwise `report`.
[[nodiscard]] bool replaces(const Metar& report, const Metar& kept);
[[nodiscard]] bool replaces(const Taf& report, const Taf& kept);

} // namespace reports
