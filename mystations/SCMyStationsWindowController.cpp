// SPDX-License-Identifier: MIT
#include "mystations/SCMyStationsWindowController.h"

#include "catalogue/Packages.h"
#include "catalogue/StationCells.h"
#include "map/Placing.h"
#include "platform/archive/KeyedArchiver.h"
#include "platform/views/MapType.h"
#include "slib/SupportLibCat.h"

#include <utility>

SCMyStationsWindowController::SCMyStationsWindowController(Private, platform::Host& host,
                                                           std::string name)
    : host_(host), windowNibName_(std::move(name)) {}

std::shared_ptr<SCMyStationsWindowController>
SCMyStationsWindowController::initWithWindowNibName(platform::Host& host, std::string name) {
    return std::make_shared<SCMyStationsWindowController>(Private{}, host, std::move(name));
}

void SCMyStationsWindowController::windowDidLoad() {
    outlets.mftable->setDataSource(this);
    outlets.mftable->setDelegate(this);
    outlets.mfsaver->setEnabled(false);
    loadFavoritesFile();
    currentMapType_ = platform::satelliteMap;
    outlets.mfmapV->setMapType(currentMapType_);
    catalogue::setStationColumnWidths(*outlets.mftable);
    outlets.mftable->reloadData();
}

std::string SCMyStationsWindowController::file() const {
    return SupportLibCat::fileNameInAppSupport(host_, "MyStations.STNPKG").value_or("");
}

void SCMyStationsWindowController::loadFavoritesFile() {
    myFavotires = catalogue::readPackage(file());
}

void SCMyStationsWindowController::updateFavoritesFile() const {
    platform::KeyedArchiver::archiveRootObject(myFavotires, file());
}

void SCMyStationsWindowController::tableViewSelectionDidChange(const platform::TableView& table) {
    if (const auto station = stationInRow(table.selectedRow())) {
        map::showPlace(*outlets.mfmapV, {station->latitude, station->longitude}, currentMapType_);
    }
}
