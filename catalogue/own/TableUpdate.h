// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"
#include "platform/host/Host.h"

#include <memory>
#include <string>

namespace catalogue {

/// What became of a table of stations that is to replace the catalogue in use.
struct TableUpdate {
    /// Null if the table cannot be used.
    std::shared_ptr<AviationWeatherStationCollection> collection;
    /// What changed, or why the table cannot be used: one sentence for the user.
    std::string words;
};

/// Makes a collection from the service's table as it was sent, dated `changed`. One that is no
/// whole table, or has a fifth fewer stations, METARs or TAFs than `present`, cannot be used.
/// `present` may be null.
[[nodiscard]] TableUpdate updateFromTable(const platform::Data& table, platform::Date changed,
                                          const AviationWeatherStationCollection* present,
                                          platform::Log& log);

/// A day in words: "20 November 2026".
[[nodiscard]] std::string dayInWords(platform::Date date);

/// The names of stations, as many as a sentence can hold, with the number of the others.
[[nodiscard]] std::string namesInWords(const StationArray& stations);

} // namespace catalogue
