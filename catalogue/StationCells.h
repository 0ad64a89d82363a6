// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"
#include "platform/TableView.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// What windows show of stations; their tables have the same sixteen columns, named "1" to "16".
namespace catalogue {

void setStationColumnWidths(platform::TableView& table);

/// The text of one cell; absent where the station has none. Any other column is empty.
[[nodiscard]] std::optional<std::string> stationCell(const AviationWeatherStation& station,
                                                     std::string_view column);

/// A station in one line: identifier, name, region, position and elevation, as far as it has them.
[[nodiscard]] std::string stationDescription(const AviationWeatherStation& station);

/// The station in a row; null outside the stations, and without any.
[[nodiscard]] std::shared_ptr<AviationWeatherStation>
stationInRow(const std::shared_ptr<StationArray>& stations, std::int64_t row);

} // namespace catalogue
