// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Value.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// The weather service's own table of stations, and the catalogues made from it.
namespace catalogue {

/// A station as the table has it. Absent texts are empty.
struct TableRow {
    /// Four capitals or digits, the first a capital.
    std::string icao;
    /// Three capitals.
    std::string iata;
    /// Five digits.
    std::string wmo;
    /// The name in mixed case, of any alphabet, often cut short.
    std::string site;
    /// The ISO 3166 code of the country, and that of its state; both may be wrong.
    std::string country;
    std::string state;
    /// Degrees, positive to the north and east; always on the globe, and never 0/0, by which the
    /// table means that it knows no position.
    double latitude = 0;
    double longitude = 0;
    /// Metres, above -500 and below 6000: the table has feet or 9999 for some others.
    std::optional<int> elevation;
    /// 0 to 9, the lowest first.
    std::optional<int> priority;
    bool reportsMetars = false;
    bool issuesTafs = false;
};

/// What was read of a table, and how many of its rows are of no use here.
struct ServiceTable {
    std::vector<TableRow> rows;
    std::size_t withoutIdentifier = 0;
    std::size_t withoutPosition = 0;
    /// Rows whose identifier an earlier row has.
    std::size_t repeated = 0;
    std::size_t withoutElevation = 0;
    /// Why the table cannot be read, as what follows its name in a message: "ends unexpectedly";
    /// empty if it was read. There are no rows then.
    std::string fault;
};

/// Reads a table in JSON, compressed by gzip or plain. Anything else than a whole table is a fault:
/// one that is cut, decompresses to more than 32 MiB, or holds more than 100,000 rows; so is want
/// of memory. In a row, a value that is not what it should be counts as absent, and unknown keys
/// are skipped.
[[nodiscard]] ServiceTable readTable(const platform::Data& bytes);

} // namespace catalogue
