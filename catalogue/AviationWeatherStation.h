// SPDX-License-Identifier: MIT
#pragma once

#include "platform/archive/Archivable.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

/// One weather-reporting station of the catalogue: a plain record of what its line in the station
/// list says, and the user's marks. Texts stand exactly as in the list's columns, blanks included.
class AviationWeatherStation final : public platform::Archivable {
public:
    /// Everything absent or 0.
    [[nodiscard]] static std::shared_ptr<AviationWeatherStation> init();
    [[nodiscard]] static std::shared_ptr<AviationWeatherStation>
    initWithCoder(platform::KeyedUnarchiver& coder);

    /// The name of the region under whose header the station stood, trailing blanks kept.
    std::optional<std::string> stateName;
    /// Two characters, or blanks.
    std::optional<std::string> stateAbbreviation;
    /// 16 characters.
    std::optional<std::string> stationName;
    /// The four-character ICAO location identifier, or blanks.
    std::optional<std::string> ICAO;
    /// Four characters: three-letter codes keep their trailing blank.
    std::optional<std::string> IATA;
    /// The WMO block and station index; 0 when there is none.
    std::int64_t SYNOPIndex = 0;
    /// Degrees, north and east positive. A record read from an archive may hold any value.
    double latitude = 0;
    double longitude = 0;
    /// In the unit of the station list (metres in the public one); 0 when there is none.
    std::int64_t ELEV = 0;
    /// Capability codes: raw characters of the list, 0 for none. "X" in METAR: reports METARs.
    char METAR = 0;
    char NEXRAD = 0;
    /// "T": issues TAFs.
    char aviationFlag = 0;
    char upperAirOrWind = 0;
    char observationType = 0;
    char officeType = 0;
    /// The digit's character, not its value; "0" is plotted first.
    char plottingPriority = 0;
    /// ISO 3166, two characters.
    std::optional<std::string> countryCode;
    /// The user's marks, or null before the first one. Immutable in a copied record.
    std::shared_ptr<platform::Dictionary> refCon;

    [[nodiscard]] bool isFavorite() const;
    /// Creates the marks when there are none, and makes a mutable copy of immutable ones. A station
    /// that is no favourite keeps an explicit mark saying so.
    void setFavorite(bool favorite);
    void toggleFavoriteStatus();

    /// A new record with the same fields; its marks are an immutable copy.
    [[nodiscard]] std::shared_ptr<AviationWeatherStation> copyWithZone() const;

    /// Held while it lives, marks of all stations stand still for other threads. The three mark
    /// operations above hold it themselves, and may be called while it is held.
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
