// SPDX-License-Identifier: MIT
#include "slib/DirectoryLocations.h"

#include "platform/host/Files.h"

#include <fmt/format.h>

#include <utility>

namespace DirectoryLocations {
namespace {

Error noPathFound(int kind, int domainMask) {
    return {std::string(DirectoryLocationDomain),
            0,
            {{std::string(NSLocalizedDescriptionKey), "No path found for directory in domain."},
             {"NSSearchPathDirectory", platform::Number(kind)},
             {"NSSearchPathDomainMask", platform::Number(domainMask)}}};
}

Error systemError(const std::error_code& code) {
    return {"NSPOSIXErrorDomain",
            code.value(),
            {{std::string(NSLocalizedDescriptionKey), code.message()}}};
}

void put(std::optional<Error>* place, std::optional<Error> error) {
    if (place != nullptr) {
        *place = std::move(error);
    }
}

} // namespace

std::string Error::description() const {
    const auto found = userInfo.find(NSLocalizedDescriptionKey);
    const auto* words =
        found == userInfo.end() ? nullptr : std::get_if<std::string>(&found->second);
    return fmt::format("{} {}: {}", domain, code, words ? *words : std::string());
}

std::optional<std::string> findOrCreateDirectory_inDomain_appendPathComponent_error(
    platform::Host& host, int kind, int domainMask, const std::optional<std::string>& component,
    std::optional<Error>* error) {
    const auto paths = host.searchPaths.paths(kind, domainMask);
    if (paths.empty()) {
        put(error, noPathFound(kind, domainMask));
        return std::nullopt;
    }
    std::string path = platform::joinedPath(paths.front(), component.value_or(std::string()));
    if (const std::error_code failure = platform::createDirectory(path, true)) {
        put(error, systemError(failure));
        return std::nullopt;
    }
    put(error, std::nullopt);
    return path;
}

std::optional<std::string> applicationSupportDirectory(platform::Host& host) {
    std::optional<Error> error;
    auto path = findOrCreateDirectory_inDomain_appendPathComponent_error(
        host, platform::SearchPaths::applicationSupport, platform::SearchPaths::userDomain,
        host.bundle.infoValue("CFBundleExecutable"), &error);
    if (error) {
        host.log.line(fmt::format("Unable to find or create application support directory:\n{}",
                                  error->description()));
    }
    return path;
}

} // namespace DirectoryLocations
