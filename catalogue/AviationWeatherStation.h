// SPDX-License-Identifier: MIT
#pragma once

#include "platform/archive/Archivable.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

/// One weather-reporting station of the catalogue: a plain record of its line in the station list
/// and of the user's marks. Texts are exactly as in the list's columns, blanks included.
class AviationWeatherStation final : public platform::Archivable {
public:
    /// Every field is absent or 0.
    [[nodiscard]] static std::shared_ptr<AviationWeatherStation> init();
    [[nodiscard]] static std::shared_ptr<AviationWeatherStation>
    initWithCoder(platform::KeyedUnarchiver& coder);

    /// The name of the region whose header the station is listed under, with trailing blanks.
    std::optional<std::string> stateName;
    /// Two characters, or blanks.
    std::optional<std::string> stateAbbreviation;
    /// 16 characters.
    std::optional<std::string> stationName;
    /// The four-character ICAO location identifier, or blanks.
    std::optional<std::string> ICAO;
    /// Four characters: three-letter codes keep their trailing blank.
    std::optional<std::string> IATA;
    /// The WMO block and station index; 0 if there is none.
    std::int64_t SYNOPIndex = 0;
    /// Degrees, positive to the north and east. A record read from an archive may hold any value.
    double latitude = 0;
    double longitude = 0;
    /// In the unit of the station list (metres in the public one); 0 if there is none.
    std::int64_t ELEV = 0;
    /// Capability codes: raw characters of the list, 0 for none. "X" in METAR means that the
    /// station reports METARs.
    char METAR = 0;
    char NEXRAD = 0;
    /// "T" means that the station issues TAFs.
    char aviationFlag = 0;
    char upperAirOrWind = 0;
    char observationType = 0;
    char officeType = 0;
    /// The digit as a character, not its value; "0" is plotted first.
    char plottingPriority = 0;
    /// The two-character ISO 3166 code.
    std::optional<std::string> countryCode;
    /// The user's marks; null before the first one is set. Immutable in a copied record.
    std::shared_ptr<platform::Dictionary> refCon;

    [[nodiscard]] bool isFavorite() const;
    /// Creates the marks if there are none, and replaces immutable ones by a mutable copy. A
    /// station that is not a favourite keeps an explicit mark saying so.
    void setFavorite(bool favorite);
    void toggleFavoriteStatus();

    /// Returns a new record with the same fields and an immutable copy of the marks.
    [[nodiscard]] std::shared_ptr<AviationWeatherStation> copyWithZone() const;

    /// Locks the marks of all stations against other threads while the result lives. The three mark
    /// operations above take the lock themselves, and may be called while it is held.
    [[nodiscard]] static std::unique_lock<std::recursive_mutex> lockMarks();

    [[nodiscard]] const platform::ClassNames& archivedClass() const override;
    void encodeWithCoder(platform::KeyedArchiver& coder) const override;

private:
    /// Only the factories make records.
    struct Private {};

public:
    explicit AviationWeatherStation(Private) {}
    AviationWeatherStation(Private, const AviationWeatherStation& other)
        : AviationWeatherStation(other) {}

private:
    AviationWeatherStation(const AviationWeatherStation&) = default;
};
