// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"

#include <fmt/format.h>

#include <memory>
#include <utility>

void SCStationWindowController::reloadTable() {
    outlets.table->reloadData();
}

void SCStationWindowController::setWordsStringTHing(std::int64_t n) {
    outlets.words->setText(fmt::format("{} {}", n, n < 2 ? "station" : "stations"));
}

void SCStationWindowController::showWorkingCollection() {
    std::int64_t count = 0;
    if (workingCollection) {
        if (workingCollection->stations) {
            count = static_cast<std::int64_t>(workingCollection->stations->size());
        }
        workingCollection->numberOfStations = count;
    }
    setWordsStringTHing(count);
    reloadTable();
}

void SCStationWindowController::showInTable(StationArray stations) {
    if (workingCollection) {
        workingCollection->stations = std::make_shared<StationArray>(std::move(stations));
    }
    showWorkingCollection();
    resetTableSelectionAfterFilter();
}
