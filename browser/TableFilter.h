// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/Search.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace browser {

/// Why the station table lists the stations that it lists. Without any reason it lists the whole
/// catalogue.
struct TableFilter {
    /// Stations that match any of the terms.
    struct Search {
        catalogue::SearchField field = catalogue::SearchField::identifiers;
        /// As typed; empty ones match nothing.
        std::vector<std::string> terms;
    };
    /// Stations of the whole catalogue near one, which is not among them. A distance never goes
    /// with another reason.
    struct Distance {
        std::shared_ptr<AviationWeatherStation> station;
        std::int64_t miles = 0;
    };

    std::optional<Search> search{};
    std::optional<Distance> distance{};
    /// The favourites: alone, or added to what a search has found.
    bool favorites = false;

    [[nodiscard]] bool listsAll() const { return !search && !distance && !favorites; }
};

/// One reason of a filter, in words.
struct FilterReason {
    enum class Kind { search, distance, favorites };

    Kind kind;
    /// Such as "ICAO contains KSF or KJF".
    std::string words;
    /// What ending this reason alone is called, such as "Leave the distance".
    std::string wayOut;
};

/// In the order in which they are read, as one sentence.
[[nodiscard]] std::vector<FilterReason> reasonsOf(const TableFilter& filter);

/// What to say where the filter lists no station; empty if it lists the whole catalogue.
[[nodiscard]] std::string emptyTableWords(const TableFilter& filter);

} // namespace browser
