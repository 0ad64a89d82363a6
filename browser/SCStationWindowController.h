// SPDX-License-Identifier: MIT
#pragma once

#include "browser/FavoritesFile.h"
#include "browser/ReportPane.h"
#include "browser/SCMainTable.h"
#include "browser/SCWebView.h"
#include "catalogue/AviationWeatherStationCollection.h"
#include "catalogue/StationCells.h"
#include "catalogue/stationparser.h"
#include "platform/host/Guarded.h"
#include "platform/host/Host.h"
#include "platform/host/OperationQueue.h"
#include "platform/views/Outlet.h"
#include "platform/views/Views.h"
#include "weather/SCWeatherGrabber.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The main window's logic: the station table, the catalogue behind it and the controls around it.
/// It owns a master collection, every station of the catalogue, and a working collection, what the
/// table shows: always another object than the master, sharing the master's station records.
///
/// Main thread only, except for `parseIsDone`, which runs on the thread of a parse. Its window
/// fills `outlets` before `windowDidLoad`, and dies before it.
class SCStationWindowController : public catalogue::StationRows,
                                  public std::enable_shared_from_this<SCStationWindowController> {
public:
    /// The controls; one that is left out is absent.
    struct Outlets {
        platform::Outlet<SCMainTable> table{};
        platform::Outlet<platform::SegmentedControl> switchie{};
        platform::Outlet<platform::SegmentedControl> switchieDu{};
        platform::Outlet<platform::SearchField> sf{};
        platform::Outlet<platform::Button> saver{};
        platform::Outlet<platform::Button> parserIt{};
        platform::Outlet<platform::Button> metarB{};
        platform::Outlet<platform::PopUpButton> distButton{};
        platform::Outlet<platform::TextField> words{};
        platform::Outlet<platform::MapView> mapV{};
        /// Borrowed, and null for none: no mere view, it keeps what it shows.
        SCWebView* secView = nullptr;
        platform::Outlet<platform::TextField> dLcikWords{};
        platform::Outlet<platform::TextView> metarBackField{};
        platform::Outlet<platform::TextView> tafBackFiled{};
        /// Names the selected station in full.
        platform::Outlet<platform::TextField> stationLine{};
        /// Shows the selected station wherever else it is shown; called with null for none.
        std::function<void(const AviationWeatherStation* station)> showSelected =
            [](const AviationWeatherStation*) {};
        platform::Outlet<platform::MenuItem> alwaysFavItem{};
    };

    [[nodiscard]] static std::shared_ptr<SCStationWindowController>
    initWithWindowNibName(platform::Host& host, std::string name);
    ~SCStationWindowController() override;

    Outlets outlets;
    std::int64_t nowSelection = -1;
    std::shared_ptr<AviationWeatherStation> selectedStation;
    std::shared_ptr<AviationWeatherStationCollection> workingCollection;
    std::int64_t currentMapType = 0;
    bool showingFavs = false;
    std::unique_ptr<platform::Timer> updateWeatherTimer;
    std::shared_ptr<SCWeatherGrabber> wGrabber;
    /// The user's last answer to where to save, and the path written; absent when cancelled.
    std::optional<platform::URL> savehere;
    std::optional<std::string> savePath;

    /// The name of the interface file that the window is made from.
    [[nodiscard]] const std::string& windowNibName() const { return windowNibName_; }
    /// Every station of the catalogue, or null. Any thread may read it while a parse replaces it.
    [[nodiscard]] std::shared_ptr<AviationWeatherStationCollection> masterCollection() const {
        return masterCollection_.load();
    }

    /// Start-up, once the outlets are filled.
    void windowDidLoad();
    /// Stores what outlives the run; called once, at the end of it.
    void quitting();

    /// Reads the shipped package into the master (`flag` false) or empties the master (true).
    void loadParsedFile(bool flag);
    /// Makes `collection` the master and shows a copy of it at the next reload.
    void addCollection(const std::shared_ptr<AviationWeatherStationCollection>& collection);
    /// Lets the user choose a station list and parses it in the background.
    void parseit();
    /// Saves the master collection as a package, where the user says.
    void saveDocument();
    void innerSave();
    /// What the save button does: saves with every station on show, before the panel opens and
    /// after it, and the selected one selected.
    void saveCatalogue();
    /// Whether there is any station to look for.
    [[nodiscard]] bool hasCatalogue() const;
    void saveoptionsDidEnd_returnCode_contextInfo(int returnCode);
    void wetDidEnd_returnCode_contextInfo(int returnCode);
    /// Writes the count label.
    /// Kept: users know it so, and the help says it. 0 takes the singular too.
    void setWordsStringTHing(std::int64_t n);

    /// Fills the table with what a search text finds in the catalogue, in the search mode in force:
    /// terms between blanks and commas, the last one's matches first.
    void filterIt(const std::string& text);
    /// Whatever the user changes in the search field: the first text starts a search, each change
    /// sends the action, and the empty text ends the search and selects the selected station again.
    void searchTextDidChange();
    /// Empties the search field and shows every station, the selected one selected again.
    void showAll();
    /// The action of the search field, sent on every change of its text.
    void searchIt();
    void searchFieldDidStartSearching();
    /// Shows every station again.
    void searchFieldDidEndSearching();
    /// The action of the search mode.
    void switchieswitche();
    /// Fills the table with the stations near the selected one, as far as the distance pop-up says.
    void innnerGetDistant();
    void geMeterDistChanged();
    void geMeter();
    /// Selects the station that was selected before the table's rows changed, by its name.
    void resetTableSelectionAfterFilter();

    /// Centres the map on a station, in the map type in force, and the chart while it shows. An
    /// invalid position is logged and changes nothing.
    void mapStiation(const AviationWeatherStation& station);
    /// The action of the map types, of which the last one shows the chart in the map's place.
    void switchieswitcheDu();

    /// Marks the selected station as a favourite, or no longer.
    void favMenuItem();
    /// Copies a station's mark onto the master's first record of the same identifier.
    void setFavInMaster(const AviationWeatherStation& station);
    /// Switches between the favourites and all stations.
    void showFavsMenu();
    /// Switches the favourites' weather on or off.
    void alwaysShowFavWeatherMenu(platform::MenuItem& sender);
    /// Rows whose mark goes with the selected station's: its own, which a search may list more than
    /// once, and those of its namesakes by identifier, of which the first is marked with it.
    [[nodiscard]] std::vector<std::int64_t> rowsMarkedWithSelected() const;
    /// In catalogue order.
    [[nodiscard]] StationArray allFavorites() const;
    /// Requests the weather of the selected station and of all favourites, if that is switched on.
    void getFavWeather();
    /// Asks for the selected station's weather again, and for the favourites' while that is
    /// switched on. Nothing else changes.
    void requestSelectedWeather();
    void saveFavorites();
    void loadFavorites();
    /// Sets a menu item's title and tells whether it is enabled.
    [[nodiscard]] bool validateMenuItem(platform::MenuItem& item);

    void tableViewSelectionDidChange(const platform::TableView& table) override;
    [[nodiscard]] const AviationWeatherStationCollection* shownStations() const override {
        return workingCollection.get();
    }

private:
    /// Only the factory makes controllers.
    struct Private {};

public:
    SCStationWindowController(Private, platform::Host& host, std::string name);

private:
    using Observation = void (SCStationWindowController::*)(const platform::Notification&);
    using TextHandler = void (SCStationWindowController::*)(const std::string& text);

    void observe(const char* name, Observation observation);
    void parseIsDone(const platform::Notification& notification);
    /// Makes what the parser has read the master.
    void publishParsed();
    void showzTble();
    void reloadTable();
    /// Publishes a new master that has taken over the favourites of the one it replaces. Any
    /// thread.
    void replaceMaster(std::shared_ptr<AviationWeatherStationCollection> collection);
    /// Makes the working collection a fresh copy of the master that shares its station records.
    void resetWorkingCollection();
    /// Counts the working collection and reloads the table.
    void showWorkingCollection();
    void showInTable(StationArray stations);
    void showMap();
    void showChart();
    /// Nothing unless the chart is on show.
    void loadChart(double latitude, double longitude);
    void setSelectionControlsEnabled(bool enabled);
    void describeSelection();
    /// Highlights the row of `station`, which was selected before other rows came: by its record,
    /// else by its identifier, else none. The record itself is only highlighted; nothing is asked
    /// for it and the map stays.
    void selectAgain(const std::shared_ptr<AviationWeatherStation>& station);
    /// Takes the highlighted row's station for the selected one, if another one is.
    void settleSelection();
    /// -1 where no row is this station's.
    [[nodiscard]] std::int64_t rowOf(const std::shared_ptr<AviationWeatherStation>& station) const;

    [[nodiscard]] FavoritesFile::Identifiers favoriteIdentifiers() const;
    [[nodiscard]] StationArray selectedAndFavorites() const;
    void updateWeather();
    /// Whether a kept reply will do, or the server is asked whether it still holds.
    enum class Freshness { asKept, revalidated };
    void requestWeather(StationArray stations, const std::string& metarText,
                        const std::string& tafText, Freshness freshness = Freshness::asKept);
    // These observe, on whatever thread, and hand the text over to the handlers below them.
    void updateMetarString(const platform::Notification& notification);
    void sealMetarString(const platform::Notification& notification);
    void updateTAFString(const platform::Notification& notification);
    void sealTafString(const platform::Notification& notification);
    void handOver(const platform::Notification& notification, TextHandler handler);
    void updateMetarBack(const std::string& text);
    void sealMetarBack(const std::string& text);
    void updateTafBack(const std::string& text);
    void sealTafBack(const std::string& text);

    platform::Host& host_;
    std::string windowNibName_;
    platform::Guarded<std::shared_ptr<AviationWeatherStationCollection>> masterCollection_;
    platform::Guarded<std::shared_ptr<stationparser>> parser_;
    platform::Guarded<std::optional<platform::URL>> fileURL_;
    std::int32_t alwaysFavWeather_ = 0;
    std::int64_t searchingOn_ = 0;
    bool saerching_ = false;
    /// Set while a row is highlighted whose station is known to be the selected one.
    bool isSelectingAgain_ = false;
    FavoritesFile favoritesFile_;
    /// Favourites that the master lacks. Read and changed while marks are locked.
    FavoritesFile::Identifiers unknownFavorites_;
    ReportPane metars_{outlets.metarBackField};
    ReportPane tafs_{outlets.tafBackFiled};
    std::vector<platform::NotificationCenter::Token> observers_;
    /// The last one runs the current parse; earlier ones stay until their parse has ended.
    std::vector<std::unique_ptr<platform::OperationQueue>> queues_;
};
