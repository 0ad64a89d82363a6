// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

/// Standard folders, created if they are missing.
namespace DirectoryLocations {

inline constexpr std::string_view DirectoryLocationDomain = "DirectoryLocationDomain";
/// The key of an error's description in words.
inline constexpr std::string_view NSLocalizedDescriptionKey = "NSLocalizedDescription";

/// Why an operation failed.
struct Error {
    /// What defines `code`: "NSPOSIXErrorDomain" for the system's error numbers.
    std::string domain;
    std::int64_t code = 0;
    std::map<std::string, platform::Value, std::less<>> userInfo;

    /// Domain, code and description in one line, for a log.
    [[nodiscard]] std::string description() const;
};

/// The path of `component` in the first folder of a kind in a domain (as `platform::SearchPaths`
/// numbers them), or of that folder itself if `component` is absent. It is created if missing, with
/// all folders above it. Absent on failure, with the reason in `error` unless that is null: error 0
/// of `DirectoryLocationDomain` if there is no such folder, with the kind under
/// "NSSearchPathDirectory" and the domain under "NSSearchPathDomainMask"; otherwise the system's
/// error. Success clears `error`.
std::optional<std::string> findOrCreateDirectory_inDomain_appendPathComponent_error(
    platform::Host& host, int kind, int domainMask, const std::optional<std::string>& component,
    std::optional<Error>* error);

/// The user's folder for this program, named after its executable and created if missing. If that
/// fails, it is absent and a line is logged.
std::optional<std::string> applicationSupportDirectory(platform::Host& host);

} // namespace DirectoryLocations
