// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Value.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

/// Station list files, as whoever hands one to the parser reads them.
namespace catalogue {

/// A list's text as the parser takes it, and what its lines needed for that.
struct ListText {
    std::string text;
    /// Lines whose IATA code and SYNOP index were moved to their columns.
    std::size_t realignedLines = 0;
    /// Station lines that do not fit the columns: they are too short, something stands between
    /// their columns, or their position lacks its letters. The parser reads them all the same.
    std::size_t oddLines = 0;
};

/// The file's text in UTF-8, aligned; nothing when it cannot be read, exceeds 1 GiB or is more than
/// memory holds.
[[nodiscard]] std::optional<ListText> readList(const std::filesystem::path& path);
/// The same for who does not ask what was done to it.
[[nodiscard]] std::optional<std::string> readListFile(const std::filesystem::path& path);

/// A byte-order mark decides the encoding; without one it is UTF-8; where that fails each byte is
/// one character, and those beyond ASCII become "?" so that columns stay. Lines end with LF, CR LF
/// or CR in the file, and with LF in the result.
[[nodiscard]] std::string decodedList(std::span<const std::byte> bytes);

/// Brings the columns of station lines to where the parser reads them, byte by byte. Station lines
/// begin with neither "!" nor "CD" and do not follow a blank line; those below 83 bytes stay.
///
/// The public list has the IATA code and the SYNOP index one column further right. Where nine in
/// ten station lines look so, and nine in ten of those with an index, every line that does loses
/// the blank in column 24 and gains one at column 36.
///
/// A letter that takes several bytes pushes what follows it to the right. In a line that was laid
/// out by characters, the name gives up as many bytes, blanks first.
[[nodiscard]] ListText alignedList(std::string text);

} // namespace catalogue
