// SPDX-License-Identifier: MIT
#include "catalogue/own/TableUpdate.h"

#include "catalogue/table/Figures.h"
#include "catalogue/table/ListMaker.h"
#include "catalogue/table/PackageMaker.h"
#include "catalogue/table/ServiceTable.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <string_view>
#include <unordered_map>

namespace catalogue {

namespace {

constexpr std::size_t mostNames = 5;

std::string differences(const AviationWeatherStationCollection* before,
                        const AviationWeatherStationCollection& after) {
    std::unordered_map<std::string_view, const AviationWeatherStation*> known;
    if (before && before->stations) {
        for (const auto& station : *before->stations) {
            if (station->ICAO && !platform::trimmed(*station->ICAO).empty()) {
                known.emplace(*station->ICAO, station.get());
            }
        }
    }
    std::size_t added = 0;
    std::size_t changed = 0;
    for (const auto& station : *after.stations) {
        const auto found = known.find(*station->ICAO);
        if (found == known.end()) {
            ++added;
            continue;
        }
        const AviationWeatherStation& old = *found->second;
        changed += old.latitude != station->latitude || old.longitude != station->longitude ||
                           old.stationName != station->stationName
                       ? 1
                       : 0;
        known.erase(found);
    }
    return fmt::format("{} new, {} gone, {} moved or renamed", added, known.size(), changed);
}

TableUpdate refused(std::string_view fault) {
    return {nullptr, fmt::format("The service's table {}. The catalogue stays as it is.", fault)};
}

} // namespace

TableUpdate updateFromTable(const platform::Data& table, platform::Date changed,
                            const AviationWeatherStationCollection* present, platform::Log& log) {
    const auto rows = readTable(table);
    if (!rows.fault.empty()) {
        return refused(rows.fault);
    }
    const auto day = std::chrono::floor<std::chrono::days>(changed);
    const auto made = makeList(rows, Places::ours(), day);
    const auto package = packageOf(made.list, log, changed);
    const auto fault =
        package.collection ? setPositions(*package.collection, made.positions) : package.fault;
    if (!fault.empty()) {
        return refused(fault);
    }
    if (present) {
        const auto lost = shrinkage(figuresOf(*present), figuresOf(*package.collection));
        if (!lost.empty()) {
            return refused(lost);
        }
    }
    package.collection->lastUpdated = changed;
    return {package.collection,
            fmt::format("{}, edition of {}.", differences(present, *package.collection),
                        dayInWords(changed))};
}

std::string dayInWords(platform::Date date) {
    constexpr const char* months[] = {"January",   "February", "March",    "April",
                                      "May",       "June",     "July",     "August",
                                      "September", "October",  "November", "December"};
    const std::chrono::year_month_day day(std::chrono::floor<std::chrono::days>(date));
    return fmt::format("{} {} {}", static_cast<unsigned>(day.day()),
                       months[static_cast<unsigned>(day.month()) - 1],
                       static_cast<int>(day.year()));
}

std::string namesInWords(const StationArray& stations) {
    std::string words;
    for (std::size_t i = 0; i < std::min(stations.size(), mostNames); ++i) {
        words += fmt::format("{}{} {}", i > 0 ? ", " : "",
                             platform::trimmed(stations[i]->ICAO.value_or("")),
                             platform::trimmed(stations[i]->stationName.value_or("")));
    }
    if (stations.size() > mostNames) {
        words += fmt::format(" and {} more", stations.size() - mostNames);
    }
    return words;
}

} // namespace catalogue
