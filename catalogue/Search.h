// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"

#include <cstdint>
#include <string>
#include <vector>

/// The search by terms: what the search field does with its text.
namespace catalogue {

/// Where a term is looked for, numbered as the buttons of the search mode. Any other number finds
/// nothing.
enum class SearchField : std::int64_t { identifiers, names, regions };

/// Splits a search text at every blank and comma; empty terms are kept.
[[nodiscard]] std::vector<std::string> searchTerms(const std::string& text);

/// Returns the stations whose field contains a term, ignoring case, in the collection's order; none
/// for an empty term.
[[nodiscard]] StationArray stationsWith(const std::string& term, SearchField field,
                                        const AviationWeatherStationCollection& collection);

} // namespace catalogue
