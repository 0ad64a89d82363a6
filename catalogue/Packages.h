// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"
#include "platform/host/Host.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

/// Package files: keyed archives of one station collection, with the extension "STNPKG". To write
/// one, archive the collection.
namespace catalogue {

/// The classes of this folder that archives may contain.
[[nodiscard]] const platform::ClassTable& archivedClasses();

/// Reads the collection in a package file; null if the file is missing, broken, holds anything else
/// or does not fit into memory.
[[nodiscard]] std::shared_ptr<AviationWeatherStationCollection>
readPackage(const std::filesystem::path& path);

/// The path that a package is saved under when the user chose `path`: its extension is replaced by
/// "STNPKG", in capitals.
[[nodiscard]] std::string packagePath(const std::string& path);

/// Asks the user where to save a collection, and writes it there as a package; null is not written.
/// `savehere` becomes the user's answer and `savePath` the path that is written; both are absent if
/// the panel was cancelled.
void savePackage(platform::Host& host,
                 const std::shared_ptr<AviationWeatherStationCollection>& collection,
                 std::optional<platform::URL>& savehere, std::optional<std::string>& savePath);

} // namespace catalogue
