// SPDX-License-Identifier: MIT
#include "mystations/SCWetherSheetController.h"

#include "map/Placing.h"

void SCWetherSheetController::addStiation(const std::shared_ptr<AviationWeatherStation>& station) {
    constexpr std::int64_t satelliteMap = 1;
    thisStation = station;
    if (station && outlets.mapV) {
        map::showPlace(*outlets.mapV, {station->latitude, station->longitude}, satelliteMap);
    }
}

void SCWetherSheetController::doneClicked() {
    if (outlets.window) {
        outlets.window->orderOut();
        outlets.window->endSheet(1);
    }
}
