// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/StationCells.h"
#include "desktop/map/MapView.h"
#include "desktop/table/StationTable.h"

class QStackedWidget;

namespace desktop {

/// A table of stations and the map that shows the same ones as dots. A click on a dot selects its
/// row and brings it into sight.
class TableWithMap {
public:
    /// What a window's interface file has for it.
    struct Places {
        QTableView& table;
        /// Shows the table, or in its place the page that says why there is none.
        QStackedWidget& tablePlace;
        QWidget& emptyPlace;
    };

    /// Rows and places are borrowed; the map's parent owns it.
    TableWithMap(const catalogue::StationRows& rows, const Places& places, MapSetup setup,
                 QWidget& mapParent);

    StationTable table;
    MapView& mapView;

    /// Shows the marker at a station; for null the map keeps what it shows.
    void mark(const AviationWeatherStation* station);
    /// Whether the table shows, or what stands for it.
    void showTable(bool shown);

private:
    Places places_;
};

} // namespace desktop
