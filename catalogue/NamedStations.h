// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace catalogue {

/// Whether it has the form of an ICAO identifier: a letter followed by three letters or digits.
[[nodiscard]] bool isIdentifier(std::string_view text);

/// A station that a user has named.
struct NamedStation {
    /// Its ICAO identifier.
    std::string identifier;
    /// The IATA code that stood for it; empty if its identifier was given.
    std::string code;
    /// Null if the catalogue lacks it.
    std::shared_ptr<const AviationWeatherStation> station;
};

/// What a text with a list of stations says.
struct NamedStations {
    static constexpr std::size_t mostStations = 100;

    /// In the order in which they are first named, each once.
    std::vector<NamedStation> stations;
    /// How many more stations the text names, beyond `mostStations`.
    std::size_t beyond = 0;
    /// The words that can name no station, each once, as they were written.
    std::vector<std::string> leftOut;
};

/// Reads a list of stations as people write and paste it: case does not matter, nor what stands
/// between the words. What has the form of an ICAO identifier is one, whether the catalogue has it
/// or not. Any other word is the IATA code of the first station of the catalogue that has it, if
/// there is one. `catalogue` may be null.
[[nodiscard]] NamedStations namedStations(std::string_view text,
                                          const AviationWeatherStationCollection* catalogue);

} // namespace catalogue
