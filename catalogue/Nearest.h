// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace catalogue {

/// A station as seen from another one.
struct Neighbor {
    std::shared_ptr<AviationWeatherStation> station;
    /// The shortest way there on the WGS84 ellipsoid.
    double metres = 0;
    /// In degrees from true north, where that way begins: 0 up to 360.
    double bearing = 0;
};

/// The nearest of those stations that `counts` accepts; of several at the same distance the first
/// one. Absent if there is none.
///
/// Neither `from` itself is found nor another record with its identifier, no station without an
/// identifier, by which it could be asked for, and none with an invalid position; from such a
/// position nothing is. `counts` is asked about few stations only, those that would be the nearest
/// so far.
[[nodiscard]] std::optional<Neighbor>
nearest(const AviationWeatherStation& from, const StationArray& stations,
        const std::function<bool(const AviationWeatherStation&)>& counts);

/// "8 mi NNW, 338° true", in the program's whole statute miles, "less than 1 mi NNW, 338° true", or
/// "at the same place".
[[nodiscard]] std::string wayInWords(const Neighbor& neighbor);

} // namespace catalogue
