// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace {

/// In the order of the distance pop-up's items.
constexpr std::array<std::int64_t, 4> distancesInMiles{10, 25, 50, 100};

enum SearchMode : std::int64_t { identifiers, names, regions };

/// Splits at every blank and comma; empty terms are kept.
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

void SCStationWindowController::filterIt(const std::string& text) {
    const auto master = masterCollection();
    StationArray matches;
    if (master) {
        // Kept: users expect this, and the help describes it. The last term's matches come first,
        // and a station that two terms match is listed twice.
        auto terms = searchTerms(text);
        std::ranges::reverse(terms);
        for (const std::string& term : terms) {
            const StationArray more = found(*master, searchingOn_, term);
            matches.insert(matches.end(), more.begin(), more.end());
        }
    }
    if (showingFavs) {
        // Kept: users expect this, and the help describes it. The matches are not restricted to
        // favourites.
        const StationArray favorites = allFavorites();
        matches.insert(matches.end(), favorites.begin(), favorites.end());
    }
    showInTable(std::move(matches));
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
    // Always searches the whole catalogue: distance filters do not narrow one another.
    showInTable(master->stationsWithinDistanceFromStation_within(
        station, distancesInMiles[static_cast<std::size_t>(choice)]));
}

void SCStationWindowController::geMeterDistChanged() {
    innnerGetDistant();
}

void SCStationWindowController::geMeter() {
    innnerGetDistant();
}
