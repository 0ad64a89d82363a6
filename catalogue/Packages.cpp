// SPDX-License-Identifier: MIT
#include "catalogue/Packages.h"

#include "platform/KeyedUnarchiver.h"

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

std::shared_ptr<AviationWeatherStationCollection> readPackage(const std::filesystem::path& path) {
    return platform::objectOf<AviationWeatherStationCollection>(
        platform::KeyedUnarchiver::unarchiveFile(path, archivedClasses()).root);
}

std::string packagePath(const std::string& path) {
    return path.empty() ? path : std::filesystem::path(path).replace_extension("STNPKG").string();
}

} // namespace catalogue
