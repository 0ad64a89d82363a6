// SPDX-License-Identifier: MIT
#include "catalogue/StationCells.h"

#include "platform/text/Text.h"
#include "platform/values/Value.h"
#include "slib/SuportLib.h"

#include <array>
#include <initializer_list>
#include <iterator>

namespace catalogue {

namespace {

/// Of columns 1 to 16, in points.
constexpr std::array<std::int32_t, 16> columnWidths{10, 120, 45, 45, 50, 90, 90, 40,
                                                    15, 15,  15, 15, 15, 15, 40, 20};

std::optional<std::string> stateText(const AviationWeatherStation& station) {
    const auto& abbreviation = station.stateAbbreviation;
    const auto& name = station.stateName;
    if ((!abbreviation || *abbreviation == "  ") && name && platform::utf16Length(*name) >= 4) {
        return std::string(platform::wholeCharacterPrefix(*name, 2));
    }
    return abbreviation;
}

} // namespace

void setStationColumnWidths(platform::TableView& table) {
    for (std::size_t i = 0; i < columnWidths.size(); ++i) {
        table.setColumnWidth(std::to_string(i + 1), columnWidths[i]);
    }
}

std::optional<std::string> stationCell(const AviationWeatherStation& station,
                                       std::string_view column) {
    switch (platform::integerOf(std::string(column))) {
    case 1:
        return stateText(station);
    case 2:
        return station.stationName;
    case 3:
        return station.ICAO;
    case 4:
        return station.IATA;
    case 5:
        return std::to_string(station.SYNOPIndex);
    case 6:
        return SuportLib::latitudeString(station.latitude);
    case 7:
        // The longitude, too, prints in the latitude's form; intended.
        return SuportLib::latitudeString(station.longitude);
    case 8:
        return std::to_string(station.ELEV);
    case 9:
        return platform::textOfCode(station.METAR);
    case 10:
        return platform::textOfCode(station.NEXRAD);
    case 11:
        return platform::textOfCode(station.aviationFlag);
    case 12:
        return platform::textOfCode(station.upperAirOrWind);
    case 13:
        return platform::textOfCode(station.observationType);
    case 14:
        return platform::textOfCode(station.officeType);
    case 15:
        return platform::textOfCode(station.plottingPriority);
    case 16:
        return station.countryCode;
    default:
        return "";
    }
}

std::string stationDescription(const AviationWeatherStation& station) {
    std::string line;
    for (const std::string& part :
         {station.ICAO.value_or(""), station.stationName.value_or(""),
          station.stateName.value_or(""),
          SuportLib::fullCoordinateString_and(station.latitude, station.longitude),
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
    return station ? stationCell(*station, column) : "";
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
