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

/// Never contains null: elements of an archive that are not stations are left out when it is read.
using StationArray = std::vector<std::shared_ptr<AviationWeatherStation>>;

/// An ordered set of station records and the queries over it. Every query keeps the order of
/// `stations` and returns a station at most once. It has no locks: one thread fills a collection
/// and then hands it over.
///
/// Distances are in whole statute miles: metres are truncated to a whole number, multiplied by
/// 0.000621371 and truncated again. A station is within a limit if the result is strictly below it.
/// A station whose position is invalid is infinitely far from everything.
class AviationWeatherStationCollection final : public platform::Archivable {
public:
    [[nodiscard]] static std::shared_ptr<AviationWeatherStationCollection> init();
    [[nodiscard]] static std::shared_ptr<AviationWeatherStationCollection>
    initWithCoder(platform::KeyedUnarchiver& coder);

    /// When and from which list the collection was built.
    std::optional<platform::Date> lastUpdated;
    std::optional<platform::URL> fromURL;
    /// As recorded by whoever filled the collection; not updated when `stations` changes.
    std::int64_t numberOfStations = 0;
    /// Null until assigned.
    std::shared_ptr<StationArray> stations;
    /// The region's name; set in region groups only.
    std::optional<std::string> stateName;
    /// The region groups, in order of first appearance; null before `createStateCollections`.
    std::shared_ptr<std::vector<std::shared_ptr<AviationWeatherStationCollection>>>
        stateByStateCollection;

    [[nodiscard]] StationArray stationsWithTAFCapability() const;
    [[nodiscard]] StationArray stationsWithMETARCapability() const;

    /// Returns the first station whose ICAO is exactly `identifier`, blanks and case included, or
    /// null.
    [[nodiscard]] std::shared_ptr<AviationWeatherStation>
    stationWithICAOID(const std::optional<std::string>& identifier) const;

    /// Returns the stations whose field contains a term, ignoring case. Only the first argument
    /// that is present is searched for, even if it is empty; an empty term matches nothing. `state`
    /// is looked for in region names.
    [[nodiscard]] StationArray
    stationArrayWithPartialICAOID_orName_orState(const std::optional<std::string>& identifier,
                                                 const std::optional<std::string>& name,
                                                 const std::optional<std::string>& state) const;

    /// Groups the stations by region, into at most 300 groups; stations of any further region are
    /// in none. Each station without a region name has a group of its own.
    /// Kept: others who read the groups expect it. A group's `numberOfStations` omits its first
    /// station.
    void createStateCollections();

    /// Returns the other stations within a distance of `station`. Only that very record is left
    /// out; an equal one is not.
    [[nodiscard]] StationArray
    stationsWithinDistanceFromStation_within(const std::shared_ptr<AviationWeatherStation>& station,
                                             std::int64_t miles) const;
    [[nodiscard]] StationArray stationsClosestToLocation_within(const platform::Location& location,
                                                                std::uint64_t miles) const;
    /// Returns the nearest station, or null.
    /// Kept: callers treat any result as a station close by. A station more than 20,037 metres away
    /// is never returned.
    [[nodiscard]] std::shared_ptr<AviationWeatherStation>
    stationClosestToLocation(const platform::Location& location) const;

    /// Returns a new collection with copies of the stations; it shares the region groups with this
    /// one.
    [[nodiscard]] std::shared_ptr<AviationWeatherStationCollection> copyWithZone() const;
    /// Returns a new collection whose own array holds the same station records, so that a mark set
    /// through either collection is seen through both.
    [[nodiscard]] std::shared_ptr<AviationWeatherStationCollection> copySharingStations() const;

    /// The stations marked as favourites.
    [[nodiscard]] StationArray favorites() const;
    /// Their ICAO identifiers, in the same order. Blank ones, which identify no station, are left
    /// out.
    [[nodiscard]] std::vector<std::string> favoriteIdentifiers() const;
    /// Marks the stations with these identifiers as favourites; if several have the same
    /// identifier, only the first. Returns, once each, the identifiers that no station here has.
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
