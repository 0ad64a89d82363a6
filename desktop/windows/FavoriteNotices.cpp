// SPDX-License-Identifier: MIT
#include "desktop/windows/FavoriteNotices.h"

#include "browser/SCStationWindowController.h"
#include "desktop/text/Text.h"
#include "desktop/windows/ProgramWindow.h"

#include <QAction>
#include <QLabel>

namespace desktop {

FavoriteNotices::FavoriteNotices(const Sources& sources, const Places& places)
    : QObject(&places.window),
      places_(places),
      watch_(
          sources.host, sources.store, sources.world,
          {.favorites = [&controller = sources.controller] { return controller.allFavorites(); },
           .fetchesFavorites =
               [&controller = sources.controller] { return controller.fetchesFavoriteWeather(); },
           .chosen =
               [&window = places.window,
                &controller = sources.controller](const std::string& identifier) {
                   window.showWindow();
                   window.makeKey();
                   controller.selectStation(identifier);
               }}),
      changes_(sources.host.notificationCenter.addObserver(
          weather::FavoriteWatch::didChange,
          [this, &host = sources.host,
           alive = std::weak_ptr(alive_)](const platform::Notification&) {
              host.mainThread.perform(alive, [this] { showState(); });
          })) {
    places_.entry.setChecked(watch_.isOn());
    connect(&places_.entry, &QAction::toggled, this, [this](bool on) {
        watch_.setOn(on);
        showState();
    });
    showState();
}

void FavoriteNotices::showState() {
    places_.status.setText(shownText(watch_.status()));
    places_.status.setVisible(watch_.isOn());
}

} // namespace desktop
