// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"

#include "catalogue/StationCells.h"
#include "platform/views/MapType.h"

#include <utility>

namespace {

constexpr const char* favoriteWeatherKey = "displayfavweather";
constexpr const char* mapTypeKey = "curmaptype";
constexpr std::chrono::seconds weatherInterval{1800};

} // namespace

SCStationWindowController::SCStationWindowController(Private, platform::Host& host,
                                                     std::string name)
    : host_(host), windowNibName_(std::move(name)), favoritesFile_(host) {}

std::shared_ptr<SCStationWindowController>
SCStationWindowController::initWithWindowNibName(platform::Host& host, std::string name) {
    return std::make_shared<SCStationWindowController>(Private{}, host, std::move(name));
}

SCStationWindowController::~SCStationWindowController() {
    // Waits for a parse that is still announcing its end.
    observers_.clear();
}

void SCStationWindowController::windowDidLoad() {
    outlets.table->setDataSource(this);
    outlets.table->setDelegate(this);
    outlets.sf->setSendsSearchStringImmediately(true);
    outlets.sf->setSendsWholeSearchString(false);
    outlets.switchie->setSelectedSegment(0);
    observe(stationparser::StationParseDone, &SCStationWindowController::parseIsDone);
    observe(SCWeatherGrabber::updateMetarString, &SCStationWindowController::updateMetarString);
    observe(SCWeatherGrabber::sealMetarString, &SCStationWindowController::sealMetarString);
    observe(SCWeatherGrabber::updateTafString, &SCStationWindowController::updateTAFString);
    // Kept: users expect this, and the help describes it. The METARs' seal also seals the TAF pane,
    // and the TAFs' own seal is not observed. A TAF that arrives after the METARs are complete is
    // collected but not shown.
    observe(SCWeatherGrabber::sealMetarString, &SCStationWindowController::sealTafString);
    if (outlets.secView) {
        outlets.secView->view.setHidden(true);
    }
    outlets.saver->setEnabled(false);
    setSelectionControlsEnabled(false);
    loadParsedFile(false);
    alwaysFavWeather_ = static_cast<std::int32_t>(
        platform::integerOf(host_.userDefaults.objectForKey(favoriteWeatherKey)));
    const platform::Value mapType = host_.userDefaults.objectForKey(mapTypeKey);
    currentMapType =
        platform::isAbsent(mapType) ? platform::satelliteMap : platform::integerOf(mapType);
    outlets.mapV->setMapType(currentMapType);
    catalogue::setStationColumnWidths(*outlets.table);
    outlets.distButton->selectItem(0);
    // Kept: users expect this, and the help describes it. The second row is selected, not the
    // first.
    outlets.table->selectRow(1);
    updateWeatherTimer =
        host_.timers.scheduleRepeating(weatherInterval, [this] { updateWeather(); });
    loadFavorites();
    outlets.alwaysFavItem->setState(alwaysFavWeather_ != 0);
    getFavWeather();
}

void SCStationWindowController::observe(const char* name, Observation observation) {
    // The observer may run on any thread. `this` stays valid because dropping the token waits for
    // it.
    observers_.push_back(host_.notificationCenter.addObserver(
        name, [this, observation](const platform::Notification& notification) {
            (this->*observation)(notification);
        }));
}

void SCStationWindowController::quitting() {
    saveFavorites();
    host_.userDefaults.setObject(platform::Number(alwaysFavWeather_), favoriteWeatherKey);
    host_.userDefaults.setObject(platform::Number(currentMapType), mapTypeKey);
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
    // Kept: all other commands are disabled. Whoever adds one to this window's menus must name it
    // here, having made sure that it may be chosen.
    return action == "geMeterDistChanged" || action == "alwaysShowFavWeatherMenu";
}
