// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/StationCells.h"
#include "desktop/table/SortKey.h"
#include "reports/Report.h"

#include <array>
#include <string>

namespace desktop {

/// A column that shows a station's last METAR.
struct WeatherColumn {
    using Alignment = catalogue::StationColumn::Alignment;

    /// In the settings.
    const char* identifier;
    const char* heading;
    /// The heading in full.
    const char* name;
    const char* meaning;
    Alignment alignment;
    /// A text as wide as most cells get; the category's has room for its shape.
    const char* sample;
    /// Empty where the report does not say.
    std::string (*text)(const reports::Metar& metar, platform::Date now);
    SortKey (*key)(const reports::Metar& metar);
};

/// In the order in which they follow the station columns in the model.
extern const std::array<WeatherColumn, 8> weatherColumns;

/// The index of the category's column, which has a shape and a colour too.
inline constexpr std::size_t categoryColumn = 0;

} // namespace desktop
