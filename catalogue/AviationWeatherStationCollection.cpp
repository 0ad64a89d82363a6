// SPDX-License-Identifier: MIT
#include "catalogue/AviationWeatherStationCollection.h"

#include "catalogue/Miles.h"
#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "platform/text/Text.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace {

constexpr std::size_t mostGroups = 300;

using catalogue::statuteMiles;

platform::Location locationOf(const AviationWeatherStation& station) {
    return {station.latitude, station.longitude};
}

/// Looks for one term in many texts, ignoring case.
class TermFinder {
public:
    explicit TermFinder(std::string_view term) : term_(platform::lowerCased(term)) {}

    [[nodiscard]] bool isIn(const std::optional<std::string>& text) const {
        if (!text || term_.empty()) {
            return false;
        }
        // Almost every text is short and ASCII, and is lower-cased here without an allocation.
        std::array<char, 64> lowered;
        if (text->size() > lowered.size() || !platform::isAscii(*text)) {
            return isInLowered(platform::lowerCased(*text));
        }
        std::ranges::transform(*text, lowered.begin(), platform::asciiLower);
        return isInLowered(std::string_view(lowered.data(), text->size()));
    }

private:
    [[nodiscard]] bool isInLowered(std::string_view text) const {
        return text.find(term_) != std::string_view::npos;
    }

    std::string term_;
};

/// An absent value needs no count: the decoder has already counted objects that it could not
/// create.
void misreadUnlessAbsent(platform::KeyedUnarchiver& coder, const platform::Value& value,
                         const char* reason) {
    if (!platform::isAbsent(value)) {
        coder.misread(reason);
    }
}

} // namespace

std::shared_ptr<AviationWeatherStationCollection> AviationWeatherStationCollection::init() {
    return std::make_shared<AviationWeatherStationCollection>(Private{});
}

std::shared_ptr<AviationWeatherStationCollection>
AviationWeatherStationCollection::initWithCoder(platform::KeyedUnarchiver& coder) {
    auto collection = init();
    const platform::Value lastUpdated = coder.decodeObject("lastUpdated");
    if (const auto* date = std::get_if<platform::Date>(&lastUpdated)) {
        collection->lastUpdated = *date;
    } else {
        misreadUnlessAbsent(coder, lastUpdated, "is no date");
    }
    if (const auto number = coder.decodeNumber("numberOfStations")) {
        collection->numberOfStations = number->integerValue();
        if (static_cast<double>(collection->numberOfStations) != number->doubleValue()) {
            coder.misread("is no whole number");
        }
    }
    const platform::Value fromURL = coder.decodeObject("fromURL");
    if (const auto* url = std::get_if<platform::URL>(&fromURL)) {
        collection->fromURL = *url;
    } else {
        misreadUnlessAbsent(coder, fromURL, "is no address");
    }
    const platform::Value stations = coder.decodeObject("stations");
    if (const auto* array = std::get_if<std::shared_ptr<platform::Array>>(&stations)) {
        collection->stations = std::make_shared<StationArray>();
        collection->stations->reserve((*array)->elements.size());
        for (const platform::Value& element : (*array)->elements) {
            if (auto station = platform::objectOf<AviationWeatherStation>(element)) {
                collection->stations->push_back(std::move(station));
            } else {
                coder.misread("holds an element that is no station");
            }
        }
    } else {
        misreadUnlessAbsent(coder, stations, "is no array");
    }
    return collection;
}

template <typename Keep>
StationArray AviationWeatherStationCollection::stationsThat(Keep keep) const {
    StationArray kept;
    if (stations) {
        for (const auto& station : *stations) {
            if (keep(*station)) {
                kept.push_back(station);
            }
        }
    }
    return kept;
}

StationArray AviationWeatherStationCollection::stationsWithTAFCapability() const {
    return stationsThat([](const auto& station) { return station.aviationFlag == 'T'; });
}

StationArray AviationWeatherStationCollection::stationsWithMETARCapability() const {
    return stationsThat([](const auto& station) { return station.METAR == 'X'; });
}

std::shared_ptr<AviationWeatherStation> AviationWeatherStationCollection::stationWithICAOID(
    const std::optional<std::string>& identifier) const {
    if (!identifier || !stations) {
        return nullptr;
    }
    const auto found = std::ranges::find_if(
        *stations, [&identifier](const auto& station) { return station->ICAO == identifier; });
    return found == stations->end() ? nullptr : *found;
}

StationArray AviationWeatherStationCollection::stationArrayWithPartialICAOID_orName_orState(
    const std::optional<std::string>& identifier, const std::optional<std::string>& name,
    const std::optional<std::string>& state) const {
    const auto search = [this](const std::string& term, auto field) {
        return stationsThat([finder = TermFinder(term), field](const auto& station) {
            return finder.isIn(station.*field);
        });
    };
    if (identifier) {
        return search(*identifier, &AviationWeatherStation::ICAO);
    }
    if (name) {
        return search(*name, &AviationWeatherStation::stationName);
    }
    if (state) {
        return search(*state, &AviationWeatherStation::stateName);
    }
    return {};
}

