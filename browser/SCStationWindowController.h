// SPDX-License-Identifier: MIT
#pragma once

#include "browser/FavoritesFile.h"
#include "browser/ReportPane.h"
#include "browser/SCMainTable.h"
#include "browser/SCWebView.h"
#include "browser/TableFilter.h"
#include "catalogue/AviationWeatherStationCollection.h"
#include "catalogue/StationCells.h"
#include "catalogue/Suggestions.h"
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
/// It owns a master collection, which holds every station of the catalogue, and a working
/// collection, which the table shows. The two are never the same object, but share the master's
/// station records.
///
/// Main thread only, except for `parseIsDone`, which runs on the thread of a parse. Its window
/// fills `outlets` before `windowDidLoad`, and is destroyed before it.
class SCStationWindowController : public catalogue::StationRows,
                                  public std::enable_shared_from_this<SCStationWindowController> {
public:
    /// The controls; any that is left unset is absent.
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
        /// Borrowed; null if there is none. Not an outlet, because it is more than a view: it has
        /// state.
        SCWebView* secView = nullptr;
        platform::Outlet<platform::TextField> dLcikWords{};
        platform::Outlet<platform::TextView> metarBackField{};
        platform::Outlet<platform::TextView> tafBackFiled{};
        /// Describes the selected station in full.
        platform::Outlet<platform::TextField> stationLine{};
        /// Shows the selected station in any other place; called with null if there is none.
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
    /// Where the user last chose to save, and the path written; absent if the panel was cancelled.
    std::optional<platform::URL> savehere;
    std::optional<std::string> savePath;

    /// The name of the interface file from which the window is built.
    [[nodiscard]] const std::string& windowNibName() const { return windowNibName_; }
    /// Every station of the catalogue, or null. Any thread may read it while a parse replaces it.
    [[nodiscard]] std::shared_ptr<AviationWeatherStationCollection> masterCollection() const {
        return masterCollection_.load();
    }

    /// Sets the window up, once the outlets are filled.
    void windowDidLoad();
    /// Saves favourites and settings. Called once, at the end of the run.
    void quitting();

    /// Reads the shipped package into the master (`flag` false) or empties the master (true).
    void loadParsedFile(bool flag);
    /// Makes `collection` the master and lists it whole, with the selected station selected again.
    void showCatalogue(const std::shared_ptr<AviationWeatherStationCollection>& collection);
    /// Makes `collection` the master; the next reload of the table shows a copy of it.
    void addCollection(const std::shared_ptr<AviationWeatherStationCollection>& collection);
    /// Lets the user choose a station list, and parses it in the background.
    void parseit();
    /// Saves the master collection as a package, where the user chooses.
    void saveDocument();
    void innerSave();
    /// The action of the save button: saves, listing every station both before the panel opens and
    /// afterwards, and keeps the selected one selected.
    void saveCatalogue();
    /// Whether the catalogue has any stations.
    [[nodiscard]] bool hasCatalogue() const;
    void saveoptionsDidEnd_returnCode_contextInfo(int returnCode);
    void wetDidEnd_returnCode_contextInfo(int returnCode);
    /// Writes the count label.
    /// Kept: users expect this, and the help describes it. 0 takes the singular, too.
    void setWordsStringTHing(std::int64_t n);

    /// Fills the table with the stations of the catalogue that match a search text in the current
    /// search mode. Its terms are separated by blanks and commas; the last term's matches come
    /// first.
    void filterIt(const std::string& text);
    /// Handles every change that the user makes in the search field: the first text starts a
    /// search, each change sends the action, and empty text ends the search and selects the
    /// selected station again.
    void searchTextDidChange();
    /// Empties the search field and lists every station, with the selected one selected again.
    void showAll();
    /// The action of the search field, sent on every change of its text.
    void searchIt();
    void searchFieldDidStartSearching();
    /// Lists every station again.
    void searchFieldDidEndSearching();
    /// The action of the search mode control.
    void switchieswitche();
    /// Fills the table with the stations near the selected one, within the distance chosen in the
    /// pop-up.
    void innnerGetDistant();
    void geMeterDistChanged();
    void geMeter();
    /// Why the table lists what it lists. Changes with the working collection only, and so speaks
    /// of the rows of the table's last reload.
    [[nodiscard]] const browser::TableFilter& filter() const { return filter_; }
    // Each of these ends one reason for which the table does not list every station, and leaves the
    // others in force; the selected station stays selected if it is still listed.
    /// Empties the search field. Favourites that were listed with the matches stay.
    void leaveSearch();
    /// Returns to what was listed before a distance was chosen. If nothing is selected, selects the
    /// station that it was measured from. Does nothing if no distance is in force.
    void leaveDistance();
    /// Matches of a search stay.
    void leaveFavorites();
    /// Searches for what a suggestion stands for as if the user had typed it, in its search mode,
    /// and selects its station if it stands for one.
    void chooseSuggestion(const catalogue::Suggestion& suggestion);
    /// Selects the station that was selected before the table's rows changed, found by its name.
    void resetTableSelectionAfterFilter();
    /// Selects the catalogue's first station with this identifier. Lists every station if the table
    /// does not show it; without such a station, changes nothing.
    void selectStation(const std::string& identifier);

    /// Centres the map on a station, in the current map type, and also the chart while it is shown.
    /// An invalid position is logged and changes nothing.
    void mapStiation(const AviationWeatherStation& station);
    /// The action of the map type control, whose last type shows the chart in place of the map.
    void switchieswitcheDu();

    /// Marks the selected station as a favourite, or removes the mark.
    void favMenuItem();
    /// Copies a station's mark to the master's first record with the same identifier.
    void setFavInMaster(const AviationWeatherStation& station);
    /// Switches between listing the favourites and listing all stations.
    void showFavsMenu();
    /// Switches the favourites' weather on or off.
    void alwaysShowFavWeatherMenu(platform::MenuItem& sender);
    /// Returns the rows whose mark changes with the selected station's: its own, of which a search
    /// may list several, and those of other records with its identifier, the first of which is
    /// marked with it.
    [[nodiscard]] std::vector<std::int64_t> rowsMarkedWithSelected() const;
    /// In catalogue order.
    [[nodiscard]] StationArray allFavorites() const;
    /// If the favourites' weather is switched on, requests the weather of the selected station and
    /// of all favourites.
    void getFavWeather();
    /// Whether that is switched on.
    [[nodiscard]] bool fetchesFavoriteWeather() const { return alwaysFavWeather_ == 1; }
    /// Requests the selected station's weather again, and the favourites' if that is switched on.
    /// Changes nothing else.
    void requestSelectedWeather();
    void saveFavorites();
    /// False if the last change of a mark could not be stored, as on a full disk.
    [[nodiscard]] bool keepsFavorites() const { return favoritesFile_.isKept(); }
    void loadFavorites();
    /// Sets a menu item's title and returns whether the item is enabled.
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
    /// Makes the parser's result the master.
    void publishParsed();
    void showzTble();
    void reloadTable();
    /// Publishes a new master, after it has taken over the favourites of the one that it replaces.
    /// May be called on any thread.
    void replaceMaster(std::shared_ptr<AviationWeatherStationCollection> collection);
    /// Makes the working collection a fresh copy of the master that shares its station records.
    void resetWorkingCollection();
    /// Counts the working collection's stations and reloads the table.
    void showWorkingCollection();
    [[nodiscard]] StationArray stationsOf(const browser::TableFilter& filter) const;
    /// Lists what a filter asks for; does nothing to the selection.
    void fillTable(const browser::TableFilter& filter);
    /// The same, and selects the selected station by its name.
    void showInTable(const browser::TableFilter& filter);
    /// The same, with the selected station selected again as after a search.
    void showAgain(const browser::TableFilter& filter);
    void showMap();
    void showChart();
    /// Does nothing unless the chart is shown.
    void loadChart(double latitude, double longitude);
    void setSelectionControlsEnabled(bool enabled);
    void describeSelection();
    /// Highlights the row of `station`, which was selected before the rows changed: the row of the
    /// same record, else of the same identifier, else none. The same record is only highlighted: no
    /// weather is requested, and the map stays.
    void selectAgain(const std::shared_ptr<AviationWeatherStation>& station);
    /// Selects a row and scrolls to it.
    void selectRow(std::int64_t row);
    /// Makes the highlighted row's station the selected one, if it is a different one.
    void settleSelection();
    /// Returns -1 if no row shows this station.
    [[nodiscard]] std::int64_t rowOf(const std::shared_ptr<AviationWeatherStation>& station) const;

    [[nodiscard]] FavoritesFile::Identifiers favoriteIdentifiers() const;
    [[nodiscard]] StationArray selectedAndFavorites() const;
    void updateWeather();
    /// Whether a cached reply is good enough, or the server must confirm that it is still current.
    enum class Freshness { asKept, revalidated };
    void requestWeather(StationArray stations, const std::string& metarText,
                        const std::string& tafText, Freshness freshness = Freshness::asKept);
    // These observers run on any thread, and pass the text to the handlers below on the main
    // thread.
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
    browser::TableFilter filter_;
    /// What the distance in force has replaced.
    browser::TableFilter beforeDistance_;
    /// Set while highlighting a row whose station is known to be the selected one.
    bool isSelectingAgain_ = false;
    FavoritesFile favoritesFile_;
    /// Favourites that the master lacks. Accessed only while the marks are locked.
    FavoritesFile::Identifiers unknownFavorites_;
    ReportPane metars_{outlets.metarBackField};
    ReportPane tafs_{outlets.tafBackFiled};
    std::vector<platform::NotificationCenter::Token> observers_;
    /// The last one runs the current parse; earlier ones stay until their parse has ended.
    std::vector<std::unique_ptr<platform::OperationQueue>> queues_;
};
