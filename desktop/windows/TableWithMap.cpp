// SPDX-License-Identifier: MIT
#include "desktop/windows/TableWithMap.h"

#include "desktop/windows/StationsOnMap.h"

#include <QStackedWidget>
#include <QTableView>

namespace desktop {

TableWithMap::TableWithMap(const catalogue::StationRows& rows, const Places& places,
                           const MapSetup& setup, QWidget& mapParent)
    : table(places.table), mapView(*new MapView(setup, &mapParent)), places_(places) {
    mapView.stationClicked = [this](std::size_t station) {
        const auto row = static_cast<std::int64_t>(station);
        table.selectRow(row);
        table.scrollRowToVisible(row);
    };
    table.setStations([&rows](int row) { return rows.stationInRow(row); });
    QObject::connect(&table.model(), &QAbstractItemModel::modelReset, &table,
                     [this, &rows] { mapView.setStations(onMap(rows.shownStations())); });
}

void TableWithMap::mark(const AviationWeatherStation* station) {
    if (station) {
        mapView.setMarker(onMap(*station));
    }
}

void TableWithMap::showTable(bool shown) {
    places_.tablePlace.setCurrentWidget(shown ? &places_.table : &places_.emptyPlace);
}

} // namespace desktop
