// SPDX-License-Identifier: MIT
#include "catalogue/ListFile.h"
#include "catalogue/Packages.h"
#include "catalogue/StationCells.h"
#include "catalogue/stationparser.h"
#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/support/FakeHost.h"

namespace {

void show(const AviationWeatherStationCollection& collection) {
    for (const auto& station : *collection.stations) {
        for (const auto& column : catalogue::stationColumns) {
            (void)column.text(*station);
        }
        (void)catalogue::stationDescription(*station);
    }
}

} // namespace

void feed(std::span<const std::byte> input) {
    platform::NotificationCenter center;
    support::FakeLog log;
    const auto list = catalogue::alignedList(catalogue::decodedList(input));
    const auto parser = stationparser::initWithNSString(center, log, list.text);
    parser->main();
    const auto collection = parser->theCollection();
    if (!collection) {
        return;
    }
    show(*collection);
    collection->createStateCollections();

    const auto package = platform::KeyedArchiver::archivedData(collection);
    require(package.has_value(), "a list can be saved as a package");
    const auto read = platform::objectOf<AviationWeatherStationCollection>(
        platform::KeyedUnarchiver::unarchive(*package, catalogue::archivedClasses()).root);
    require(read && read->stations && read->stations->size() == collection->stations->size(),
            "a saved package has the stations of its list");
}
