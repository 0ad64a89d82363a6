// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"

#include <utility>
#include <variant>

void SCStationWindowController::requestWeather(StationArray stations, const std::string& metarText,
                                               const std::string& tafText, Freshness freshness) {
    // Kept: users expect this, and the help describes it. A grabber that still awaits replies is
    // released, not stopped, and its reports go into the new texts. Superseded, it no longer keeps
    // the new grabber waiting.
    if (wGrabber) {
        wGrabber->supersede();
    }
    wGrabber = SCWeatherGrabber::init(host_);
    wGrabber->revalidates = freshness == Freshness::revalidated;
    metars_.begin(metarText);
    tafs_.begin(tafText);
    wGrabber->getNewMessages(std::move(stations));
}

StationArray SCStationWindowController::selectedAndFavorites() const {
    StationArray stations{selectedStation};
    if (alwaysFavWeather_ == 1) {
        // Kept: every favourite appears below the heading, so a selected favourite is listed twice.
        const StationArray favorites = allFavorites();
        stations.insert(stations.end(), favorites.begin(), favorites.end());
    }
    return stations;
}

void SCStationWindowController::requestSelectedWeather() {
    if (selectedStation) {
        requestWeather(selectedAndFavorites(), "", "", Freshness::revalidated);
    }
}

void SCStationWindowController::getFavWeather() {
    if (alwaysFavWeather_ != 1 || allFavorites().empty()) {
        return;
    }
    const std::int64_t row = outlets.table->selectedRow();
    auto station = stationInRow(row);
    if (!station) {
        return;
    }
    nowSelection = row;
    selectedStation = std::move(station);
    setSelectionControlsEnabled(true);
    describeSelection();
    mapStiation(*selectedStation);
    requestWeather(selectedAndFavorites(), "Requesting METARs", "Requesting TAFs");
}

void SCStationWindowController::updateWeather() {
    getFavWeather();
}

void SCStationWindowController::updateMetarString(const platform::Notification& notification) {
    handOver(notification, &SCStationWindowController::updateMetarBack);
}

void SCStationWindowController::sealMetarString(const platform::Notification& notification) {
    handOver(notification, &SCStationWindowController::sealMetarBack);
}

void SCStationWindowController::updateTAFString(const platform::Notification& notification) {
    handOver(notification, &SCStationWindowController::updateTafBack);
}

void SCStationWindowController::sealTafString(const platform::Notification& notification) {
    handOver(notification, &SCStationWindowController::sealTafBack);
}

void SCStationWindowController::handOver(const platform::Notification& notification,
                                         TextHandler handler) {
    const auto* text = std::get_if<std::string>(&notification.object);
    host_.mainThread.perform(
        weak_from_this(),
        [this, handler, text = text ? *text : std::string()] { (this->*handler)(text); });
}

void SCStationWindowController::updateMetarBack(const std::string& text) {
    metars_.add(text);
}

void SCStationWindowController::updateTafBack(const std::string& text) {
    tafs_.add(text);
}

void SCStationWindowController::sealMetarBack(const std::string& /*text*/) {
    metars_.show();
}

void SCStationWindowController::sealTafBack(const std::string& /*text*/) {
    tafs_.show();
}
