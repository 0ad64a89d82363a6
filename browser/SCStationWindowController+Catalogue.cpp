// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"

#include "catalogue/ListFile.h"
#include "catalogue/Packages.h"
#include "platform/values/Geodesy.h"
#include "slib/SupportLibCat.h"

#include <fmt/format.h>

#include <new>
#include <utility>

void SCStationWindowController::loadParsedFile(bool flag) {
    const std::string path =
        flag ? std::string() : SupportLibCat::fileNameInBundle(host_, "Stations.STNPKG");
    outlets.dLcikWords->setHidden(true);
    replaceMaster(catalogue::readPackage(path));
    if (masterCollection()) {
        resetWorkingCollection();
        setWordsStringTHing(workingCollection->numberOfStations);
        reloadTable();
    }
}

void SCStationWindowController::addCollection(
    const std::shared_ptr<AviationWeatherStationCollection>& collection) {
    replaceMaster(collection);
    resetWorkingCollection();
}

void SCStationWindowController::showCatalogue(
    const std::shared_ptr<AviationWeatherStationCollection>& collection) {
    addCollection(collection);
    showAll();
}

void SCStationWindowController::replaceMaster(
    std::shared_ptr<AviationWeatherStationCollection> collection) {
    // No mark may change until marks are set in the new master.
    const auto lock = AviationWeatherStation::lockMarks();
    if (collection != masterCollection()) {
        auto identifiers = favoriteIdentifiers();
        unknownFavorites_ =
            collection ? collection->markFavorites(identifiers) : std::move(identifiers);
        masterCollection_.store(std::move(collection));
    }
}

void SCStationWindowController::resetWorkingCollection() {
    const auto master = masterCollection();
    workingCollection = master ? master->copySharingStations() : nullptr;
    filter_ = {};
}

void SCStationWindowController::parseit() {
    parser_.store(nullptr);
    const auto chosen = SupportLibCat::simpleGetFile_ofThese(host_, {"txt"});
    if (!chosen) {
        return;
    }
    outlets.parserIt->setEnabled(false);
    fileURL_.store(chosen);
    auto parser =
        stationparser::initWithNSString(host_.notificationCenter, host_.log, std::nullopt);
    parser_.store(parser);
    std::erase_if(queues_, [](const auto& queue) { return queue->isIdle(); });
    queues_.push_back(std::make_unique<platform::OperationQueue>());
    // Not even the file is read here: a disk may take its time.
    queues_.back()->addWork([parser = std::move(parser), path = chosen->path()] {
        parser->masterString = catalogue::readListFile(path);
        parser->main();
    });
}

void SCStationWindowController::parseIsDone(const platform::Notification& /*notification*/) {
    // If memory runs out, the catalogue stays as it was and the window still hears of the end.
    try {
        publishParsed();
    } catch (const std::bad_alloc&) {
    }
    host_.mainThread.perform(weak_from_this(), [this] { showzTble(); });
    if (const auto master = masterCollection(); master && master->stations) {
        for (const auto& station : *master->stations) {
            if (!platform::Location{station->latitude, station->longitude}.isValid()) {
                host_.log.line(station->ICAO.value_or(""));
            }
        }
    }
}

void SCStationWindowController::publishParsed() {
    const auto parser = parser_.load();
    const auto parsed = parser ? parser->stationArray() : nullptr;
    // If this parse was superseded while it ran, the current parser has no result yet.
    if (!parsed) {
        return;
    }
    auto master = AviationWeatherStationCollection::init();
    master->stations = std::make_shared<StationArray>(*parsed);
    master->numberOfStations = static_cast<std::int64_t>(parsed->size());
    master->lastUpdated = host_.clock.now();
    master->fromURL = fileURL_.load();
    // Kept: a parsed master has no groups, like one that was read; whoever wants them creates them.
    // The groups created here vanish with the copy.
    master->copySharingStations()->createStateCollections();
    replaceMaster(std::move(master));
}

void SCStationWindowController::showzTble() {
    outlets.saver->setEnabled(true);
    outlets.parserIt->setEnabled(true);
    const auto parser = parser_.load();
    const auto parsed = parser ? parser->theCollection() : nullptr;
    // Kept: users expect this, and the help describes it. Unlike the other count, this one is
    // plural even for one station.
    outlets.words->setText(fmt::format("{} stations", parsed ? parsed->stations->size() : 0));
    resetWorkingCollection();
    reloadTable();
    // The new list is shown whole, whatever was searched for in the old one.
    saerching_ = false;
    outlets.sf->setStringValue("");
    selectAgain(selectedStation);
}

void SCStationWindowController::saveDocument() {
    innerSave();
}

void SCStationWindowController::innerSave() {
    resetWorkingCollection();
    catalogue::savePackage(host_, masterCollection(), savehere, savePath);
}

void SCStationWindowController::saveCatalogue() {
    // Saving drops the filter without telling the table. Every station is therefore shown before
    // the panel opens, so that the table behind it matches the catalogue, and again afterwards.
    showAll();
    saveDocument();
    showAll();
}

bool SCStationWindowController::hasCatalogue() const {
    const auto master = masterCollection();
    return master && master->stations && !master->stations->empty();
}

void SCStationWindowController::saveoptionsDidEnd_returnCode_contextInfo(int returnCode) {
    if (returnCode == 1) {
        innerSave();
    }
}

void SCStationWindowController::wetDidEnd_returnCode_contextInfo(int /*returnCode*/) {}
