// SPDX-License-Identifier: MIT
#pragma once

#include "reports/Store.h"

#include <chrono>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The weather of several stations on one page, line by line, for whatever shows, prints or copies
/// it.
namespace reports {

/// What every such page says of itself, first.
inline constexpr std::string_view noBriefing =
    "This is no briefing for flight: reports may be late or missing, and NOTAMs, SIGMETs and "
    "warnings are not here. Get an official briefing before you fly.";

/// One line of the page.
struct BriefingLine {
    enum class Kind : std::uint8_t {
        station,  ///< begins a station's part of the page, and names it
        category, ///< the category of its METAR, a comma and the age
        words,    ///< a sentence
        raw,      ///< a report as it was sent; a TAF has line ends before its change groups
    };

    Kind kind = Kind::words;
    std::string text;
    /// Of a line of that kind.
    Category category = Category::unknown;

    friend bool operator==(const BriefingLine&, const BriefingLine&) = default;
};

/// What the store knows, of a station and of all together.
struct Known {
    StationReports station;
    /// What stands under `allStations`.
    StationReports all;
};

/// What is known of a station's METAR and TAF, and how the last request for either ended, unless a
/// report or the weather of the world has come since.
[[nodiscard]] std::vector<BriefingLine> briefingOf(std::string_view station, const Known& known,
                                                   std::string_view server, Date now);

/// A page as text, with the time above it and a blank line before each station.
[[nodiscard]] std::string briefingAsText(std::span<const BriefingLine> lines, Date now);

/// "21 Nov 2026 21:51 UTC".
[[nodiscard]] std::string timeOfBriefing(Date now);

/// For how long a server's word on a station's report is taken, and for how long a server is left
/// alone that could not be reached, refused, or sent something else.
inline constexpr std::chrono::minutes briefingFresh{5};
inline constexpr std::chrono::minutes briefingPause{1};

/// Whether a station's METAR or TAF should be asked for. Not so if
///
/// - the station itself was asked for, alone or with others, less than `briefingFresh` ago, and the
///   server sent its report or said that there is none; or
/// - it was asked for less than `briefingPause` ago, however that ended; or
/// - there is a report of it, and the weather of the world was renewed less than `briefingFresh`
///   ago.
///
/// A time ahead of `now` by as much is of a clock that was set back, and does not count.
[[nodiscard]] bool isMissing(Kind kind, const Known& known, Date now);

} // namespace reports
