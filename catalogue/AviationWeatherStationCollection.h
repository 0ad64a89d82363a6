// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStation.h"
#include "platform/archive/Archivable.h"
#include "platform/values/Geodesy.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// Records are never null: what an archive holds in a record's place is left out when it is read.
using StationArray = std::vector<std::shared_ptr<AviationWeatherStation>>;

/// An ordered set of station records and the queries over it. Every query keeps the order of
/// `stations` and lists a station at most once. No locks: one thread fills a collection and hands
/// it over.
///
/// Distances are whole statute miles: metres are cut to a whole number, multiplied by 0.000621371
/// and cut again. A station is within a limit when that number is strictly below it. A station
/// whose position is not valid is infinitely far from everything.
class AviationWeatherStationCollection final : public platform::Archivable {
public:
    [[nodiscard]] static std::shared_ptr<AviationWeatherStationCollection> init();
    [[nodiscard]] static std::shared_ptr<AviationWeatherStationCollection>
    initWithCoder(platform::KeyedUnarchiver& coder);

    /// When and from which list the collection was built.
    std::optional<platform::Date> lastUpdated;
    std::optional<platform::URL> fromURL;
    /// As recorded by whoever filled the collection; not kept in step with `stations`.
    std::int64_t numberOfStations = 0;
    /// Null until somebody gives one.
    std::shared_ptr<StationArray> stations;
    /// The region's name, in a region group only.
    std::optional<std::string> stateName;
    /// The region groups, in order of first appearance; null before `createStateCollections`.
    std::shared_ptr<std::vector<std::shared_ptr<AviationWeatherStationCollection>>>
        stateByStateCollection;

    [[nodiscard]] StationArray stationsWithTAFCapability() const;
    [[nodiscard]] StationArray stationsWithMETARCapability() const;

    /// The first station whose ICAO is exactly `identifier`, blanks and case included, or null.
    [[nodiscard]] std::shared_ptr<AviationWeatherStation>
    stationWithICAOID(const std::optional<std::string>& identifier) const;

    /// Stations one of whose fields contains a term, in whatever case. Only the first present
    /// argument is searched for, even when it is empty; an empty term is found nowhere. The third
    /// one searches region names.
    [[nodiscard]] StationArray
    stationArrayWithPartialICAOID_orName_orState(const std::optional<std::string>& identifier,
                                                 const std::optional<std::string>& name,
                                                 const std::optional<std::string>& state) const;

    /// Groups the stations by region into at most 300 groups; stations of further regions are in
    /// none. Stations without a region name have a group each.
    /// Kept: a group's `numberOfStations` leaves its first station out; others who read the groups
    /// know it so.
    void createStateCollections();

    /// The other stations within a distance of `station`; that very record is left out, an equal
    /// one is not.
    [[nodiscard]] StationArray
    stationsWithinDistanceFromStation_within(const std::shared_ptr<AviationWeatherStation>& station,
                                             std::int64_t miles) const;
    [[nodiscard]] StationArray stationsClosestToLocation_within(const platform::Location& location,
                                                                std::uint64_t miles) const;
    /// The nearest station, or null.
    /// Kept: none further away than 20,037 metres is answered; callers take an answer for a station
    /// close by.
    [[nodiscard]] std::shared_ptr<AviationWeatherStation>
    stationClosestToLocation(const platform::Location& location) const;

    /// A new collection of copied stations; the region groups are shared with this one.
    [[nodiscard]] std::shared_ptr<AviationWeatherStationCollection> copyWithZone() const;
    /// A new collection with an array of its own over the same station records, so that a mark set
    /// through either is seen through both.
    [[nodiscard]] std::shared_ptr<AviationWeatherStationCollection> copySharingStations() const;

    /// The stations that are marked as favourites.
    [[nodiscard]] StationArray favorites() const;
    /// Their ICAO identifiers, in the same order. A blank one names no station, and is left out.
    [[nodiscard]] std::vector<std::string> favoriteIdentifiers() const;
    /// Marks the stations of these identifiers as favourites; of several stations with one
    /// identifier, the first. Gives back, each once, the identifiers that no station here has.
    [[nodiscard]] std::vector<std::string>
    markFavorites(const std::vector<std::string>& identifiers);

    [[nodiscard]] const platform::ClassNames& archivedClass() const override;
    void encodeWithCoder(platform::KeyedArchiver& coder) const override;

private:
    /// Only the factories make collections.
    struct Private {};

public:
    explicit AviationWeatherStationCollection(Private) {}

private:
    template <typename Keep>
    [[nodiscard]] StationArray stationsThat(Keep keep) const;
};