void AviationWeatherStationCollection::createStateCollections() {
    auto groups =
        std::make_shared<std::vector<std::shared_ptr<AviationWeatherStationCollection>>>();
    std::unordered_map<std::string_view, AviationWeatherStationCollection*> byName;
    for (const auto& station : stationsThat([](const auto&) { return true; })) {
        if (station->stateName) {
            const auto found = byName.find(*station->stateName);
            if (found != byName.end()) {
                found->second->stations->push_back(station);
                ++found->second->numberOfStations;
                continue;
            }
        }
        if (groups->size() == mostGroups) {
            continue;
        }
        // Kept: others who read the groups expect it. The count omits the first station of a group.
        auto group = init();
        group->stateName = station->stateName;
        group->stations = std::make_shared<StationArray>(1, station);
        if (group->stateName) {
            byName.emplace(*group->stateName, group.get());
        }
        groups->push_back(std::move(group));
    }
    stateByStateCollection = std::move(groups);
}

StationArray AviationWeatherStationCollection::stationsWithinDistanceFromStation_within(
    const std::shared_ptr<AviationWeatherStation>& station, std::int64_t miles) const {
    if (!station) {
        return {};
    }
    const platform::Location centre = locationOf(*station);
    const platform::DistanceBound bound(centre);
    const double enough = static_cast<double>(miles) / catalogue::milesPerMetre;
    return stationsThat([&](const auto& other) {
        const platform::Location location = locationOf(other);
        return &other != station.get() &&
               statuteMiles(bound.leastMetres(location, enough)) < miles &&
               statuteMiles(distanceMetres(centre, location)) < miles;
    });
}

StationArray AviationWeatherStationCollection::stationsClosestToLocation_within(
    const platform::Location& location, std::uint64_t miles) const {
    const auto isInside = [miles](double metres) {
        return static_cast<std::uint64_t>(statuteMiles(metres)) < miles;
    };
    const platform::DistanceBound bound(location);
    const double enough = static_cast<double>(miles) / catalogue::milesPerMetre;
    return stationsThat([&](const auto& station) {
        const platform::Location other = locationOf(station);
        return isInside(bound.leastMetres(other, enough)) &&
               isInside(distanceMetres(location, other));
    });
}

std::shared_ptr<AviationWeatherStation> AviationWeatherStationCollection::stationClosestToLocation(
    const platform::Location& location) const {
    std::shared_ptr<AviationWeatherStation> closest;
    if (!stations) {
        return closest;
    }
    // Kept: callers treat any result as a station close by. This is in metres, although the number
    // looks like half the earth's circumference in kilometres.
    double best = 20037.0;
    const platform::DistanceBound bound(location);
    for (const auto& station : *stations) {
        if (bound.leastMetres(locationOf(*station), best) >= best) {
            continue;
        }
        const double metres = distanceMetres(location, locationOf(*station));
        if (metres < best) {
            closest = station;
            best = metres;
        }
    }
    return closest;
}

std::shared_ptr<AviationWeatherStationCollection>
AviationWeatherStationCollection::copyWithZone() const {
    auto copy = copySharingStations();
    if (copy->stations) {
        for (auto& station : *copy->stations) {
            station = station->copyWithZone();
        }
    }
    return copy;
}

std::shared_ptr<AviationWeatherStationCollection>
AviationWeatherStationCollection::copySharingStations() const {
    // A group's name is not copied.
    auto copy = init();
    copy->lastUpdated = lastUpdated;
    copy->fromURL = fromURL;
    copy->numberOfStations = numberOfStations;
    if (stations) {
        copy->stations = std::make_shared<StationArray>(*stations);
    }
    if (stateByStateCollection) {
        copy->stateByStateCollection =
            std::make_shared<std::vector<std::shared_ptr<AviationWeatherStationCollection>>>(
                *stateByStateCollection);
    }
    return copy;
}

StationArray AviationWeatherStationCollection::favorites() const {
    const auto lock = AviationWeatherStation::lockMarks();
    return stationsThat([](const auto& station) { return station.isFavorite(); });
}

std::vector<std::string> AviationWeatherStationCollection::favoriteIdentifiers() const {
    std::vector<std::string> identifiers;
    for (const auto& favorite : favorites()) {
        if (favorite->ICAO && !platform::trimmed(*favorite->ICAO).empty()) {
            identifiers.push_back(*favorite->ICAO);
        }
    }
    return identifiers;
}

std::vector<std::string>
AviationWeatherStationCollection::markFavorites(const std::vector<std::string>& identifiers) {
    std::unordered_set<std::string_view> wanted;
    for (const std::string& identifier : identifiers) {
        if (!platform::trimmed(identifier).empty()) {
            wanted.insert(identifier);
        }
    }
    if (stations) {
        for (const auto& station : *stations) {
            if (wanted.empty()) {
                break;
            }
            if (station->ICAO && wanted.erase(*station->ICAO) > 0) {
                station->setFavorite(true);
            }
        }
    }
    std::vector<std::string> unknown;
    for (const std::string& identifier : identifiers) {
        if (wanted.erase(identifier) > 0) {
            unknown.push_back(identifier);
        }
    }
    return unknown;
}

const platform::ClassNames& AviationWeatherStationCollection::archivedClass() const {
    static const platform::ClassNames names{"AviationWeatherStationCollection", "NSObject"};
    return names;
}

void AviationWeatherStationCollection::encodeWithCoder(platform::KeyedArchiver& coder) const {
    using platform::Value;
    coder.encodeObject(lastUpdated ? Value(*lastUpdated) : Value(), "lastUpdated");
    coder.encodeObject(platform::Number(numberOfStations), "numberOfStations");
    coder.encodeObject(fromURL ? Value(*fromURL) : Value(), "fromURL");
    Value array;
    if (stations) {
        array = std::make_shared<platform::Array>(
            platform::Array{true, {stations->begin(), stations->end()}});
    }
    coder.encodeObject(array, "stations");
}
