// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

namespace tools {

/// Makes `stations.txt`, `positions.txt` and `Stations.STNPKG` in a folder from a table of
/// stations: a file, "-" for standard input, or "service" for the weather service's own. The
/// edition is `date`, as "2026-02-01"; without it the day on which the service or the file system
/// says that the table was last changed, or else today. Prints the figures of what was made.
/// Returns the tool's status; unless it is 0, what the folder held is as it was. So it is where the
/// new list would have a fifth fewer stations, METARs or TAFs than the folder's.
[[nodiscard]] int update(const std::string& table, const std::string& folder,
                         const std::optional<std::string>& date);

} // namespace tools
