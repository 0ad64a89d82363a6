// SPDX-License-Identifier: MIT
#include "map/Placing.h"

#include "map/Mercator.h"

namespace map {

void showPlace(platform::MapView& view, const platform::Location& place, std::int64_t mapType) {
    constexpr double metres = 2000;
    view.setCenterCoordinate(place);
    view.setMapType(mapType);
    view.setRegion(view.regionThatFits(regionWithDistance(place, metres, metres)));
}

} // namespace map
