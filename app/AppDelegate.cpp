// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"

#include "catalogue/Packages.h"

namespace {

/// The version of the last run.
constexpr const char* versionKey = "windows/version";

void bringToFront(platform::Window& window) {
    window.showWindow();
    window.makeKey();
}

} // namespace

AppDelegate::AppDelegate(platform::Host& host, reports::Store& reports, app::Windows& windows)
    : host_(host), reports_(reports), windows_(windows) {
    keeper = app::CatalogueKeeper::make(
        host, {.show = [this](const auto& collection) { sw->showCatalogue(collection); },
               .favorites = [this] { return sw->allFavorites(); },
               .say = [this] { showCatalogueWindow(); }});
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    outlets.saver->setEnabled(false);
    outlets.viewer->setEnabled(false);
    makeStationWindow();
    bringToFront(*stationWindow_);
}

void AppDelegate::showReleaseNotesOnce() {
    const auto before = host_.userDefaults.objectForKey(versionKey);
    host_.userDefaults.setObject(host_.bundle.infoValue("CFBundleShortVersionString").value_or(""),
                                 versionKey);
    // Compared as stored, since the settings may not store it as text.
    const bool isFirstRun = platform::isAbsent(before);
    if (!isFirstRun && before != host_.userDefaults.objectForKey(versionKey)) {
        doReleaseNotes();
    }
}

void AppDelegate::makeStationWindow() {
    stationWindow_.reset();
    sw = SCStationWindowController::initWithWindowNibName(host_, "SCStationWindowController");
    stationWindow_ = windows_.stationWindow(*sw);
    sw->outlets.alwaysFavItem = outlets.favwe;
    sw->windowDidLoad();
}

void AppDelegate::applicationWillTerminate() {
    if (sw) {
        sw->quitting();
    }
}

void AppDelegate::openStations() {
    if (stationWindow_) {
        bringToFront(*stationWindow_);
    }
}

void AppDelegate::openMyStations() {
    if (!mS) {
        mS = SCMyStationsWindowController::initWithWindowNibName(host_,
                                                                 "SCMyStationsWindowController");
        myStationsWindow_ = windows_.myStationsWindow(*mS);
        mS->windowDidLoad();
    }
    bringToFront(*myStationsWindow_);
}

void AppDelegate::showTble(const std::shared_ptr<AviationWeatherStationCollection>& collection) {
    if (!sw) {
        makeStationWindow();
    }
    sw->addCollection(collection);
    bringToFront(*stationWindow_);
}

void AppDelegate::doAbout() {
    aboutWindow_.reset();
    ab = aboutLogic();
    aboutWindow_ = windows_.aboutWindow(*ab);
    bringToFront(*aboutWindow_);
}

std::shared_ptr<SCAboutWindowController> AppDelegate::aboutLogic() {
    return SCAboutWindowController::initWithWindowNibName(host_, "SCAboutWindowController");
}

void AppDelegate::doHelp() {
    if (!h) {
        h = slibHelpWindow::initWithWindowNibName(host_, "slibHelpWindow");
        helpWindow_ = windows_.helpWindow(*h);
        h->awakeFromNib();
    }
    bringToFront(*helpWindow_);
}

void AppDelegate::doReleaseNotes() {
    if (!releaseNotes) {
        releaseNotes = SLIBReleaseNotesWindowController::initWithWindowNibName(
            host_, windows_, "SLIBReleaseNotesWindowController");
    }
    releaseNotes->bringToFront();
}

void AppDelegate::doBriefing() {
    if (!briefing) {
        briefing = std::make_shared<app::Briefing>(
            host_, reports_,
            app::Briefing::Sources{.catalogue = [this] { return sw->masterCollection(); },
                                   .favorites = [this] { return sw->allFavorites(); }});
        briefingWindow_ = windows_.briefingWindow(*briefing);
    }
    bringToFront(*briefingWindow_);
}

void AppDelegate::doUpdateCatalogue() {
    keeper->update();
}

void AppDelegate::doUseShippedCatalogue() {
    keeper->useShipped();
}

void AppDelegate::doUseAsMyCatalogue() {
    if (showsOpenedList()) {
        keeper->offerToKeep(sw->masterCollection());
    }
}

bool AppDelegate::showsOpenedList() const {
    const auto master = sw ? sw->masterCollection() : nullptr;
    return master && master->fromURL && master->fromURL->text.starts_with("file:") &&
           sw->hasCatalogue();
}

void AppDelegate::showCatalogueWindow() {
    if (!catalogueWindow_) {
        catalogueWindow_ = windows_.catalogueWindow(*keeper);
    }
    catalogueWindow_->showWindow();
}

void AppDelegate::doEmailFeedback() {
    aboutLogic()->doEmailFeedback();
}

void AppDelegate::doGoToWebsite() {
    aboutLogic()->doGoToWebsite();
}

void AppDelegate::zzsaveoptionsDidEnd_returnCode(int returnCode) {
    if (returnCode == 1) {
        innerSave();
    }
}

void AppDelegate::innerSave() {
    workingCollection = masterCollection ? masterCollection->copyWithZone() : nullptr;
    catalogue::savePackage(host_, masterCollection, savehere, savePath);
}
