// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"

void SCStationWindowController::tableViewSelectionDidChange(const platform::TableView& /*table*/) {}

void SCStationWindowController::updateWeather() {}

void SCStationWindowController::loadFavorites() {}

void SCStationWindowController::saveFavorites() {}

void SCStationWindowController::getFavWeather() {}
