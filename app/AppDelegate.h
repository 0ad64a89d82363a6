// SPDX-License-Identifier: MIT
#pragma once

#include "app/SCAboutWindowController.h"
#include "app/SCSaveOptionsSheetController.h"
#include "app/SLIBReleaseNotesWindowController.h"
#include "app/Windows.h"
#include "app/slibHelpWindow.h"
#include "browser/SCStationWindowController.h"
#include "mystations/SCMyStationsWindowController.h"
#include "platform/host/Host.h"
#include "platform/views/Outlet.h"

#include <memory>
#include <optional>
#include <string>

/// The program as a whole: which windows there are, and what the menus do with them. Main thread
/// only.
class AppDelegate {
public:
    /// Controls outside the windows; one that is left out is absent.
    struct Outlets {
        platform::Outlet<platform::TextField> words{};
        platform::Outlet<platform::Button> saver{};
        platform::Outlet<platform::Button> viewer{};
        platform::Outlet<platform::Button> parserIt{};
        /// The entry that switches the favourites' weather on and off.
        platform::Outlet<platform::MenuItem> favwe{};
        /// Its choices are recorded and change nothing that is saved, as intended.
        SCSaveOptionsSheetController* so = nullptr;
    };

    /// Both are borrowed and outlive the delegate.
    AppDelegate(platform::Host& host, app::Windows& windows);
    ~AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    Outlets outlets;
    /// What `innerSave` saves; nobody fills it, as intended: the main window saves its own.
    std::shared_ptr<AviationWeatherStationCollection> masterCollection;
    /// A copy of it, stations included, as of the last `innerSave`.
    std::shared_ptr<AviationWeatherStationCollection> workingCollection;
    /// The user's last answer to where to save, and the path written; absent when cancelled.
    std::optional<platform::URL> savehere;
    std::optional<std::string> savePath;
    std::shared_ptr<SCStationWindowController> sw;
    std::shared_ptr<SCMyStationsWindowController> mS;
    std::shared_ptr<SCAboutWindowController> ab;
    std::shared_ptr<slibHelpWindow> h;
    std::shared_ptr<SLIBReleaseNotesWindowController> releaseNotes;

    /// Makes and shows the main window.
    void applicationDidFinishLaunching();
    /// Shows what is new, once after each change of the program's version.
    void showReleaseNotesOnce();
    /// Stores what outlives the run; called once, at the end of it.
    void applicationWillTerminate();
    void openStations();
    void openMyStations();
    /// Shows a collection in the main window.
    void showTble(const std::shared_ptr<AviationWeatherStationCollection>& collection);
    /// Makes a new about window at every call, as intended.
    void doAbout();
    void doHelp();
    void doReleaseNotes();
    /// What the about window's buttons do, without the window.
    void doEmailFeedback();
    void doGoToWebsite();
    /// Do nothing, as intended.
    void saveDocument() {}
    void dumb() {}
    void zzsaveoptionsDidEnd_returnCode(int returnCode);
    void innerSave();

private:
    void makeStationWindow();
    [[nodiscard]] std::shared_ptr<SCAboutWindowController> aboutLogic();

    platform::Host& host_;
    app::Windows& windows_;
    // Each goes before its controller.
    std::unique_ptr<platform::Window> stationWindow_;
    std::unique_ptr<platform::Window> myStationsWindow_;
    std::unique_ptr<platform::Window> aboutWindow_;
    std::unique_ptr<platform::Window> helpWindow_;
};
