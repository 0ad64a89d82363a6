// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"
#include "platform/host/Host.h"

#include <memory>
#include <string>
#include <string_view>

namespace catalogue {

/// A collection ready to be archived as a package.
struct MadePackage {
    /// Null if nothing could be made.
    std::shared_ptr<AviationWeatherStationCollection> collection;
    /// What is wrong with the list, as what follows its name in a message: "holds no station".
    /// Empty if nothing is.
    std::string fault;
};

/// Makes a collection from the text of a list, aligned. It counts as updated on the day of the
/// list's edition, so that a list always gives the same package, or else `now`. Stations that are
/// not on the globe are logged and left out.
[[nodiscard]] MadePackage packageOf(std::string list, platform::Log& log, platform::Date now);

/// Moves the stations of a collection made from a list, which has whole minutes, to better
/// positions. Each line of `positions` is the identifier of a station, its latitude and its
/// longitude in degrees; lines that begin with "!" are skipped. Returns what is wrong with them, as
/// what follows a file's name in a message, and then leaves some stations where they were: a line
/// that cannot be read, or one that contradicts the list, where no station has that identifier or
/// the position rounds to other minutes. Empty if nothing is wrong.
[[nodiscard]] std::string setPositions(AviationWeatherStationCollection& collection,
                                       std::string_view positions);

} // namespace catalogue
