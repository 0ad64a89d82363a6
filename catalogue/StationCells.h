// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"
#include "platform/views/TableView.h"

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

/// The rows of a table of stations that nobody edits. Who derives from it says which stations they
/// are, and what happens when one is selected.
class StationRows : public platform::TableViewDataSource, public platform::TableViewDelegate {
public:
    [[nodiscard]] std::int64_t
    numberOfRowsInTableView(const platform::TableView& table) const override;
    /// A row outside the table is empty.
    [[nodiscard]] std::optional<std::string> tableView_objectValueForTableColumn_row(
        const platform::TableView& table, std::string_view column, std::int64_t row) const override;
    [[nodiscard]] bool tableView_shouldEditTableColumn_row(const platform::TableView& table,
                                                           std::string_view column,
                                                           std::int64_t row) const override;
    /// Null outside the table.
    [[nodiscard]] std::shared_ptr<AviationWeatherStation> stationInRow(std::int64_t row) const;

protected:
    /// Null for none.
    [[nodiscard]] virtual const AviationWeatherStationCollection* shownStations() const = 0;
};

} // namespace catalogue
