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

void SCStationWindowController::fillTable(const browser::TableFilter& filter) {
    if (workingCollection) {
        workingCollection->stations = std::make_shared<StationArray>(stationsOf(filter));
        filter_ = filter;
    }
    showWorkingCollection();
}

void SCStationWindowController::showInTable(const browser::TableFilter& filter) {
    fillTable(filter);
    resetTableSelectionAfterFilter();
}

void SCStationWindowController::showAgain(const browser::TableFilter& filter) {
    // The station that a distance is measured from is not listed, but map and reports still show
    // it.
    const auto selected =
        selectedStation || !filter_.distance ? selectedStation : filter_.distance->station;
    resetWorkingCollection();
    if (filter.listsAll()) {
        showWorkingCollection();
    } else {
        fillTable(filter);
    }
    selectAgain(selected);
}
