// SPDX-License-Identifier: MIT
#include "mystations/SCWetherSheetController.h"

#include "map/Placing.h"
#include "platform/views/MapType.h"

void SCWetherSheetController::addStiation(const std::shared_ptr<AviationWeatherStation>& station) {
    thisStation = station;
    if (station) {
        map::showPlace(*outlets.mapV, {station->latitude, station->longitude},
                       platform::satelliteMap);
    }
}

void SCWetherSheetController::doneClicked() {
    outlets.window->orderOut();
    outlets.window->endSheet(1);
}
