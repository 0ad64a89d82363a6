// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"

#include "catalogue/Search.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace {

/// In the order of the distance pop-up's items.
constexpr std::array<std::int64_t, 4> distancesInMiles{10, 25, 50, 100};

} // namespace

StationArray SCStationWindowController::stationsOf(const browser::TableFilter& filter) const {
    const auto master = masterCollection();
    StationArray stations;
    if (master && filter.search) {
        // Kept: users expect this, and the help describes it. The last term's matches come first,
        // and a station that two terms match is listed twice.
        auto terms = filter.search->terms;
        std::ranges::reverse(terms);
        for (const std::string& term : terms) {
            const StationArray more = catalogue::stationsWith(term, filter.search->field, *master);
            stations.insert(stations.end(), more.begin(), more.end());
        }
    }
    if (master && filter.distance) {
        stations = master->stationsWithinDistanceFromStation_within(filter.distance->station,
                                                                    filter.distance->miles);
    }
    if (filter.favorites) {
        // Kept: users expect this, and the help describes it. The matches are not restricted to
        // favourites.
        const StationArray favorites = allFavorites();
        stations.insert(stations.end(), favorites.begin(), favorites.end());
    }
    return stations;
}

void SCStationWindowController::filterIt(const std::string& text) {
    showInTable({.search = browser::TableFilter::Search{catalogue::SearchField{searchingOn_},
                                                        catalogue::searchTerms(text)},
                 .favorites = showingFavs});
}

void SCStationWindowController::searchTextDidChange() {
    if (!saerching_) {
        searchFieldDidStartSearching();
    }
    // Empty text finds nothing, so the selection is lost before the search ends.
    const auto selected = selectedStation;
    searchIt();
    if (outlets.sf && outlets.sf->stringValue().empty()) {
        searchFieldDidEndSearching();
        selectAgain(selected);
    }
}

void SCStationWindowController::showAll() {
    outlets.sf->setStringValue("");
    searchFieldDidEndSearching();
    selectAgain(selectedStation);
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
    // Kept: users expect this, and the help describes it. Every station is listed, even in
    // favourites mode. Restoring the selection is left to the caller.
    saerching_ = false;
    resetWorkingCollection();
    showWorkingCollection();
}

void SCStationWindowController::switchieswitche() {
    // The new mode applies from the next keystroke; the rows shown stay.
    if (outlets.switchie) {
        searchingOn_ = outlets.switchie->selectedSegment();
    }
    reloadTable();
}

void SCStationWindowController::innnerGetDistant() {
    const std::int64_t choice = outlets.distButton->indexOfSelectedItem();
    const auto station = stationInRow(nowSelection);
    const auto master = masterCollection();
    if (choice < 0 || choice >= std::ssize(distancesInMiles) || !station || !master) {
        return;
    }
    if (!filter_.distance) {
        beforeDistance_ = filter_;
    }
    // Always searches the whole catalogue: distance filters do not narrow one another.
    showInTable({.distance = browser::TableFilter::Distance{
                     station, distancesInMiles[static_cast<std::size_t>(choice)]}});
}

void SCStationWindowController::geMeterDistChanged() {
    innnerGetDistant();
}

void SCStationWindowController::geMeter() {
    innnerGetDistant();
}

void SCStationWindowController::leaveSearch() {
    saerching_ = false;
    outlets.sf->setStringValue("");
    auto rest = filter_;
    rest.search.reset();
    showAgain(rest);
}

void SCStationWindowController::leaveDistance() {
    if (filter_.distance) {
        showAgain(beforeDistance_);
    }
}

void SCStationWindowController::leaveFavorites() {
    showingFavs = false;
    auto rest = filter_;
    rest.favorites = false;
    showAgain(rest);
}

void SCStationWindowController::chooseSuggestion(const catalogue::Suggestion& suggestion) {
    const auto master = masterCollection();
    if (!master) {
        return;
    }
    const auto [field, term] = catalogue::searchFor(suggestion, *master);
    searchingOn_ = static_cast<std::int64_t>(field);
    outlets.switchie->setSelectedSegment(static_cast<int>(field));
    outlets.sf->setStringValue(term);
    searchFieldDidStartSearching();
    searchIt();
    if (suggestion.station && outlets.table) {
        selectRow(rowOf(suggestion.station));
    }
}
