// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/StationCells.h"
#include "desktop/map/MapView.h"
#include "desktop/table/StationTable.h"

class QStackedWidget;

namespace desktop {

/// A table of stations and a map that shows the same stations as dots. Clicking a dot selects its
/// row and scrolls to it.
class TableWithMap {
public:
    /// The widgets that a window's interface file has for it.
    struct Places {
        QTableView& table;
        /// Shows the table, or in its place the page `emptyPlace` that says why there is none.
        QStackedWidget& tablePlace;
        QWidget& emptyPlace;
    };

    /// Rows and places are borrowed; `mapParent` owns the map.
    TableWithMap(const catalogue::StationRows& rows, const Places& places, const MapSetup& setup,
                 QWidget& mapParent);

    StationTable table;
    MapView& mapView;

    /// Moves the map's marker to a station; null changes nothing.
    void mark(const AviationWeatherStation* station);
    /// Shows the table, or the page in its place.
    void showTable(bool shown);

private:
    Places places_;
};

} // namespace desktop
