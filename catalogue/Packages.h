// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"
#include "platform/host/Host.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

/// Package files: keyed archives of one station collection, extension "STNPKG". They are written
/// by archiving the collection itself.
namespace catalogue {

/// The classes of this folder, for reading archives of them.
[[nodiscard]] const platform::ClassTable& archivedClasses();

/// The collection in a package file; null when the file is missing, broken, holds anything else or
/// more than memory does.
[[nodiscard]] std::shared_ptr<AviationWeatherStationCollection>
readPackage(const std::filesystem::path& path);

/// The path under which a package is saved when the user chose `path`: its extension is "STNPKG",
/// in capitals, in place of any other one.
[[nodiscard]] std::string packagePath(const std::string& path);

/// Asks the user where to, and saves a collection there as a package; a null one is not written.
/// `savehere` becomes the user's answer and `savePath` the path that is written; both are absent
/// after a cancelled panel.
void savePackage(platform::Host& host,
                 const std::shared_ptr<AviationWeatherStationCollection>& collection,
                 std::optional<platform::URL>& savehere, std::optional<std::string>& savePath);

} // namespace catalogue
