// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"

#include <memory>
#include <string>

/// The data of the benchmarks: the public station list in ../shared/data if it is there, otherwise
/// the shipped one.
namespace bench {

/// A list as it is, or about so many stations: its beginning, or it repeated.
enum Size : int { realList = 0, millionStations = 1'000'000 };

/// Each is made once and kept. If no list can be read, they say so and end the program.
const std::string& listText(int size);
const std::shared_ptr<AviationWeatherStationCollection>& collection(int size);

} // namespace bench
