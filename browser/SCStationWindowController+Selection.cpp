// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"

#include "catalogue/StationCells.h"
#include "platform/text/Text.h"

#include <algorithm>
#include <utility>

void SCStationWindowController::tableViewSelectionDidChange(const platform::TableView& table) {
    if (isSelectingAgain_) {
        return;
    }
    nowSelection = table.selectedRow();
    selectedStation = stationInRow(nowSelection);
    setSelectionControlsEnabled(selectedStation != nullptr);
    describeSelection();
    if (!selectedStation) {
        return;
    }
    mapStiation(*selectedStation);
    requestWeather(selectedAndFavorites(), "", "");
}

void SCStationWindowController::setSelectionControlsEnabled(bool enabled) {
    outlets.metarB->setEnabled(enabled);
    outlets.distButton->setEnabled(enabled);
}

void SCStationWindowController::describeSelection() {
    outlets.stationLine->setText(selectedStation ? catalogue::stationDescription(*selectedStation)
                                                 : "");
    outlets.showSelected(selectedStation.get());
}

void SCStationWindowController::resetTableSelectionAfterFilter() {
    if (!outlets.table) {
        return;
    }
    std::int64_t row = 0;
    if (selectedStation && workingCollection && workingCollection->stations) {
        // Kept: users expect this, and the help describes it. The first station of the same name is
        // selected, whatever its identifier.
        const auto& stations = *workingCollection->stations;
        const auto found = std::ranges::find_if(stations, [this](const auto& station) {
            return station->stationName && selectedStation->stationName &&
                   *station->stationName == *selectedStation->stationName;
        });
        row = found - stations.begin();
    }
    selectRow(row);
}

std::int64_t
SCStationWindowController::rowOf(const std::shared_ptr<AviationWeatherStation>& station) const {
    if (!station || !workingCollection || !workingCollection->stations) {
        return -1;
    }
    const auto& stations = *workingCollection->stations;
    auto found = std::ranges::find(stations, station);
    if (found == stations.end() && !platform::trimmed(station->ICAO.value_or("")).empty()) {
        found = std::ranges::find_if(
            stations, [&station](const auto& other) { return other->ICAO == station->ICAO; });
    }
    return found == stations.end() ? -1 : found - stations.begin();
}

void SCStationWindowController::selectAgain(
    const std::shared_ptr<AviationWeatherStation>& station) {
    if (!outlets.table) {
        return;
    }
    const std::int64_t row = rowOf(station);
    const bool isSameRecord = row >= 0 && stationInRow(row) == station;
    isSelectingAgain_ = isSameRecord;
    outlets.table->selectRow(row);
    isSelectingAgain_ = false;
    outlets.table->scrollRowToVisible(row);
    if (isSameRecord) {
        nowSelection = row;
        selectedStation = station;
        setSelectionControlsEnabled(true);
        describeSelection();
    } else {
        settleSelection();
    }
}

void SCStationWindowController::settleSelection() {
    // The table reports a change of row, but not another station in the same row.
    if (stationInRow(outlets.table->selectedRow()) != selectedStation) {
        tableViewSelectionDidChange(*outlets.table);
    }
}

void SCStationWindowController::selectStation(const std::string& identifier) {
    const auto master = masterCollection();
    const auto station = master ? master->stationWithICAOID(identifier) : nullptr;
    if (!station || !outlets.table) {
        return;
    }
    if (rowOf(station) < 0) {
        outlets.sf->setStringValue("");
        searchFieldDidEndSearching();
    }
    selectRow(rowOf(station));
}

void SCStationWindowController::selectRow(std::int64_t row) {
    outlets.table->selectRow(row);
    outlets.table->scrollRowToVisible(row);
    settleSelection();
}
