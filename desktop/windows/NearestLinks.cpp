// SPDX-License-Identifier: MIT
#include "desktop/windows/NearestLinks.h"

#include "browser/SCStationWindowController.h"
#include "desktop/controls/LinkButton.h"
#include "desktop/text/Text.h"

#include <QAction>
#include <QMenu>
#include <QTimer>

#include <chrono>

namespace desktop {

namespace {

using namespace std::chrono_literals;

/// Reports of single stations often come in groups.
constexpr auto groupedFor = 100ms;

QString heading(reports::Kind kind) {
    return kind == reports::Kind::metar ? QStringLiteral("Nearest METAR: ")
                                        : QStringLiteral("Nearest TAF: ");
}

QString words(reports::Kind kind, const weather::NearestReport& found, platform::Date now) {
    return heading(kind) + isolated(shownText(weather::stationInWords(*found.neighbor.station))) +
           QStringLiteral(", ") + shownText(weather::wayInWords(found, now));
}

QString reasonForNone(const AviationWeatherStation& station) {
    const platform::Location place{station.latitude, station.longitude};
    return place.isValid() ? QStringLiteral("no other station is known to send one")
                           : QStringLiteral("this station has no valid position");
}

} // namespace

NearestLinks::NearestLinks(const Sources& sources, const Places& places)
    : QObject(&places.metar),
      sources_(sources),
      nearest_(sources.store, sources.world),
      links_{{{reports::Kind::metar, places.metar}, {reports::Kind::taf, places.taf}}},
      soon_(new QTimer(this)) {
    soon_->setSingleShot(true);
    soon_->setInterval(groupedFor);
    connect(soon_, &QTimer::timeout, this, [this] { refresh(); });
    for (const char* change : {reports::Store::didChange, weather::WorldWeather::didChange}) {
        changes_.push_back(sources.host.notificationCenter.addObserver(
            change, [this, &host = sources.host,
                     alive = std::weak_ptr(alive_)](const platform::Notification&) {
                host.mainThread.perform(alive, [this] { refreshSoon(); });
            }));
    }
    for (Link& link : links_) {
        link.button.hide();
        connect(&link.button, &QPushButton::clicked, this,
                [this, &link] { goTo(std::string(link.identifier)); });
    }
}

void NearestLinks::refreshSoon() {
    if (!soon_->isActive()) {
        soon_->start();
    }
}

void NearestLinks::refresh() {
    soon_->stop();
    const auto station = sources_.controller.selectedStation;
    const platform::Date now = sources_.host.clock.now();
    bool tellsAge = false;
    for (Link& link : links_) {
        const bool isLacking = station && nearest_.isLacking(*station, link.kind, now);
        const auto found = isLacking ? from(*station, link.kind) : std::nullopt;
        if (found) {
            link.identifier = found->neighbor.station->ICAO.value_or("");
            link.button.setWords(words(link.kind, *found, now));
            tellsAge |= found->reported.has_value();
        }
        link.button.setVisible(found.has_value());
    }
    if (!tellsAge) {
        minutes_.reset();
    } else if (!minutes_) {
        minutes_ = sources_.host.timers.scheduleRepeating(1min, [this] { refresh(); });
    }
}

std::optional<weather::NearestReport> NearestLinks::from(const AviationWeatherStation& station,
                                                         reports::Kind kind) const {
    const auto master = sources_.controller.masterCollection();
    return master && master->stations
               ? nearest_.from(station, kind, *master->stations, sources_.host.clock.now())
               : std::nullopt;
}

void NearestLinks::addTo(QMenu& menu, const AviationWeatherStation& station) {
    for (const Link& link : links_) {
        const auto found = from(station, link.kind);
        QString text = found ? words(link.kind, *found, sources_.host.clock.now())
                             : heading(link.kind) + reasonForNone(station);
        QAction* entry = menu.addAction(text.replace(u'&', QStringLiteral("&&")));
        entry->setEnabled(found.has_value());
        if (found) {
            connect(entry, &QAction::triggered, this,
                    [this, identifier = found->neighbor.station->ICAO.value_or("")] {
                        goTo(identifier);
                    });
        }
    }
}

void NearestLinks::goTo(const std::string& identifier) {
    sources_.controller.selectStation(identifier);
}

} // namespace desktop
