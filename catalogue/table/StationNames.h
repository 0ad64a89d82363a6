// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The names of stations as the list has them: at most 16 ASCII characters, in capitals.
namespace catalogue {

/// The table's name in plain capitals, at its full length, without the stump left where the table
/// cut it; empty if nothing can be read.
[[nodiscard]] std::string fullName(std::string_view site);

/// A full name without the word for airport at its end.
[[nodiscard]] std::string nameAlone(std::string_view fullName);

/// The list's names for the stations of one region, given their full ones, in the same order. A
/// name that is too long loses the word for airport, a remark in brackets, the kind of field, then
/// letters of long words, and is finally cut. If that gives stations with different names the same
/// one, the town is shortened to make room for what distinguishes them.
[[nodiscard]] std::vector<std::string> listNames(const std::vector<std::string>& fullNames);

} // namespace catalogue
