// SPDX-License-Identifier: MIT
#include "catalogue/Packages.h"
#include "catalogue/StationCells.h"
#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "tests/fuzz/Fuzz.h"

void feed(std::span<const std::byte> input) {
    const auto collection = platform::objectOf<AviationWeatherStationCollection>(
        platform::KeyedUnarchiver::unarchive(input, catalogue::archivedClasses()).root);
    if (!collection || !collection->stations) {
        return;
    }
    for (const auto& station : *collection->stations) {
        require(station != nullptr, "a collection holds no absent station");
        for (const auto& column : catalogue::stationColumns) {
            (void)column.text(*station);
        }
    }
    if (!collection->stations->empty()) {
        const auto& first = collection->stations->front();
        (void)collection->stationsWithinDistanceFromStation_within(first, 100);
        (void)collection->stationClosestToLocation({first->latitude, first->longitude});
    }
    (void)collection->stationArrayWithPartialICAOID_orName_orState({}, "a", {});
    (void)collection->markFavorites(collection->favoriteIdentifiers());
    collection->createStateCollections();
    (void)platform::KeyedArchiver::archivedData(collection->copyWithZone());
}
