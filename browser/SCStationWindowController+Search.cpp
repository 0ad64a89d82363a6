// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"

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

void SCStationWindowController::filterIt(const std::string& text) {
    const auto master = masterCollection();
    StationArray matches;
    if (master) {
        // Kept: users know it so, and the help says it. The last term's matches come first, and a
        // station that two terms match comes twice.
        auto terms = searchTerms(text);
        std::ranges::reverse(terms);
        for (const std::string& term : terms) {
            const StationArray more = found(*master, searchingOn_, term);
            matches.insert(matches.end(), more.begin(), more.end());
        }
    }
    if (showingFavs) {
        // Kept: users know it so, and the help says it. The matches are not restricted to
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
    // The empty text finds nothing, which loses the selection, before the search ends.
    const auto selected = selectedStation;
    searchIt();
    if (outlets.sf && outlets.sf->stringValue().empty()) {
        searchFieldDidEndSearching();
        selectAgain(selected);
    }
}

void SCStationWindowController::showAll() {
    if (outlets.sf) {
        outlets.sf->setStringValue("");
    }
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
    // Kept: users know it so, and the help says it. Every station is listed, in favourites mode
    // too. The selection is left to the window, which may select again.
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
    const std::int64_t choice = outlets.distButton->indexOfSelectedItem();
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
