// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Value.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace platform {

class Log;

[[nodiscard]] bool fileExists(const std::filesystem::path& path);
[[nodiscard]] bool isDirectory(const std::filesystem::path& path);

/// Entry names in the order in which the system lists them; empty if the folder cannot be read.
[[nodiscard]] std::vector<std::string> contentsOfDirectory(const std::filesystem::path& path);

/// With `withIntermediates`, missing parents are created and an existing directory is a success;
/// without it, both are errors.
std::error_code createDirectory(const std::filesystem::path& path, bool withIntermediates);

/// Appends a name to a folder, with exactly one slash between them and none at the end. A leading
/// slash does not make the name absolute; an empty part adds nothing.
[[nodiscard]] std::string joinedPath(std::string_view folder, std::string_view name);
/// What follows the last slash, ignoring trailing ones; "/" for the root.
[[nodiscard]] std::string lastPathComponent(std::string_view path);

/// The contents of a regular file; absent if it cannot be read or is longer than `limit` bytes.
[[nodiscard]] std::optional<Data> readFile(const std::filesystem::path& path, std::uint64_t limit);

/// Renames a file that cannot be read, so that it is neither lost nor read again: ".unreadable"
/// goes behind its name, and a number behind that if there is such a file. Logs one line, also if
/// it fails; returns whether it did not.
bool setAside(const std::string& path, Log& log);

/// Writes a new file beside `path`, flushes it to disk and renames it over the old one, whose
/// permissions it takes over. A symbolic link stays and its target is replaced; anything but a
/// regular file is refused. On failure nothing changes.
std::error_code replaceFile(const std::filesystem::path& path, std::span<const std::byte> bytes);

} // namespace platform
