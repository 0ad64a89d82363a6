// SPDX-License-Identifier: MIT
#include "browser/TableFilter.h"

#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>

namespace browser {

namespace {

/// The terms that can match, each once; empty if there are none.
std::string termsInWords(const std::vector<std::string>& terms) {
    std::vector<std::string> named;
    for (const std::string& term : terms) {
        if (!term.empty() && std::ranges::find(named, term) == named.end()) {
            named.push_back(term);
        }
    }
    return fmt::format("{}", fmt::join(named, " or "));
}

const char* fieldInWords(catalogue::SearchField field) {
    switch (field) {
    case catalogue::SearchField::identifiers:
        return "ICAO";
    case catalogue::SearchField::names:
        return "Name";
    case catalogue::SearchField::regions:
        return "Region";
    }
    return "Nothing";
}

FilterReason reasonOf(const TableFilter::Search& search) {
    const std::string terms = termsInWords(search.terms);
    if (terms.empty()) {
        return {FilterReason::Kind::search, "No term to search for", "Stop searching"};
    }
    return {FilterReason::Kind::search,
            fmt::format("{} contains {}", fieldInWords(search.field), terms),
            "Stop searching for " + terms};
}

std::string nameOf(const AviationWeatherStation& station) {
    for (const auto& text : {station.ICAO, station.stationName}) {
        if (text && !platform::trimmed(*text).empty()) {
            return std::string(platform::trimmed(*text));
        }
    }
    return "a station without a name";
}

FilterReason reasonOf(const TableFilter::Distance& distance) {
    return {FilterReason::Kind::distance,
            fmt::format("Within {} miles of {}", distance.miles, nameOf(*distance.station)),
            "Leave the distance"};
}

} // namespace

std::vector<FilterReason> reasonsOf(const TableFilter& filter) {
    std::vector<FilterReason> reasons;
    if (filter.search) {
        reasons.push_back(reasonOf(*filter.search));
    }
    if (filter.distance) {
        reasons.push_back(reasonOf(*filter.distance));
    }
    if (filter.favorites) {
        reasons.push_back(filter.search ? FilterReason{FilterReason::Kind::favorites,
                                                       "and favorites", "Leave out the favorites"}
                                        : FilterReason{FilterReason::Kind::favorites, "Favorites",
                                                       "Show all, not favorites only"});
    }
    return reasons;
}

std::string emptyTableWords(const TableFilter& filter) {
    if (filter.distance) {
        return fmt::format("No other station is within {} miles of {}", filter.distance->miles,
                           nameOf(*filter.distance->station));
    }
    if (filter.search) {
        return "No station found: " + reasonOf(*filter.search).words;
    }
    return filter.favorites ? "There are no favorites" : "";
}

} // namespace browser
