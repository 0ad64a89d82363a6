// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"

#include "platform/Text.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace {

/// Of the distance pop-up's items.
constexpr std::array<std::int64_t, 4> distancesInMiles{10, 25, 50, 100};

enum SearchMode : std::int64_t { identifiers, names, regions };

/// Split at every blank and every comma; empty terms are kept.
std::vector<std::string> searchTerms(const std::string& text) {
    std::vector<std::string> terms(1);
    for (const char c : text) {
        if (c == ' ' || c == ',') {
            terms.emplace_back();
        } else {
            terms.back() += c;
        }
    }
    return terms;
}

StationArray found(const AviationWeatherStationCollection& collection, std::int64_t mode,
                   const std::string& term) {
    switch (mode) {
    case identifiers:
        return collection.stationArrayWithPartialICAOID_orName_orState(term, {}, {});
    case names:
        return collection.stationArrayWithPartialICAOID_orName_orState({}, term, {});
    case regions:
        return collection.stationArrayWithPartialICAOID_orName_orState({}, {}, term);
    default:
        return {};
    }
}

} // namespace

void SCStationWindowController::showInTable(StationArray stations) {
    if (workingCollection) {
        workingCollection->stations = std::make_shared<StationArray>(std::move(stations));
    }
    showWorkingCollection();
    resetTableSelectionAfterFilter();
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

void SCStationWindowController::filterIt(const std::string& text) {
    const auto master = masterCollection();
    StationArray matches;
    if (master) {
        // The last term's matches come first, and a station that two terms match comes twice;
        // intended.
        auto terms = searchTerms(text);
        std::ranges::reverse(terms);
        for (const std::string& term : terms) {
            const StationArray more = found(*master, searchingOn_, term);
            matches.insert(matches.end(), more.begin(), more.end());
        }
    }
    if (showingFavs) {
        // Favourites are added to the matches, which they do not restrict; intended.
        const StationArray favorites = allFavorites();
        matches.insert(matches.end(), favorites.begin(), favorites.end());
    }
    showInTable(std::move(matches));
}

void SCStationWindowController::searchIt() {
    if (saerching_ && outlets.sf) {
        filterIt(outlets.sf->stringValue());
    }
}

void SCStationWindowController::searchFieldDidStartSearching() {
    saerching_ = true;
}

void SCStationWindowController::searchFieldDidEndSearching() {
    // Lists every station even in favourites mode, and leaves the selection alone; intended.
    saerching_ = false;
    resetWorkingCollection();
    showWorkingCollection();
}

void SCStationWindowController::switchieswitche() {
    // Applies from the next keystroke on; the shown rows stay.
    if (outlets.switchie) {
        searchingOn_ = outlets.switchie->selectedSegment();
    }
    reloadTable();
}

void SCStationWindowController::innnerGetDistant() {
    const std::int64_t choice = outlets.distButton ? outlets.distButton->indexOfSelectedItem() : -1;
    const auto station = stationInRow(nowSelection);
    const auto master = masterCollection();
    if (choice < 0 || choice >= std::ssize(distancesInMiles) || !station || !master) {
        return;
    }
    // Always from the whole catalogue: distance filters do not narrow one another.
    showInTable(master->stationsWithinDistanceFromStation_within(
        station, distancesInMiles[static_cast<std::size_t>(choice)]));
}

void SCStationWindowController::geMeterDistChanged() {
    innnerGetDistant();
}

void SCStationWindowController::geMeter() {
    innnerGetDistant();
}

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
    if (outlets.metarB) {
        outlets.metarB->setEnabled(enabled);
    }
    if (outlets.distButton) {
        outlets.distButton->setEnabled(enabled);
    }
}

void SCStationWindowController::resetTableSelectionAfterFilter() {
    std::int64_t row = 0;
    if (selectedStation && workingCollection && workingCollection->stations) {
        // The first station of the same name wins, whatever its identifier; intended.
        const auto& stations = *workingCollection->stations;
        const auto found = std::ranges::find_if(stations, [this](const auto& station) {
            return station && station->stationName && selectedStation->stationName &&
                   *station->stationName == *selectedStation->stationName;
        });
        row = found - stations.begin();
    }
    if (outlets.table) {
        outlets.table->selectRow(row);
        outlets.table->scrollRowToVisible(row);
        settleSelection();
    }
}

std::int64_t
SCStationWindowController::rowOf(const std::shared_ptr<AviationWeatherStation>& station) const {
    if (!station || !workingCollection || !workingCollection->stations) {
        return -1;
    }
    const auto& stations = *workingCollection->stations;
    auto found = std::ranges::find(stations, station);
    if (found == stations.end() && !platform::trimmed(station->ICAO.value_or("")).empty()) {
        found = std::ranges::find_if(stations, [&station](const auto& other) {
            return other && other->ICAO == station->ICAO;
        });
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
    // The table tells of another row, not of another station in the same row.
    if (stationInRow(outlets.table->selectedRow()) != selectedStation) {
        tableViewSelectionDidChange(*outlets.table);
    }
}
