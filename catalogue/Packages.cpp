// SPDX-License-Identifier: MIT
#include "catalogue/Packages.h"

#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "slib/SupportLibCat.h"

#include <new>

namespace catalogue {

const platform::ClassTable& archivedClasses() {
    static const platform::ClassTable classes = [] {
        platform::ClassTable table;
        table.add("AviationWeatherStation", AviationWeatherStation::initWithCoder);
        table.add("AviationWeatherStationCollection",
                  AviationWeatherStationCollection::initWithCoder);
        return table;
    }();
    return classes;
}

std::shared_ptr<AviationWeatherStationCollection>
readPackage(const std::filesystem::path& path) try {
    return platform::objectOf<AviationWeatherStationCollection>(
        platform::KeyedUnarchiver::unarchiveFile(path, archivedClasses()).root);
} catch (const std::bad_alloc&) {
    return nullptr;
}

std::string packagePath(const std::string& path) {
    return path.empty() ? path : std::filesystem::path(path).replace_extension("STNPKG").string();
}

void savePackage(platform::Host& host,
                 const std::shared_ptr<AviationWeatherStationCollection>& collection,
                 std::optional<platform::URL>& savehere, std::optional<std::string>& savePath) {
    savehere = SupportLibCat::getAPuttingURL(host, packagePath);
    savePath.reset();
    if (savehere) {
        savePath = packagePath(savehere->path());
        platform::KeyedArchiver::archiveRootObject(collection, *savePath);
    }
}

} // namespace catalogue
