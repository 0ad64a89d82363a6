// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"

#include "platform/Text.h"
#include "slib/SuportLib.h"

#include <fmt/format.h>

#include <initializer_list>

void SCStationWindowController::mapStiation(
    const std::shared_ptr<AviationWeatherStation>& /*station*/) {}

void SCStationWindowController::describeSelection() {
    if (!outlets.stationLine) {
        return;
    }
    std::string line;
    if (selectedStation) {
        const auto& station = *selectedStation;
        for (const std::string& part :
             {station.ICAO.value_or(""), station.stationName.value_or(""),
              station.stateName.value_or(""),
              SuportLib::fullCoordinateString_and(station.latitude, station.longitude),
              fmt::format("elevation {}", station.ELEV)}) {
            if (const auto text = platform::trimmed(part); !text.empty()) {
                line += line.empty() ? "" : " · ";
                line += text;
            }
        }
    }
    outlets.stationLine->setText(line);
}
