// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"
#include "catalogue/StationCells.h"
#include "platform/host/Host.h"
#include "platform/views/Outlet.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// The My Stations window's logic: a table of the stations in the user's own package,
/// "MyStations.STNPKG" in the application support folder, and a map of the selected one.
///
/// Main thread only. Its window fills `outlets` before `windowDidLoad`, and is destroyed before it.
class SCMyStationsWindowController : public catalogue::StationRows {
public:
    /// The controls; any that is left unset is absent.
    struct Outlets {
        platform::Outlet<platform::TableView> mftable{};
        platform::Outlet<platform::Button> mfsaver{};
        platform::Outlet<platform::MapView> mfmapV{};
    };

    [[nodiscard]] static std::shared_ptr<SCMyStationsWindowController>
    initWithWindowNibName(platform::Host& host, std::string name);

    Outlets outlets;
    /// The stations shown; null if there is no readable package.
    std::shared_ptr<AviationWeatherStationCollection> myFavotires;

    /// The name of the interface file from which the window is built.
    [[nodiscard]] const std::string& windowNibName() const { return windowNibName_; }

    /// Sets the window up, once the outlets are filled.
    void windowDidLoad();
    void loadFavoritesFile();
    /// Writes the stations back to the package; does nothing if `myFavotires` is null.
    void updateFavoritesFile() const;

    /// Centres the map on the selected station.
    void tableViewSelectionDidChange(const platform::TableView& table) override;
    [[nodiscard]] const AviationWeatherStationCollection* shownStations() const override {
        return myFavotires.get();
    }

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
