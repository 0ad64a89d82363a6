// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"

#include "platform/text/Text.h"

#include <iterator>
#include <memory>
#include <utility>

void SCStationWindowController::favMenuItem() {
    if (selectedStation) {
        selectedStation->toggleFavoriteStatus();
        setFavInMaster(*selectedStation);
        favoritesFile_.keep(favoriteIdentifiers());
    }
}

void SCStationWindowController::setFavInMaster(const AviationWeatherStation& station) {
    // Several stations have a blank identifier, by which the wrong one would be marked.
    const auto master = masterCollection();
    if (!master || platform::trimmed(station.ICAO.value_or("")).empty()) {
        return;
    }
    if (const auto same = master->stationWithICAOID(station.ICAO)) {
        same->setFavorite(station.isFavorite());
    }
}

std::vector<std::int64_t> SCStationWindowController::rowsMarkedWithSelected() const {
    std::vector<std::int64_t> rows;
    const bool isAny = selectedStation && workingCollection && workingCollection->stations;
    const std::int64_t count = isAny ? std::ssize(*workingCollection->stations) : 0;
    for (std::int64_t row = 0; row < count; ++row) {
        const auto station = stationInRow(row);
        if (station && (station == selectedStation || station->ICAO == selectedStation->ICAO)) {
            rows.push_back(row);
        }
    }
    return rows;
}

StationArray SCStationWindowController::allFavorites() const {
    const auto master = masterCollection();
    return master ? master->favorites() : StationArray();
}

void SCStationWindowController::showFavsMenu() {
    showingFavs = !showingFavs;
    resetWorkingCollection();
    if (showingFavs) {
        fillTable({.favorites = true});
    } else {
        showWorkingCollection();
    }
    resetTableSelectionAfterFilter();
}

void SCStationWindowController::alwaysShowFavWeatherMenu(platform::MenuItem& sender) {
    alwaysFavWeather_ = alwaysFavWeather_ == 0 ? 1 : 0;
    sender.setState(alwaysFavWeather_ != 0);
}

FavoritesFile::Identifiers SCStationWindowController::favoriteIdentifiers() const {
    const auto lock = AviationWeatherStation::lockMarks();
    const auto master = masterCollection();
    auto identifiers = master ? master->favoriteIdentifiers() : FavoritesFile::Identifiers();
    identifiers.insert(identifiers.end(), unknownFavorites_.begin(), unknownFavorites_.end());
    return identifiers;
}

void SCStationWindowController::saveFavorites() {
    if (masterCollection()) {
        favoritesFile_.save(favoriteIdentifiers());
    }
}

void SCStationWindowController::loadFavorites() {
    auto identifiers = favoritesFile_.load();
    const auto lock = AviationWeatherStation::lockMarks();
    identifiers.insert(identifiers.end(), unknownFavorites_.begin(), unknownFavorites_.end());
    const auto master = masterCollection();
    unknownFavorites_ = master ? master->markFavorites(identifiers) : std::move(identifiers);
}
