// SPDX-License-Identifier: MIT
#pragma once

#include "reports/Category.h"
#include "reports/Store.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Reports in English, for those who do not read their codes. A value that a report lacks is not
/// mentioned.
namespace reports {

inline constexpr double hectopascalsInInch = 33.863886;

/// A report that is no younger than this is called old.
inline constexpr std::chrono::minutes oldAge{75};
[[nodiscard]] bool isOld(Date observed, Date now);

/// "21:51 UTC, 12 minutes ago"; with its date where that is not today's, and "old" from `oldAge`
/// on. A time in the future is said to be ahead of this computer's clock.
[[nodiscard]] std::string ageInWords(Date observed, Date now);

/// One fact of a report, such as "Wind" and "from 230° at 12 kt".
struct Fact {
    std::string_view name;
    std::string text;

    friend bool operator==(const Fact&, const Fact&) = default;
};

/// Wind, visibility, weather, clouds, ceiling, temperature, pressure and density altitude, as far
/// as the report has them.
///
/// Humidity by the Magnus formula with the constants of Alduchov and Eskridge (1996); density
/// altitude by the formulas of the US National Weather Service, for moist air, and only where the
/// report itself gives the station's elevation.
[[nodiscard]] std::vector<Fact> factsOf(const Metar& metar);
/// Those of conditions alone.
[[nodiscard]] std::vector<Fact> factsOf(const Conditions& conditions);

/// "from 230° at 12 kt (6 m/s), gusts 22 kt"; empty for no wind.
[[nodiscard]] std::string windInWords(const std::optional<Wind>& wind);
/// Where the wind blows to, as one of eight arrows; empty where it has no direction.
[[nodiscard]] std::string_view windArrow(const std::optional<Wind>& wind);
/// "1.24 statute miles (2,000 m)"; empty for none.
[[nodiscard]] std::string visibilityInWords(const std::optional<Visibility>& visibility);
/// "2,500 ft", "none", "unknown".
[[nodiscard]] std::string ceilingInWords(const Ceiling& ceiling);

/// "From 21 Nov 18:00 UTC", "Becoming 21 Nov 14:00 to 15:00 UTC", "Probability 40 %, temporarily
/// …".
[[nodiscard]] std::string partInWords(const Forecast& forecast);
/// The whole of a part: those words, its category, and the facts that it states itself.
[[nodiscard]] std::string forecastInWords(const Forecast& forecast);
/// "Issued …, valid …", with "expired" or "cancelled" before it where it is so.
[[nodiscard]] std::string tafInWords(const Taf& taf, Date now);

/// How the last questions for a station's reports ended: of whom and when they were asked, and what
/// is shown instead where they brought nothing. One sentence, or two where METAR and TAF fared
/// differently.
[[nodiscard]] std::string statusInWords(const StationReports& reports, std::string_view station,
                                        std::string_view server, Date now);

/// "21 Nov 18:00 UTC, MVFR: 3 °C; dew point 1 °C; wind …; visibility …; ceiling 1,200 ft; 1013
/// hPa".
[[nodiscard]] std::string metarInWords(const Metar& metar);
/// What a run of reports, oldest first, amounts to: how many of which time there are, the ranges of
/// their values, and their worst category. Empty for none.
[[nodiscard]] std::string trendInWords(std::span<const Metar> metars);

/// The whole of a station's reports as text, raw and in words.
[[nodiscard]] std::string reportAsText(std::string_view heading, const Metar* metar, const Taf* taf,
                                       Date now);

} // namespace reports
