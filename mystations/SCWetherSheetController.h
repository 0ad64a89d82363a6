// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStation.h"
#include "platform/views/Views.h"

#include <memory>

/// The station sheet's logic: one station on a satellite map, and a Done button. Main thread only.
/// Its sheet fills `outlets` and dies before it.
class SCWetherSheetController {
public:
    /// The controls; each is borrowed and may be null.
    struct Outlets {
        platform::MapView* mapV = nullptr;
        platform::Button* okB = nullptr;
        platform::Sheet* window = nullptr;
    };

    Outlets outlets;
    std::shared_ptr<AviationWeatherStation> thisStation;

    /// Keeps the station and centres the map on it.
    void addStiation(const std::shared_ptr<AviationWeatherStation>& station);
    /// The action of the Done button: ends the sheet with 1.
    void doneClicked();
};
