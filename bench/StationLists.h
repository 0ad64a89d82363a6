// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"

#include <memory>
#include <string>

/// The data of the benchmarks: the public station list in ../shared/data if it is there, otherwise
/// the shipped one, either as it is or repeated up to a million stations.
namespace bench {

enum Size : int { realList, millionStations };

/// Both are made once and kept. If no list can be read, they say so and end the program.
const std::string& listText(int size);
const std::shared_ptr<AviationWeatherStationCollection>& collection(int size);

} // namespace bench
