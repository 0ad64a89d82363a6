// SPDX-License-Identifier: MIT
#include "desktop/windows/WorldSwitch.h"

#include "desktop/text/Text.h"
#include "desktop/windows/TableWithMap.h"

#include <QAction>
#include <QEvent>
#include <QLabel>
#include <QMainWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include <chrono>

namespace desktop {

namespace {

using namespace std::chrono_literals;

/// Reports of single stations often come in groups.
constexpr auto groupedFor = 100ms;

} // namespace

WorldSwitch::WorldSwitch(const Sources& sources, const Places& places)
    : QObject(&places.window),
      sources_(sources),
      places_(places),
      reportsSoon_(new QTimer(this)),
      changes_(sources.host.notificationCenter.addObserver(
          weather::WorldWeather::didChange,
          [this, &host = sources.host,
           alive = std::weak_ptr(alive_)](const platform::Notification&) {
              host.mainThread.perform(alive, [this] { showState(); });
          })) {
    QSizePolicy keepsItsPlace = places_.working.sizePolicy();
    keepsItsPlace.setRetainSizeWhenHidden(true);
    places_.working.setSizePolicy(keepsItsPlace);
    reportsSoon_->setSingleShot(true);
    reportsSoon_->setInterval(groupedFor);
    connect(reportsSoon_, &QTimer::timeout, this, [this] { showReports(); });
    connect(&places_.entry, &QAction::toggled, this, [this](bool on) { turn(on); });
    connect(&places_.button, &QPushButton::toggled, this, [this](bool on) { turn(on); });
    places_.window.installEventFilter(this);
    turn(sources_.world.isOn());
}

void WorldSwitch::turn(bool on) {
    places_.entry.setChecked(on);
    places_.button.setChecked(on);
    sources_.world.setOn(on);
    minutes_ =
        on ? sources_.host.timers.scheduleRepeating(1min, [this] { showReports(); }) : nullptr;
    places_.stations.table.setWeather(
        on ? std::optional(
                 StationTable::Weather{[&store = sources_.store](const std::string& identifier) {
                                           return store.reportsOf(identifier).metar;
                                       },
                                       [&clock = sources_.host.clock] { return clock.now(); }})
           : std::nullopt);
    showState();
    showReports();
}

void WorldSwitch::showState() {
    places_.status.setText(shownText(sources_.world.status()));
    places_.status.setVisible(sources_.world.isOn());
    places_.working.setVisible(sources_.world.arrived().has_value());
    if (sources_.world.isOn() && !reportsSoon_->isActive()) {
        reportsSoon_->start();
    }
}

void WorldSwitch::showReports() {
    TableWithMap& stations = places_.stations;
    if (!sources_.world.isOn()) {
        stations.mapView.setWeather({}, {});
        return;
    }
    stations.table.weatherChanged();
    stations.mapView.setWeather(
        [&store = sources_.store,
         held = std::shared_ptr<const reports::Metar>()](const std::string& identifier) mutable {
            held = store.reportsOf(identifier).metar;
            return held.get();
        },
        sources_.host.clock.now());
}

bool WorldSwitch::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show || event->type() == QEvent::Hide ||
        event->type() == QEvent::WindowStateChange) {
        sources_.world.setSeen(event->type() != QEvent::Hide && places_.window.isVisible() &&
                               !places_.window.isMinimized());
    }
    return QObject::eventFilter(watched, event);
}

} // namespace desktop
