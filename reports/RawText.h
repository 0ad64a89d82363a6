// SPDX-License-Identifier: MIT
#pragma once

#include "reports/Report.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Reads from a report's raw text what the service's elements leave out. The codes are those of WMO
/// No. 306, FM 15 (METAR) and FM 51 (TAF); words that are not understood are skipped.
namespace reports {

/// What single words of a METAR or TAF say about it as a whole. Remarks (after RMK) are ignored.
struct RawFlags {
    Revision revision = Revision::none;
    /// It says that there is no report (NIL).
    bool isNil = false;
    /// The forecast is withdrawn (CNL).
    bool isCancelled = false;
};
[[nodiscard]] RawFlags rawFlags(std::string_view raw);

/// Visibility and layers of a METAR at the time of observation, that is, from the part before its
/// trend and its remarks. Only unambiguous forms are read: CAVOK, "9999" and other metres, whole
/// miles, and layers with or without their heights.
[[nodiscard]] Conditions rawConditions(std::string_view metar);

/// The two directions between which the wind varies ("180V240"), in degrees; nothing if a METAR
/// does not say.
[[nodiscard]] std::optional<std::pair<int, int>> rawWindVariation(std::string_view metar);

/// A TAF's text broken into lines that are easy to read: the heading with the initial conditions,
/// then one line per change group, then the remarks. Joined with blanks, the lines give all words
/// of the text in their order. A probability stays on one line with the TEMPO or INTER that it
/// belongs to.
[[nodiscard]] std::vector<std::string> brokenTaf(std::string_view taf);
/// Of how many parts the text tells: what holds at first, and each group of a change.
[[nodiscard]] std::size_t partsOfTaf(std::string_view taf);

} // namespace reports
