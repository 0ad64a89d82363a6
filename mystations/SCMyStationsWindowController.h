// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"
#include "platform/Host.h"
#include "platform/TableView.h"
#include "platform/Views.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// The My Stations window's logic: a table of the stations in the user's own package,
/// "MyStations.STNPKG" in the application support folder, and a map of the selected one.
///
/// Main thread only. Its window fills `outlets` before `windowDidLoad`, and dies before it.
class SCMyStationsWindowController : public platform::TableViewDataSource,
                                     public platform::TableViewDelegate {
public:
    /// The controls; each is borrowed and may be null.
    struct Outlets {
        platform::TableView* mftable = nullptr;
        platform::Button* mfsaver = nullptr;
        platform::MapView* mfmapV = nullptr;
    };

    [[nodiscard]] static std::shared_ptr<SCMyStationsWindowController>
    initWithWindowNibName(platform::Host& host, std::string name);

    Outlets outlets;
    /// The stations shown; null without a readable package.
    std::shared_ptr<AviationWeatherStationCollection> myFavotires;

    /// The name of the interface file that the window is made from.
    [[nodiscard]] const std::string& windowNibName() const { return windowNibName_; }

    /// Start-up, once the outlets are filled.
    void windowDidLoad();
    void loadFavoritesFile();
    /// Writes the stations back; without any nothing is written.
    void updateFavoritesFile() const;
    /// Null outside the table.
    [[nodiscard]] std::shared_ptr<AviationWeatherStation> stationInRow(std::int64_t row) const;

    [[nodiscard]] std::int64_t
    numberOfRowsInTableView(const platform::TableView& table) const override;
    /// The text of one cell; the columns are named "1" to "16". Any other column and a row outside
    /// the table give the empty text.
    [[nodiscard]] std::optional<std::string> tableView_objectValueForTableColumn_row(
        const platform::TableView& table, std::string_view column, std::int64_t row) const override;
    [[nodiscard]] bool tableView_shouldEditTableColumn_row(const platform::TableView& table,
                                                           std::string_view column,
                                                           std::int64_t row) const override;
    /// Centres the map on the selected station.
    void tableViewSelectionDidChange(const platform::TableView& table) override;

private:
    /// Only the factory makes controllers.
    struct Private {};

public:
    SCMyStationsWindowController(Private, platform::Host& host, std::string name);

private:
    [[nodiscard]] std::string file() const;

    platform::Host& host_;
    std::string windowNibName_;
    std::int64_t currentMapType_ = 0;
};
