// SPDX-License-Identifier: MIT
#pragma once

#include "reports/Category.h"
#include "reports/Store.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Reports in English, for readers who do not know the codes. A value that a report lacks is not
/// mentioned.
namespace reports {

inline constexpr double hectopascalsPerInch = 33.863886;

/// From this age on, a report is called old.
inline constexpr std::chrono::minutes oldAge{75};
[[nodiscard]] bool isOld(Date observed, Date now);

/// "12 minutes ago", or "2 hours ahead of this computer's clock".
[[nodiscard]] std::string agoInWords(Date observed, Date now);
/// "21:51 UTC, 12 minutes ago"; with the date unless that is today's, and with "old" from `oldAge`
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
/// Humidity is computed by the Magnus formula with the constants of Alduchov and Eskridge (1996);
/// density altitude for moist air, by the formulas of the US National Weather Service, and only if
/// the report itself gives the station's elevation.
[[nodiscard]] std::vector<Fact> factsOf(const Metar& metar);
/// The first four of these: wind, visibility, weather and clouds.
[[nodiscard]] std::vector<Fact> factsOf(const Conditions& conditions);

/// "from 230° at 12 kt (6 m/s), gusts 22 kt (11 m/s)"; empty if there is none.
[[nodiscard]] std::string windInWords(const std::optional<Wind>& wind);
/// The one of eight arrows that points where the wind blows to; empty if it is calm or has no
/// direction.
[[nodiscard]] std::string_view windArrow(const std::optional<Wind>& wind);
/// "1.24 statute miles (2,000 m)"; empty if there is none.
[[nodiscard]] std::string visibilityInWords(const std::optional<Visibility>& visibility);
/// "2,500 ft", "none", "unknown".
[[nodiscard]] std::string ceilingInWords(const Ceiling& ceiling);

/// "From 21 Nov 18:00 UTC", "Becoming 21 Nov 14:00 to 15:00 UTC", "Probability 40 %, temporarily
/// …".
[[nodiscard]] std::string partInWords(const Forecast& forecast);
/// The whole of a part: those words, its category, and the facts that it states itself.
[[nodiscard]] std::string forecastInWords(const Forecast& forecast);
/// "Issued …, valid …", preceded by "Cancelled", "Expired", "Amended" or "Corrected" if it is.
[[nodiscard]] std::string tafInWords(const Taf& taf, Date now);

/// How the last request for a station's METAR or TAF ended: which server was asked and when, and
/// what is shown instead if that brought nothing. `kept` is the time of the report that is shown.
[[nodiscard]] std::string answerInWords(Kind kind, std::string_view station, const Answer& answer,
                                        std::string_view server, std::optional<Date> kept,
                                        Date now);
/// How the last requests for a station's reports ended: which server was asked and when, and what
/// is shown instead if that brought nothing. One sentence, or two if METAR and TAF fared
/// differently.
[[nodiscard]] std::string statusInWords(const StationReports& reports, std::string_view station,
                                        std::string_view server, Date now);

/// "21 Nov 18:00 UTC, MVFR: 3 °C; dew point 1 °C; wind …; visibility …; ceiling 1,200 ft; 1013
/// hPa".
[[nodiscard]] std::string metarInWords(const Metar& metar);
/// A summary of METARs, oldest first: how many there are and from when to when, the range of each
/// value, and the worst category. Empty for none.
[[nodiscard]] std::string trendInWords(std::span<const Metar> metars);

/// A station's reports in full, raw and in words. Either report may be null.
[[nodiscard]] std::string reportAsText(std::string_view heading, const Metar* metar, const Taf* taf,
                                       Date now);

} // namespace reports
