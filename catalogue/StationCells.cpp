// SPDX-License-Identifier: MIT
#include "catalogue/StationCells.h"

#include "platform/text/Text.h"
#include "platform/values/Geodesy.h"
#include "platform/values/Value.h"
#include "slib/SuportLib.h"

#include <fmt/format.h>

#include <cmath>
#include <initializer_list>
#include <iterator>

namespace catalogue {

namespace {

using Text = std::optional<std::string>;
using Station = AviationWeatherStation;
using enum StationColumn::Alignment;

Text stateText(const Station& station) {
    const Text& abbreviation = station.stateAbbreviation;
    const Text& name = station.stateName;
    if ((!abbreviation || *abbreviation == "  ") && name && platform::utf16Length(*name) >= 4) {
        return std::string(platform::wholeCharacterPrefix(*name, 2));
    }
    return abbreviation;
}

template <auto member>
Text textOf(const Station& station) {
    return station.*member;
}

template <auto member>
Text numberOf(const Station& station) {
    return std::to_string(station.*member);
}

template <auto member>
Text codeOf(const Station& station) {
    return platform::textOfCode(station.*member);
}

/// Kept: users expect this, and the help describes it. Longitudes, too, are printed in the form of
/// latitudes, with N for east and S for west.
template <auto member>
Text angleOf(const Station& station) {
    return SuportLib::latitudeString(station.*member);
}

} // namespace

constexpr std::array<StationColumn, 16> stationColumns{{
    {"1", 10, "State", "State", "State or province, or the beginning of the region's name", centre,
     stateText},
    {"2", 120, "Name", "Name", "Name of the station", left, textOf<&Station::stationName>},
    {"3", 45, "ICAO", "ICAO identifier", "Four-character location identifier", left,
     textOf<&Station::ICAO>},
    {"4", 45, "IATA", "IATA identifier", "Three-letter IATA or FAA identifier", left,
     textOf<&Station::IATA>},
    {"5", 50, "WMO", "WMO index", "Synoptic block and station number\n0 = none", right,
     numberOf<&Station::SYNOPIndex>},
    {"6", 90, "Latitude", "Latitude", "Degrees, minutes and seconds, N = north, S = south", right,
     angleOf<&Station::latitude>},
    {"7", 90, "Longitude", "Longitude", "Degrees, minutes and seconds, N = east, S = west", right,
     angleOf<&Station::longitude>},
    {"8", 40, "Elev.", "Elevation", "Metres above sea level", right, numberOf<&Station::ELEV>},
    {"9", 15, "METAR", "METAR", "X = reports METARs\nZ = obsolete", centre,
     codeOf<&Station::METAR>},
    {"10", 15, "Radar", "NEXRAD", "X = weather radar", centre, codeOf<&Station::NEXRAD>},
    {"11", 15, "Aviation", "Aviation",
     "V = end point of AIRMETs and SIGMETs\nA = air route traffic control centre\n"
     "T = issues TAFs\nU = both T and V",
     centre, codeOf<&Station::aviationFlag>},
    {"12", 15, "Upper air", "Upper air", "X = weather balloons\nW = wind profiler", centre,
     codeOf<&Station::upperAirOrWind>},
    {"13", 15, "Obs.", "Observation",
     "A = automatic, ASOS\nW = automatic, AWOS\nM = mesonet\nH = human\nG = augmented", centre,
     codeOf<&Station::observationType>},
    {"14", 15, "Office", "Office",
     "F = weather forecast office (WFO)\nR = river forecast centre (RFC)\n"
     "C = national prediction centre (NCEP)",
     centre, codeOf<&Station::officeType>},
    {"15", 40, "Priority", "Priority", "Plotting priority, 0 = highest", centre,
     codeOf<&Station::plottingPriority>},
    {"16", 20, "Country", "Country", "Two-letter ISO 3166 code", left,
     textOf<&Station::countryCode>},
}};

std::optional<std::size_t> stationColumnOf(std::string_view identifier) {
    const std::int64_t number = platform::integerOf(std::string(identifier));
    if (number < 1 || number > std::ssize(stationColumns)) {
        return {};
    }
    return static_cast<std::size_t>(number - 1);
}

void setStationColumnWidths(platform::TableView& table) {
    for (const StationColumn& column : stationColumns) {
        table.setColumnWidth(column.identifier, column.width);
    }
}

namespace {

/// To the nearest second.
std::string angle(double degrees, char positive, char negative) {
    const long seconds = std::lround(std::abs(degrees) * 3600);
    return fmt::format("{}°{}'{}\"{}", seconds / 3600, seconds / 60 % 60, seconds % 60,
                       degrees < 0 ? negative : positive);
}

/// Empty unless it is a place on the globe. The coordinates of the table's cells do not do here:
/// they call a place less than a degree west of Greenwich east of it.
std::string positionOf(const AviationWeatherStation& station) {
    const platform::Location place{station.latitude, station.longitude};
    return place.isValid()
               ? angle(place.latitude, 'N', 'S') + " " + angle(place.longitude, 'E', 'W')
               : std::string();
}

} // namespace

std::string stationDescription(const AviationWeatherStation& station) {
    std::string line;
    for (const std::string& part : {station.ICAO.value_or(""), station.stationName.value_or(""),
                                    station.stateName.value_or(""), positionOf(station),
                                    "elevation " + std::to_string(station.ELEV)}) {
        if (const auto text = platform::trimmed(part); !text.empty()) {
            line += line.empty() ? "" : " · ";
            line += text;
        }
    }
    return line;
}

std::int64_t StationRows::numberOfRowsInTableView(const platform::TableView& /*table*/) const {
    const auto* shown = shownStations();
    return shown && shown->stations ? std::ssize(*shown->stations) : 0;
}

std::optional<std::string> StationRows::tableView_objectValueForTableColumn_row(
    const platform::TableView& /*table*/, std::string_view column, std::int64_t row) const {
    const auto station = stationInRow(row);
    const auto place = stationColumnOf(column);
    return station && place ? stationColumns[*place].text(*station) : "";
}

bool StationRows::tableView_shouldEditTableColumn_row(const platform::TableView& /*table*/,
                                                      std::string_view /*column*/,
                                                      std::int64_t /*row*/) const {
    return false;
}

std::shared_ptr<AviationWeatherStation> StationRows::stationInRow(std::int64_t row) const {
    const auto* shown = shownStations();
    if (row < 0 || !shown || !shown->stations || row >= std::ssize(*shown->stations)) {
        return nullptr;
    }
    return (*shown->stations)[static_cast<std::size_t>(row)];
}

} // namespace catalogue
