// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"
#include "map/StationIndex.h"

#include <vector>

namespace desktop {

[[nodiscard]] inline map::Station onMap(const AviationWeatherStation& station) {
    return {station.ICAO.value_or(""), {station.latitude, station.longitude}};
}

/// In the collection's order; empty for a null collection.
[[nodiscard]] inline std::vector<map::Station>
onMap(const AviationWeatherStationCollection* collection) {
    std::vector<map::Station> stations;
    if (collection && collection->stations) {
        stations.reserve(collection->stations->size());
        for (const auto& station : *collection->stations) {
            stations.push_back(onMap(*station));
        }
    }
    return stations;
}

} // namespace desktop
