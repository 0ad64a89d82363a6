// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"

#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The fields of a station made for a test.
struct StationFacts {
    std::optional<std::string> ICAO = {};
    std::optional<std::string> stationName = {};
    std::optional<std::string> stateName = {};
    double latitude = 0;
    double longitude = 0;
};

inline std::shared_ptr<AviationWeatherStation> makeStation(const StationFacts& facts) {
    auto station = AviationWeatherStation::init();
    station->ICAO = facts.ICAO;
    station->stationName = facts.stationName;
    station->stateName = facts.stateName;
    station->latitude = facts.latitude;
    station->longitude = facts.longitude;
    return station;
}

inline std::shared_ptr<AviationWeatherStationCollection>
makeCollection(std::initializer_list<StationFacts> rows) {
    auto collection = AviationWeatherStationCollection::init();
    collection->stations = std::make_shared<StationArray>();
    for (const auto& facts : rows) {
        collection->stations->push_back(makeStation(facts));
    }
    collection->numberOfStations = static_cast<std::int64_t>(rows.size());
    return collection;
}

/// The stations' ICAO identifiers, "-" for an absent one.
inline std::vector<std::string> identifiers(const StationArray& stations) {
    std::vector<std::string> result;
    for (const auto& station : stations) {
        result.push_back(station->ICAO.value_or("-"));
    }
    return result;
}
