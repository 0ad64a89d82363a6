// SPDX-License-Identifier: MIT
#include "desktop/windows/ProgramMenus.h"

#include "app/AppDelegate.h"

#include <QApplication>
#include <QEvent>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

#include <utility>

namespace desktop {

ProgramMenus::ProgramMenus() {
    addProgramEntries();
    addStationEntries();
    addWindowEntries();
    qApp->installEventFilter(this);
}

void ProgramMenus::actOn(AppDelegate& delegate) {
    delegate_ = &delegate;
    delegate.outlets.favwe = alwaysFavItem_;
}

QAction& ProgramMenus::add(std::vector<QAction*>& menu, const QString& title,
                           const QKeySequence& shortcut, std::function<void()> chosen,
                           Qt::ConnectionType connection) {
    auto* entry = new QAction(title, this);
    entry->setShortcut(shortcut);
    connect(entry, &QAction::triggered, this, std::move(chosen), connection);
    menu.push_back(entry);
    return *entry;
}

MenuEntry& ProgramMenus::addValidated(std::vector<QAction*>& menu, const QString& title,
                                      std::string_view operation, const QKeySequence& shortcut,
                                      std::function<void()> chosen) {
    return validated_.emplace_back(add(menu, title, shortcut, std::move(chosen)), operation);
}

void ProgramMenus::addProgramEntries() {
    // Queued, because a new about window replaces the old one, whose menu this may come from: the
    // old one must have finished with its menu by then.
    QAction& about = add(
        program_, QStringLiteral("&About Nosig"), {}, [this] { delegate_->doAbout(); },
        Qt::QueuedConnection);
    about.setMenuRole(QAction::AboutRole);
    QAction& quit =
        add(program_, QStringLiteral("&Quit"), QKeySequence::Quit, &QCoreApplication::quit);
    quit.setMenuRole(QAction::QuitRole);
    add(help_, QStringLiteral("Nosig &Help"), QKeySequence::HelpContents,
        [this] { delegate_->doHelp(); });
    add(help_, QStringLiteral("&Release Notes"), {}, [this] { delegate_->doReleaseNotes(); });
    add(help_, QStringLiteral("Send &Feedback…"), {}, [this] { delegate_->doEmailFeedback(); });
    add(help_, QStringLiteral("Nosig on the We&b"), {}, [this] { delegate_->doGoToWebsite(); });
    help_.push_back(&about);
}

void ProgramMenus::addStationEntries() {
    add(stations_, QStringLiteral("&Find"), QKeySequence::Find, [this] {
        delegate_->openStations();
        if (stationWindow_.find) {
            stationWindow_.find();
        }
    });
    addValidated(stations_, QStringLiteral("Make Favorite"), "favMenuItem", Qt::CTRL | Qt::Key_D,
                 [this] {
                     delegate_->sw->favMenuItem();
                     tellOfFavorites();
                 });
    addValidated(stations_, QStringLiteral("Show favorites"), "showFavsMenu",
                 Qt::CTRL | Qt::SHIFT | Qt::Key_D, [this] { delegate_->sw->showFavsMenu(); });
    alwaysFavItem_ = &addValidated(stations_, QStringLiteral("Always Show Favorites' Weather"),
                                   "alwaysShowFavWeatherMenu", {}, [this] {
                                       delegate_->sw->alwaysShowFavWeatherMenu(*alwaysFavItem_);
                                       tellOfFavorites();
                                   });
    alwaysFavItem_->entry().setCheckable(true);
    worldWeather_ = &add(stations_, QStringLiteral("Weather of the &World"),
                         Qt::CTRL | Qt::SHIFT | Qt::Key_W, [] {});
    worldWeather_->setCheckable(true);
    add(stations_, QStringLiteral("&Briefing…"), Qt::CTRL | Qt::Key_B,
        [this] { delegate_->doBriefing(); });
    favoriteNotices_ = &add(stations_, QStringLiteral("No&tify When Favorites Worsen"), {}, [] {});
    favoriteNotices_->setCheckable(true);
    largerChart_ = &add(stations_, QStringLiteral("Open &Larger Chart"), Qt::CTRL | Qt::Key_L,
                        [this] { stationWindow_.openLargerChart(); });
    add(stations_, QStringLiteral("&Update Catalogue"), {},
        [this] { delegate_->doUpdateCatalogue(); });
    useAsMine_ = &add(stations_, QStringLiteral("Use as My &Catalogue…"), {},
                      [this] { delegate_->doUseAsMyCatalogue(); });
    useShipped_ = &add(stations_, QStringLiteral("Use S&hipped Catalogue"), {},
                       [this] { delegate_->doUseShippedCatalogue(); });
    const QString distances[] = {
        QStringLiteral("Within 10 Miles"), QStringLiteral("Within 25 Miles"),
        QStringLiteral("Within 50 Miles"), QStringLiteral("Within 100 Miles")};
    for (int i = 0; i < 4; ++i) {
        addValidated(near_, distances[i], "geMeterDistChanged", {}, [this, i] {
            delegate_->sw->outlets.distButton->selectItem(i);
            delegate_->sw->geMeterDistChanged();
        });
    }
}

void ProgramMenus::tellOfFavorites() {
    if (stationWindow_.favoritesChanged) {
        stationWindow_.favoritesChanged();
    }
}

void ProgramMenus::addWindowEntries() {
    add(windows_, QStringLiteral("&Stations"), Qt::CTRL | Qt::Key_1,
        [this] { delegate_->openStations(); });
    add(windows_, QStringLiteral("&My Stations"), Qt::CTRL | Qt::Key_2,
        [this] { delegate_->openMyStations(); });
    add(windows_, QStringLiteral("&Close Window"), Qt::CTRL | Qt::Key_W, [] {
        if (QWidget* window = QApplication::activeWindow()) {
            window->close();
        }
    });
}

void ProgramMenus::addTo(QMainWindow& window) {
    const auto addMenu = [&](const QString& title, const std::vector<QAction*>& entries) {
        QMenu* menu = window.menuBar()->addMenu(title);
        menu->addActions(QList<QAction*>(entries.begin(), entries.end()));
        connect(menu, &QMenu::aboutToShow, this, [this] { validate(); });
        return menu;
    };
    addMenu(QStringLiteral("Nosi&g"), program_);
    QMenu* stations = addMenu(QStringLiteral("&Stations"), stations_);
    stations->insertSeparator(stations_[1]);
    auto* near = new QMenu(QStringLiteral("&Near the Selected Station"), stations);
    // The last three are about the catalogue.
    QAction* const update = stations_[stations_.size() - 3];
    stations->insertMenu(update, near);
    stations->insertSeparator(update);
    near->addActions(QList<QAction*>(near_.begin(), near_.end()));
    connect(near, &QMenu::aboutToShow, this, [this] { validate(); });
    addMenu(QStringLiteral("&Windows"), windows_);
    addMenu(QStringLiteral("&Help"), help_);
}

void ProgramMenus::setStationWindowActions(StationWindowActions actions) {
    stationWindow_ = std::move(actions);
}

void ProgramMenus::validate() {
    for (MenuEntry& entry : validated_) {
        entry.entry().setEnabled(delegate_ && delegate_->sw &&
                                 delegate_->sw->validateMenuItem(entry));
    }
    // Not a command of the main window's controller, whose validation would refuse it.
    largerChart_->setEnabled(stationWindow_.hasLargerChart && stationWindow_.hasLargerChart());
    useAsMine_->setEnabled(delegate_ && delegate_->showsOpenedList());
    useShipped_->setEnabled(delegate_ && delegate_->keeper->hasOwn());
}

bool ProgramMenus::eventFilter(QObject* watched, QEvent* event) {
    // Sent before the toolkit looks up a key's shortcut.
    if (event->type() == QEvent::ShortcutOverride) {
        validate();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace desktop
