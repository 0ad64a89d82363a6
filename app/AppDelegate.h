// SPDX-License-Identifier: MIT
#pragma once

#include "app/Briefing.h"
#include "app/CatalogueKeeper.h"
#include "app/SCAboutWindowController.h"
#include "app/SCSaveOptionsSheetController.h"
#include "app/SLIBReleaseNotesWindowController.h"
#include "app/Windows.h"
#include "app/slibHelpWindow.h"
#include "browser/SCStationWindowController.h"
#include "mystations/SCMyStationsWindowController.h"
#include "platform/host/Host.h"
#include "platform/views/Outlet.h"
#include "reports/Store.h"

#include <memory>
#include <optional>
#include <string>

/// The program as a whole: which windows there are, and what the menus do with them. Main thread
/// only.
class AppDelegate {
public:
    /// Controls outside the windows; any that is left unset is absent.
    struct Outlets {
        platform::Outlet<platform::TextField> words{};
        platform::Outlet<platform::Button> saver{};
        platform::Outlet<platform::Button> viewer{};
        platform::Outlet<platform::Button> parserIt{};
        /// The menu item that switches the favourites' weather on and off.
        platform::Outlet<platform::MenuItem> favwe{};
        /// Kept: interface files connect it. Its choices are recorded, but change nothing that is
        /// saved.
        SCSaveOptionsSheetController* so = nullptr;
    };

    /// All are borrowed and must outlive the delegate.
    AppDelegate(platform::Host& host, reports::Store& reports, app::Windows& windows);
    ~AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    Outlets outlets;
    /// What `innerSave` saves.
    /// Kept: the main window saves its own collection, so nobody fills this one.
    std::shared_ptr<AviationWeatherStationCollection> masterCollection;
    /// A copy of `masterCollection`, stations included, as of the last `innerSave`.
    std::shared_ptr<AviationWeatherStationCollection> workingCollection;
    /// Where the user last chose to save, and the path written; absent if the panel was cancelled.
    std::optional<platform::URL> savehere;
    std::optional<std::string> savePath;
    std::shared_ptr<SCStationWindowController> sw;
    std::shared_ptr<SCMyStationsWindowController> mS;
    std::shared_ptr<SCAboutWindowController> ab;
    std::shared_ptr<slibHelpWindow> h;
    std::shared_ptr<SLIBReleaseNotesWindowController> releaseNotes;
    std::shared_ptr<app::CatalogueKeeper> keeper;
    std::shared_ptr<app::Briefing> briefing;

    /// Creates and shows the main window.
    void applicationDidFinishLaunching();
    /// Shows the release notes, once after each change of the program's version.
    void showReleaseNotesOnce();
    /// Saves favourites and settings. Called once, at the end of the run.
    void applicationWillTerminate();
    void openStations();
    void openMyStations();
    /// Shows a collection in the main window.
    void showTble(const std::shared_ptr<AviationWeatherStationCollection>& collection);
    /// Kept: the window opens afresh, whatever became of the last one. Every call creates a new
    /// one.
    void doAbout();
    void doHelp();
    void doReleaseNotes();
    void doBriefing();
    void doUpdateCatalogue();
    void doUseShippedCatalogue();
    /// Asks whether the list that the user has opened is to be the catalogue.
    void doUseAsMyCatalogue();
    /// Whether the catalogue that is shown was read from a list of the user's.
    [[nodiscard]] bool showsOpenedList() const;
    /// The actions of the about window's buttons, available without the window.
    void doEmailFeedback();
    void doGoToWebsite();
    /// Kept: interface files may name them as actions. They do nothing.
    void saveDocument() {}
    void dumb() {}
    void zzsaveoptionsDidEnd_returnCode(int returnCode);
    void innerSave();

private:
    void makeStationWindow();
    [[nodiscard]] std::shared_ptr<SCAboutWindowController> aboutLogic();
    void showCatalogueWindow();

    platform::Host& host_;
    reports::Store& reports_;
    app::Windows& windows_;
    // Each is destroyed before its controller.
    std::unique_ptr<platform::Window> stationWindow_;
    std::unique_ptr<platform::Window> myStationsWindow_;
    std::unique_ptr<platform::Window> aboutWindow_;
    std::unique_ptr<platform::Window> helpWindow_;
    std::unique_ptr<platform::Window> catalogueWindow_;
    std::unique_ptr<platform::Window> briefingWindow_;
};
