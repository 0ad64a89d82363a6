// SPDX-License-Identifier: MIT
#include "desktop/StationMenus.h"

#include "browser/SCStationWindowController.h"

#include <QApplication>
#include <QEvent>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

#include <utility>

namespace desktop {

StationMenus::StationMenus(QMainWindow& window, SCStationWindowController& controller,
                           QComboBox& distances, Actions actions)
    : window_(window), controller_(controller), actions_(std::move(actions)) {
    QMenu& program = *window.menuBar()->addMenu(tr("Nosi&g"));
    QAction& quit = *program.addAction(tr("&Quit"));
    quit.setShortcut(QKeySequence::Quit);
    quit.setMenuRole(QAction::QuitRole);
    connect(&quit, &QAction::triggered, qApp, &QCoreApplication::quit);

    QMenu& stations = *window.menuBar()->addMenu(tr("S&tations"));
    QAction& find = *stations.addAction(tr("&Find"));
    find.setShortcut(QKeySequence::Find);
    connect(&find, &QAction::triggered, this, [this] { actions_.find(); });
    stations.addSeparator();

    const auto add = [this](QMenu& menu, const QString& title, std::string_view operation,
                            const QKeySequence& shortcut, auto chosen) -> MenuEntry& {
        QAction& entry = *menu.addAction(title);
        entry.setShortcut(shortcut);
        connect(&entry, &QAction::triggered, this, chosen);
        return entries_.emplace_back(entry, operation);
    };
    add(stations, tr("Make Favorite"), "favMenuItem", QKeySequence(Qt::CTRL | Qt::Key_D), [this] {
        controller_.favMenuItem();
        actions_.favoritesChanged();
    });
    add(stations, tr("Show favorites"), "showFavsMenu",
        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_D), [this] { controller_.showFavsMenu(); });
    alwaysFavItem_ =
        &add(stations, tr("Always Show Favorites' Weather"), "alwaysShowFavWeatherMenu", {},
             [this] { controller_.alwaysShowFavWeatherMenu(*alwaysFavItem_); });
    alwaysFavItem_->entry().setCheckable(true);
    QMenu& near = *stations.addMenu(tr("&Near the Selected Station"));
    for (int i = 0; i < distances.count(); ++i) {
        add(near, distances.itemText(i), "geMeterDistChanged", {}, [this, i, &distances] {
            distances.setCurrentIndex(i);
            controller_.geMeterDistChanged();
        });
    }
    for (QMenu* menu : {&stations, &near}) {
        connect(menu, &QMenu::aboutToShow, this, [this] { validate(); });
    }
    qApp->installEventFilter(this);
}

void StationMenus::validate() {
    for (MenuEntry& entry : entries_) {
        entry.entry().setEnabled(controller_.validateMenuItem(entry));
    }
}

bool StationMenus::eventFilter(QObject* watched, QEvent* event) {
    // Sent before the toolkit looks for the shortcut of a key.
    if (event->type() == QEvent::ShortcutOverride && window_.isActiveWindow()) {
        validate();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace desktop
