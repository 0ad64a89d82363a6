// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"
#include "platform/views/TableView.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// What windows show of stations.
namespace catalogue {

/// A column of the tables of stations.
struct StationColumn {
    enum class Alignment { left, centre, right };

    std::string_view identifier;
    /// The least width of its content, in points.
    std::int32_t width;
    const char* heading;
    /// The heading in full.
    const char* name;
    /// What the cells mean, letter by letter where they are codes.
    const char* meaning;
    Alignment alignment;
    /// The text of a station's cell; absent where the station has none.
    std::optional<std::string> (*text)(const AviationWeatherStation& station);
};

/// The same ones in every table, in their order; the identifiers are "1" to "16".
extern const std::array<StationColumn, 16> stationColumns;

/// The place of a column in that order, by the integer value of its identifier.
[[nodiscard]] std::optional<std::size_t> stationColumnOf(std::string_view identifier);

void setStationColumnWidths(platform::TableView& table);

/// A station in one line: identifier, name, region, position and elevation, as far as it has them.
[[nodiscard]] std::string stationDescription(const AviationWeatherStation& station);

/// The rows of a table of stations that nobody edits. Who derives from it says which stations they
/// are, and what happens when one is selected.
class StationRows : public platform::TableViewDataSource, public platform::TableViewDelegate {
public:
    [[nodiscard]] std::int64_t
    numberOfRowsInTableView(const platform::TableView& table) const override;
    /// A row outside the table and any other column are empty.
    [[nodiscard]] std::optional<std::string> tableView_objectValueForTableColumn_row(
        const platform::TableView& table, std::string_view column, std::int64_t row) const override;
    [[nodiscard]] bool tableView_shouldEditTableColumn_row(const platform::TableView& table,
                                                           std::string_view column,
                                                           std::int64_t row) const override;
    /// Null outside the table.
    [[nodiscard]] std::shared_ptr<AviationWeatherStation> stationInRow(std::int64_t row) const;
    /// Null for none; valid until other stations are shown.
    [[nodiscard]] virtual const AviationWeatherStationCollection* shownStations() const = 0;
};

} // namespace catalogue
