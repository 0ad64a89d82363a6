// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Value.h"

#include <filesystem>
#include <optional>
#include <span>
#include <string>

/// Station list files, as whoever hands one to the parser reads them.
namespace catalogue {

/// The file's text in UTF-8, realigned; nothing when it cannot be read or exceeds 1 GiB.
[[nodiscard]] std::optional<std::string> readListFile(const std::filesystem::path& path);

/// A byte-order mark decides the encoding; without one it is UTF-8; where that fails each byte is
/// one character, and those beyond ASCII become "?" so that columns stay.
[[nodiscard]] std::string listText(std::span<const std::byte> bytes);

/// The public list has the IATA code and the SYNOP index one column further right than the parser
/// reads them. In such a text every station line loses the blank in column 24 and gains one at
/// column 36; any other text comes back untouched. Station lines have at least 83 bytes, begin
/// with neither "!" nor "CD" and do not follow a blank line.
[[nodiscard]] std::string realignedList(std::string text);

} // namespace catalogue
