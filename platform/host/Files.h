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

[[nodiscard]] bool fileExists(const std::filesystem::path& path);
[[nodiscard]] bool isDirectory(const std::filesystem::path& path);

/// Entry names in the order in which the system lists them; none when unreadable.
[[nodiscard]] std::vector<std::string> contentsOfDirectory(const std::filesystem::path& path);

/// An existing directory counts as success only `withIntermediates`, as does a missing parent.
std::error_code createDirectory(const std::filesystem::path& path, bool withIntermediates);

/// A name put into a folder: exactly one slash between them, none at the end. A slash in front of
/// the name does not lead out of the folder; an empty part adds nothing.
[[nodiscard]] std::string joinedPath(std::string_view folder, std::string_view name);
/// What follows the last slash, slashes at the end aside; "/" for the root.
[[nodiscard]] std::string lastPathComponent(std::string_view path);

/// The whole of a regular file, or nothing when it cannot be read or is longer than `limit` bytes.
[[nodiscard]] std::optional<Data> readFile(const std::filesystem::path& path, std::uint64_t limit);

/// Writes a new file beside `path`, flushes it to the disk and renames it over the old one, whose
/// permissions it takes over. A symbolic link stays, and the file it leads to is replaced; what is
/// no regular file is refused. On failure nothing has changed.
std::error_code replaceFile(const std::filesystem::path& path, std::span<const std::byte> bytes);

} // namespace platform
