// SPDX-License-Identifier: MIT
#include "catalogue/NamedStations.h"

#include "platform/text/Text.h"
#include "platform/text/Words.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace catalogue {
namespace {

std::string upperCased(std::string_view word) {
    std::string upper(word);
    std::ranges::transform(upper, upper.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return upper;
}

using Index = std::unordered_map<std::string_view, std::shared_ptr<const AviationWeatherStation>>;

/// The first station under each value of a field, without its blanks. Views the stations.
Index indexOf(const AviationWeatherStationCollection* catalogue,
              std::optional<std::string> AviationWeatherStation::*field) {
    Index index;
    if (catalogue && catalogue->stations) {
        for (const auto& station : *catalogue->stations) {
            if (const auto& value = (*station).*field) {
                index.try_emplace(platform::trimmed(*value), station);
            }
        }
    }
    return index;
}

std::shared_ptr<const AviationWeatherStation> found(const Index& index, std::string_view key) {
    const auto place = index.find(key);
    return place == index.end() ? nullptr : place->second;
}

} // namespace

bool isIdentifier(std::string_view text) {
    constexpr std::size_t length = 4;
    return text.size() == length && platform::isCapital(text.front()) &&
           std::ranges::all_of(
               text, [](char c) { return platform::isCapital(c) || platform::isDigit(c); });
}

NamedStations namedStations(std::string_view text,
                            const AviationWeatherStationCollection* catalogue) {
    const Index byIdentifier = indexOf(catalogue, &AviationWeatherStation::ICAO);
    const Index byCode = indexOf(catalogue, &AviationWeatherStation::IATA);
    NamedStations list;
    std::unordered_set<std::string> listed;
    std::unordered_set<std::string_view> leftOut;
    for (const std::string_view word : platform::wordsIn(text)) {
        const std::string name = upperCased(word);
        NamedStation named;
        if (isIdentifier(name)) {
            named = {name, {}, found(byIdentifier, name)};
        } else if (const auto station = found(byCode, name)) {
            named = {std::string(platform::trimmed(station->ICAO.value_or(""))), name, station};
        }
        if (!isIdentifier(named.identifier)) {
            if (leftOut.insert(word).second) {
                list.leftOut.emplace_back(word);
            }
        } else if (listed.insert(named.identifier).second) {
            if (list.stations.size() < NamedStations::mostStations) {
                list.stations.push_back(std::move(named));
            } else {
                ++list.beyond;
            }
        }
    }
    return list;
}

} // namespace catalogue
