// SPDX-License-Identifier: MIT
#pragma once

#include "reports/Category.h"

#include <string>

/// Values of reports in as few characters as a table has room for. Empty for what is absent.
namespace reports {

/// "230° 12G22 kt", "VRB 3 kt", "calm".
[[nodiscard]] std::string windCell(const std::optional<Wind>& wind);
/// "10+ SM", in statute miles.
[[nodiscard]] std::string visibilityCell(const std::optional<Visibility>& visibility);
/// "2,500 ft", with "≤" before it where there may be a lower one, "none"; empty where unknown.
[[nodiscard]] std::string ceilingCell(const Conditions& conditions);
/// "-3 °C", in whole degrees.
[[nodiscard]] std::string temperatureCell(const std::optional<double>& celsius);
/// "1013 hPa", from inches of mercury.
[[nodiscard]] std::string pressureCell(const std::optional<double>& inches);
/// "12 min", "3 h", "2 d"; "ahead" for a time in the future.
[[nodiscard]] std::string ageCell(Date observed, Date now);

} // namespace reports
