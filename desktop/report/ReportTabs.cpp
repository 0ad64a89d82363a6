// SPDX-License-Identifier: MIT
#include "desktop/report/ReportTabs.h"

#include "desktop/report/FavoriteReports.h"
#include "desktop/report/TrendView.h"
#include "reports/Description.h"
#include "weather/DataServerRequests.h"

#include <QTabWidget>
#include <QTimer>

#include <chrono>
#include <utility>

namespace desktop {

namespace {

using namespace std::chrono_literals;

/// Ages are told in minutes, and none is to be told a minute late.
constexpr auto ageStep = 20s;
/// Replies often come in groups.
constexpr auto groupedFor = 30ms;
/// Only a station that the user stays at is asked for its last hours.
constexpr auto stay = 600ms;

} // namespace

ReportTabs::ReportTabs(QTabWidget& tabs, Sources sources)
    : QObject(&tabs),
      tabs_(tabs),
      sources_(std::move(sources)),
      page_(new ReportPage),
      trend_(new TrendView),
      soon_(new QTimer(this)),
      trendSoon_(new QTimer(this)),
      minutes_(sources_.host.timers.scheduleRepeating(ageStep, [this] { refresh(); })),
      changes_(sources_.host.notificationCenter.addObserver(
          reports::Store::didChange, [this, &host = sources_.host, alive = std::weak_ptr(alive_)](
                                         const platform::Notification&) {
              host.mainThread.perform(alive, [this] { refreshSoon(); });
          })) {
    page_->setObjectName(QStringLiteral("report"));
    trend_->setObjectName(QStringLiteral("trend"));
    tabs.insertTab(0, page_, QStringLiteral("R&eport"));
    tabs.addTab(trend_, QStringLiteral("Tren&d"));
    tabs.setCurrentIndex(0);
    page_->favorites().chosen = sources_.select;
    soon_->setSingleShot(true);
    soon_->setInterval(groupedFor);
    connect(soon_, &QTimer::timeout, this, [this] { refresh(); });
    trendSoon_->setSingleShot(true);
    trendSoon_->setInterval(stay);
    connect(trendSoon_, &QTimer::timeout, this, [this] { askForTrend(); });
    connect(&tabs, &QTabWidget::currentChanged, this, [this] { refreshTrend(); });
    refresh();
}

void ReportTabs::showStation(Station station) {
    station_ = std::move(station);
    refresh();
}

void ReportTabs::askAgain() {
    asked_.erase(station_.identifier);
    refreshTrend();
}

void ReportTabs::refreshSoon() {
    if (!soon_->isActive()) {
        soon_->start();
    }
}

void ReportTabs::refresh() {
    const platform::Date now = sources_.host.clock.now();
    ReportPage::Content content{station_.identifier, station_.description, {}, {}, now};
    if (!station_.identifier.empty()) {
        content.reports = sources_.store.reportsOf(station_.identifier);
        content.status = reports::statusInWords(content.reports, station_.identifier,
                                                weather::dataServer(sources_.host), now);
    } else if (!station_.description.empty()) {
        content.status = "This station has no identifier by which it could be asked for.";
    }
    page_->show(content);
    std::vector<FavoriteReports::Line> lines;
    for (std::string& identifier : sources_.favorites()) {
        auto metar = sources_.store.reportsOf(identifier).metar;
        lines.push_back({std::move(identifier), std::move(metar)});
    }
    page_->favorites().show(lines, now);
    refreshTrend();
}

bool ReportTabs::showsTrend() const {
    return tabs_.currentWidget() == trend_;
}

void ReportTabs::refreshTrend() {
    trendSoon_->stop();
    if (!showsTrend()) {
        return;
    }
    const std::string& station = station_.identifier;
    if (station.empty()) {
        trend_->setReports({}, sources_.host.clock.now());
        return;
    }
    if (!asked_.contains(station)) {
        trendSoon_->start();
    }
    sources_.store.history(
        station, [this, station, &host = sources_.host,
                  alive = std::weak_ptr(alive_)](std::vector<reports::Metar> metars) {
            host.mainThread.perform(alive, [this, station, metars = std::move(metars)]() mutable {
                if (station == station_.identifier) {
                    trend_->setReports(std::move(metars), sources_.host.clock.now());
                }
            });
        });
}

void ReportTabs::askForTrend() {
    if (!showsTrend() || !tabs_.isVisible() || !asked_.insert(station_.identifier).second) {
        return;
    }
    sources_.host.urlSessions.startDataTask(
        {weather::historyRequest(sources_.host, station_.identifier)},
        [](const std::optional<platform::Data>&) {});
}

QString ReportTabs::chosen() const {
    return tabs_.currentWidget()->objectName();
}

void ReportTabs::choose(const QString& name) {
    for (int index = 0; index < tabs_.count(); ++index) {
        if (tabs_.widget(index)->objectName() == name) {
            tabs_.setCurrentIndex(index);
        }
    }
}

} // namespace desktop
