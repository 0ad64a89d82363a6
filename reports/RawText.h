// SPDX-License-Identifier: MIT
#pragma once

#include "reports/Report.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What is read from a report's text as it was sent, because the service's elements do not tell it.
/// Texts are in the codes of WMO No. 306, FM 15 and FM 51; what is not understood is passed over.
namespace reports {

/// What the words of a METAR or TAF say of it as a whole. Remarks (after RMK) say nothing here.
struct RawFlags {
    Revision revision = Revision::none;
    /// There is no report (NIL).
    bool isNil = false;
    /// The forecast is withdrawn (CNL).
    bool isCancelled = false;
};
[[nodiscard]] RawFlags rawFlags(std::string_view raw);

/// Visibility and layers of a METAR at its own time: of what stands before its trend and its
/// remarks. Only forms that leave no doubt are read: CAVOK, "9999" and other metres, whole miles;
/// and layers with or without their heights.
[[nodiscard]] Conditions rawConditions(std::string_view metar);

/// Between which directions the wind varies ("180V240"), in degrees; nothing where a METAR does not
/// say so.
[[nodiscard]] std::optional<std::pair<int, int>> rawWindVariation(std::string_view metar);

/// A TAF's text in lines for the eye: its head with what holds at first, then each group of a
/// change, then the remarks. Put together with blanks the lines are the words of the text in their
/// order. A probability stays with the TEMPO or INTER that it belongs to.
[[nodiscard]] std::vector<std::string> brokenTaf(std::string_view taf);
/// Of how many parts the text tells: what holds at first, and each group of a change.
[[nodiscard]] std::size_t partsOfTaf(std::string_view taf);

} // namespace reports
