// SPDX-License-Identifier: MIT
#include "catalogue/table/PackageMaker.h"

#include "catalogue/stationparser.h"
#include "catalogue/table/Editions.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <utility>

namespace catalogue {

namespace {

/// Half a minute, and what is lost when minutes become degrees.
constexpr double mostRounded = 0.5 / 60 + 1e-9;

std::optional<double> degrees(std::string_view text) {
    double value = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
    return fault == std::errc() && end == text.data() + text.size() ? std::optional(value)
                                                                    : std::nullopt;
}

std::string_view nextWord(std::string_view& line) {
    const std::string_view word = line.substr(0, line.find(' '));
    line.remove_prefix(std::min(word.size() + 1, line.size()));
    return word;
}

} // namespace

MadePackage packageOf(std::string list, platform::Log& log, platform::Date now) {
    const auto edition = editionOf(list);
    platform::NotificationCenter center;
    const auto parser = stationparser::initWithNSString(center, log, std::move(list));
    parser->parse();
    const auto collection = parser->theCollection();
    if (!collection && parser->error()) {
        return {nullptr, "does not fit into memory"};
    }
    if (!collection || collection->stations->empty()) {
        return {nullptr, "holds no station"};
    }
    if (parser->error()) {
        return {nullptr, "ends unexpectedly"};
    }
    collection->numberOfStations = static_cast<std::int64_t>(collection->stations->size());
    collection->lastUpdated = edition ? platform::Date(std::chrono::sys_days(*edition)) : now;
    return {collection, {}};
}

std::string setPositions(AviationWeatherStationCollection& collection, std::string_view positions) {
    std::unordered_map<std::string_view, AviationWeatherStation*> stations;
    for (const auto& station : *collection.stations) {
        if (station->ICAO) {
            stations.emplace(*station->ICAO, station.get());
        }
    }
    for (std::size_t number = 1; !positions.empty(); ++number) {
        const std::string_view line = positions.substr(0, positions.find('\n'));
        positions.remove_prefix(std::min(line.size() + 1, positions.size()));
        if (line.empty() || line.starts_with('!')) {
            continue;
        }
        std::string_view rest = line;
        const auto station = stations.find(nextWord(rest));
        const auto latitude = degrees(nextWord(rest));
        const auto longitude = degrees(rest);
        if (!latitude || !longitude || !platform::Location{*latitude, *longitude}.isValid()) {
            return fmt::format("line {} holds no position", number);
        }
        if (station == stations.end() ||
            std::abs(station->second->latitude - *latitude) > mostRounded ||
            std::abs(station->second->longitude - *longitude) > mostRounded) {
            return fmt::format("line {} contradicts the list", number);
        }
        station->second->latitude = *latitude;
        station->second->longitude = *longitude;
    }
    return {};
}

} // namespace catalogue
