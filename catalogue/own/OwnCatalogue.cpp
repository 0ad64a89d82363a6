// SPDX-License-Identifier: MIT
#include "catalogue/own/OwnCatalogue.h"

#include "catalogue/Packages.h"
#include "platform/archive/KeyedArchiver.h"
#include "platform/host/Files.h"
#include "slib/SupportLibCat.h"

#include <filesystem>

namespace catalogue {

namespace {

constexpr const char* fileName = "Stations.STNPKG";

} // namespace

std::string OwnCatalogue::folder() const {
    const auto program = host_.bundle.infoValue("CFBundleExecutable");
    const auto data = SupportLibCat::createOrReturnAppSupportFolder(host_, program.value_or(""));
    return data ? *data + "/own" : std::string();
}

std::string OwnCatalogue::path() const {
    return platform::joinedPath(folder(), fileName);
}

bool OwnCatalogue::isThere() const {
    return platform::fileExists(path());
}

std::optional<std::string> OwnCatalogue::replacementOf(std::string_view name) const {
    if (name != fileName || !isThere()) {
        return std::nullopt;
    }
    const auto own = readPackage(path());
    if (own && own->stations && !own->stations->empty()) {
        return path();
    }
    platform::setAside(path(), host_.log);
    return std::nullopt;
}

std::shared_ptr<AviationWeatherStationCollection> OwnCatalogue::inUse() const {
    return readPackage(SupportLibCat::fileNameInBundle(host_, fileName));
}

std::shared_ptr<AviationWeatherStationCollection> OwnCatalogue::shipped() const {
    return readPackage(platform::joinedPath(host_.bundle.resourcePath(), fileName));
}

bool OwnCatalogue::keep(const AviationWeatherStationCollection& collection) const {
    const auto unmarked = collection.copyWithZone();
    if (unmarked->stations) {
        for (const auto& station : *unmarked->stations) {
            station->refCon = nullptr;
        }
    }
    return !folder().empty() && !platform::createDirectory(folder(), true) &&
           platform::KeyedArchiver::archiveRootObject(unmarked, path());
}

bool OwnCatalogue::remove() const {
    std::error_code error;
    std::filesystem::remove(path(), error);
    return !error;
}

} // namespace catalogue
