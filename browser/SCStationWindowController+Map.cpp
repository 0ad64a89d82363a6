// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"

#include "map/Mercator.h"
#include "platform/Text.h"
#include "slib/SuportLib.h"

#include <fmt/format.h>

#include <initializer_list>

namespace {

/// Of the region around a station, from north to south and from east to west.
constexpr double regionMetres = 2000;

} // namespace

void SCStationWindowController::mapStiation(const AviationWeatherStation& station) {
    const platform::Location centre{station.latitude, station.longitude};
    if (!centre.isValid()) {
        host_.log.line("Invalid center");
        return;
    }
    if (outlets.mapV) {
        outlets.mapV->setCenterCoordinate(centre);
        outlets.mapV->setMapType(currentMapType);
        outlets.mapV->setRegion(outlets.mapV->regionThatFits(
            map::regionWithDistance(centre, regionMetres, regionMetres)));
    }
}

void SCStationWindowController::switchieswitcheDu() {
    if (!outlets.switchieDu) {
        return;
    }
    currentMapType = outlets.switchieDu->selectedSegment();
    if (outlets.mapV) {
        outlets.mapV->setMapType(currentMapType);
    }
}

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
