// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

/// Standard folders that are made when they are missing.
namespace DirectoryLocations {

inline constexpr std::string_view DirectoryLocationDomain = "DirectoryLocationDomain";
/// The entry of an error that describes it in words.
inline constexpr std::string_view NSLocalizedDescriptionKey = "NSLocalizedDescription";

/// Why an operation failed.
struct Error {
    /// Whose codes these are; "NSPOSIXErrorDomain" for the system's error numbers.
    std::string domain;
    std::int64_t code = 0;
    std::map<std::string, platform::Value, std::less<>> userInfo;

    /// Domain, code and description in one line, for a log.
    [[nodiscard]] std::string description() const;
};

/// The path of `component` in the first folder of a kind in a domain (as `platform::SearchPaths`
/// numbers them), or of that folder itself without a component; made, with all folders above it,
/// when it is missing. Nothing on failure, with the reason in `error` where one is given: error 0
/// of `DirectoryLocationDomain` when there is no such folder, with the kind under
/// "NSSearchPathDirectory" and the domain under "NSSearchPathDomainMask"; else the system's own.
/// Success clears `error`.
std::optional<std::string> findOrCreateDirectory_inDomain_appendPathComponent_error(
    platform::Host& host, int kind, int domainMask, const std::optional<std::string>& component,
    std::optional<Error>* error);

/// The user's folder of this program, named as its executable, made when it is missing; nothing,
/// and a line in the log, when that fails.
std::optional<std::string> applicationSupportDirectory(platform::Host& host);

} // namespace DirectoryLocations
