// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"

#include "platform/KeyedArchiver.h"
#include "platform/KeyedUnarchiver.h"
#include "slib/SupportLibCat.h"

#include <memory>
#include <utility>
#include <variant>

void SCStationWindowController::favMenuItem() {
    if (selectedStation) {
        selectedStation->toggleFavoriteStatus();
        setFavInMaster(*selectedStation);
    }
}

void SCStationWindowController::setFavInMaster(const AviationWeatherStation& station) {
    const auto master = masterCollection();
    if (const auto same = master ? master->stationWithICAOID(station.ICAO) : nullptr) {
        same->setFavorite(station.isFavorite());
    }
}

StationArray SCStationWindowController::allFavorites() const {
    const auto master = masterCollection();
    return master ? master->favorites() : StationArray();
}

void SCStationWindowController::showFavsMenu() {
    showingFavs = !showingFavs;
    resetWorkingCollection();
    if (showingFavs && workingCollection) {
        workingCollection->stations = std::make_shared<StationArray>(allFavorites());
    }
    showWorkingCollection();
    resetTableSelectionAfterFilter();
}

void SCStationWindowController::alwaysShowFavWeatherMenu(platform::MenuItem& sender) {
    alwaysFavWeather_ = alwaysFavWeather_ == 0 ? 1 : 0;
    sender.setState(alwaysFavWeather_ != 0);
}

std::string SCStationWindowController::favoritesFile() const {
    const auto program = host_.bundle.infoValue("CFBundleExecutable");
    const auto folder = SupportLibCat::createOrReturnAppSupportFolder(host_, program.value_or(""));
    return folder ? *folder + "/kzrfavorites.kzrfv" : std::string();
}

void SCStationWindowController::saveFavorites() {
    // With no stations, or before the file was read, nothing is known of the favourites: the file
    // keeps what it holds.
    const auto master = masterCollection();
    if (!areFavoritesLoaded_ || !master || !master->stations || master->stations->empty()) {
        return;
    }
    auto identifiers = std::make_shared<platform::Array>();
    identifiers->isMutable = false;
    for (const auto& station : allFavorites()) {
        if (station->ICAO) {
            identifiers->elements.emplace_back(*station->ICAO);
        }
    }
    platform::KeyedArchiver::archiveRootObject(identifiers, favoritesFile());
}

void SCStationWindowController::loadFavorites() {
    const auto master = masterCollection();
    if (!master || !master->stations || master->stations->empty()) {
        return;
    }
    areFavoritesLoaded_ = true;
    const platform::Value root = platform::KeyedUnarchiver::unarchiveFile(favoritesFile(), {}).root;
    const auto* identifiers = std::get_if<std::shared_ptr<platform::Array>>(&root);
    if (!identifiers) {
        return;
    }
    for (const platform::Value& identifier : (*identifiers)->elements) {
        if (const auto* text = std::get_if<std::string>(&identifier)) {
            if (const auto station = master->stationWithICAOID(*text)) {
                station->setFavorite(true);
            }
        }
    }
}

bool SCStationWindowController::validateMenuItem(platform::MenuItem& item) {
    const std::string_view action = item.action();
    if (action == "favMenuItem") {
        if (nowSelection < 0) {
            return false;
        }
        const bool isFavorite = selectedStation && selectedStation->isFavorite();
        item.setTitle(isFavorite ? "Unfavorite" : "Make Favorite");
        return true;
    }
    if (action == "showFavsMenu") {
        item.setTitle(showingFavs ? "Show all" : "Show favorites");
        return true;
    }
    // Everything else is disabled, whatever it may be; intended.
    return action == "geMeterDistChanged" || action == "alwaysShowFavWeatherMenu";
}
