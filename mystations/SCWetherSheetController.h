// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStation.h"
#include "platform/views/Outlet.h"

#include <memory>

/// The station sheet's logic: one station on a satellite map, and a Done button. Main thread only.
/// Its sheet fills `outlets`, and is destroyed before it.
class SCWetherSheetController {
public:
    /// The controls; any that is left unset is absent.
    struct Outlets {
        platform::Outlet<platform::MapView> mapV{};
        platform::Outlet<platform::Button> okB{};
        platform::Outlet<platform::Sheet> window{};
    };

    Outlets outlets;
    std::shared_ptr<AviationWeatherStation> thisStation;

    /// Stores the station and centres the map on it.
    void addStiation(const std::shared_ptr<AviationWeatherStation>& station);
    /// The action of the Done button: ends the sheet with code 1.
    void doneClicked();
};
