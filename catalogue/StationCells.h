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

/// How windows show stations.
namespace catalogue {

/// A column of a station table.
struct StationColumn {
    enum class Alignment { left, centre, right };

    std::string_view identifier;
    /// The minimum width of the content, in points.
    std::int32_t width;
    const char* heading;
    /// The heading in full.
    const char* name;
    /// What the cells mean; for codes, letter by letter.
    const char* meaning;
    Alignment alignment;
    /// Returns the text of a station's cell; absent if the station has none.
    std::optional<std::string> (*text)(const AviationWeatherStation& station);
};

/// The columns of every station table, in order; their identifiers are "1" to "16".
extern const std::array<StationColumn, 16> stationColumns;

/// Returns the index in `stationColumns` of the column whose identifier has this integer value.
[[nodiscard]] std::optional<std::size_t> stationColumnOf(std::string_view identifier);

void setStationColumnWidths(platform::TableView& table);

/// Describes a station in one line: identifier, name, region, position and elevation, as far as it
/// has them.
[[nodiscard]] std::string stationDescription(const AviationWeatherStation& station);

/// The rows of a read-only station table. A derived class says which stations it shows, and what
/// happens when one is selected.
class StationRows : public platform::TableViewDataSource, public platform::TableViewDelegate {
public:
    [[nodiscard]] std::int64_t
    numberOfRowsInTableView(const platform::TableView& table) const override;
    /// Empty for a row outside the table and for any other column.
    [[nodiscard]] std::optional<std::string> tableView_objectValueForTableColumn_row(
        const platform::TableView& table, std::string_view column, std::int64_t row) const override;
    [[nodiscard]] bool tableView_shouldEditTableColumn_row(const platform::TableView& table,
                                                           std::string_view column,
                                                           std::int64_t row) const override;
    /// Returns null for a row outside the table.
    [[nodiscard]] std::shared_ptr<AviationWeatherStation> stationInRow(std::int64_t row) const;
    /// Null if there are none; valid until other stations are shown.
    [[nodiscard]] virtual const AviationWeatherStationCollection* shownStations() const = 0;
};

} // namespace catalogue
