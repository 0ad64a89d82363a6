// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Value.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

/// Station list files, prepared for the parser.
namespace catalogue {

/// The text of a list, ready for the parser, and how well its lines fitted the columns.
struct ListText {
    std::string text;
    /// Lines whose IATA code and SYNOP index were moved into their columns.
    std::size_t realignedLines = 0;
    /// Station lines that do not fit the columns: they are too short, have something between two
    /// columns, or lack the letters of their position. The parser reads them all the same.
    std::size_t oddLines = 0;
};

/// Returns the file's text in UTF-8, aligned; absent if the file cannot be read, exceeds 1 GiB or
/// does not fit into memory.
[[nodiscard]] std::optional<ListText> readList(const std::filesystem::path& path);
/// The same, for callers that need only the text.
[[nodiscard]] std::optional<std::string> readListFile(const std::filesystem::path& path);

/// A byte-order mark decides the encoding. Without one it is UTF-8; if the bytes are not valid
/// UTF-8, each is one character, and those beyond ASCII become "?" so that the columns stay
/// aligned. Lines may end with LF, CR LF or CR in the file; in the result they end with LF.
[[nodiscard]] std::string decodedList(std::span<const std::byte> bytes);

/// Moves the fields of station lines, byte by byte, into the columns where the parser reads them.
/// Station lines begin with neither "!" nor "CD" and do not follow a blank line; those shorter than
/// 83 bytes stay as they are.
///
/// The public list has the IATA code and the SYNOP index one column further to the right. If nine
/// in ten station lines look like that, as do nine in ten of those with an index, every such line
/// loses the blank in column 24 and gains one at column 36.
///
/// A letter of several bytes shifts the rest of its line to the right. In a line that was laid out
/// by characters, the name is shortened by as many bytes, blanks first.
[[nodiscard]] ListText alignedList(std::string text);

} // namespace catalogue
