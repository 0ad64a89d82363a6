// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"

#include "map/Placing.h"
#include "platform/views/MapType.h"
#include "product/Addresses.h"

#include <fmt/format.h>

void SCStationWindowController::mapStiation(const AviationWeatherStation& station) {
    const platform::Location centre{station.latitude, station.longitude};
    if (!centre.isValid()) {
        host_.log.line("Invalid center");
        return;
    }
    map::showPlace(*outlets.mapV, centre, currentMapType);
    loadChart(station.latitude, station.longitude);
}

void SCStationWindowController::loadChart(double latitude, double longitude) {
    if (!outlets.secView || outlets.secView->view.isHidden()) {
        return;
    }
    const auto address = [&](int zoom) {
        return fmt::format("https://{}/?ll={:f},{:f}&zoom={}", product::addresses::chartHost,
                           latitude, longitude, zoom);
    };
    outlets.secView->view.loadRequest({address(1)});
    outlets.secView->feedingURLString = address(2);
}

void SCStationWindowController::switchieswitcheDu() {
    if (!outlets.switchieDu) {
        return;
    }
    currentMapType = outlets.switchieDu->selectedSegment();
    outlets.mapV->setMapType(currentMapType);
    if (currentMapType == platform::chartMap) {
        showChart();
    } else {
        showMap();
    }
}

void SCStationWindowController::showMap() {
    if (outlets.secView && !outlets.secView->view.isHidden()) {
        outlets.secView->view.setHidden(true);
        outlets.dLcikWords->setHidden(true);
    }
    if (outlets.mapV->isHidden()) {
        outlets.mapV->setHidden(false);
    }
}

void SCStationWindowController::showChart() {
    const platform::Rect place = outlets.mapV->frame();
    outlets.mapV->setHidden(true);
    outlets.dLcikWords->setHidden(false);
    if (!outlets.secView) {
        return;
    }
    outlets.secView->view.setFrame(place);
    outlets.secView->view.setHidden(false);
    // Kept: users expect this, and the help describes it. If the first row is selected, the chart
    // loads only at the next selection. If no row is selected, it shows latitude 0, longitude 0.
    if (nowSelection != 0) {
        loadChart(selectedStation ? selectedStation->latitude : 0,
                  selectedStation ? selectedStation->longitude : 0);
    }
}
