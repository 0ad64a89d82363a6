// SPDX-License-Identifier: MIT
#include "catalogue/table/Figures.h"

#include "platform/text/Text.h"

#include <fmt/format.h>

#include <optional>
#include <string_view>
#include <tuple>
#include <unordered_set>

namespace catalogue {

namespace {

bool isGiven(const std::optional<std::string>& text) {
    return text && !platform::trimmed(*text).empty();
}

} // namespace

Figures figuresOf(const AviationWeatherStationCollection& collection) {
    Figures figures;
    std::unordered_set<std::string_view> regions;
    if (collection.stations) {
        for (const auto& station : *collection.stations) {
            ++figures.stations;
            figures.metars += station->METAR == 'X' ? 1 : 0;
            figures.tafs += station->aviationFlag == 'T' ? 1 : 0;
            figures.iata += isGiven(station->IATA) ? 1 : 0;
            figures.synop += station->SYNOPIndex != 0 ? 1 : 0;
            figures.radars += station->NEXRAD == 'X' ? 1 : 0;
            figures.offices += station->officeType == 'F' ? 1 : 0;
            if (station->stateName) {
                regions.insert(*station->stateName);
            }
        }
    }
    figures.regions = regions.size();
    return figures;
}

std::string shrinkage(const Figures& present, const Figures& next) {
    const std::tuple<std::size_t, std::size_t, const char*> counts[] = {
        {present.stations, next.stations, "stations"},
        {present.metars, next.metars, "stations with METARs"},
        {present.tafs, next.tafs, "stations with TAFs"},
    };
    for (const auto& [before, after, what] : counts) {
        if (after < before - before / 5) {
            return fmt::format("has only {} {}, where there were {}", after, what, before);
        }
    }
    return {};
}

} // namespace catalogue
