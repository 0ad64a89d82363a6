// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"

#include <memory>
#include <string>

/// What is measured on: the public station list at ../shared/data where it is there, else the
/// shipped one, as it is and repeated to a million stations.
namespace bench {

enum Size : int { realList, millionStations };

/// Both are made once and kept. Ends the program, saying why, when no list can be read.
const std::string& listText(int size);
const std::shared_ptr<AviationWeatherStationCollection>& collection(int size);

} // namespace bench
