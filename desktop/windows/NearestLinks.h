// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"
#include "reports/Store.h"
#include "weather/NearestReports.h"
#include "weather/WorldWeather.h"

#include <QObject>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QMenu;
class QTimer;
class SCStationWindowController;

namespace desktop {

class LinkButton;

/// The ways to the nearest stations with a METAR and with a TAF: links below the line of the
/// selected station, each only for what that station lacks itself, and two entries in the menu of a
/// row. Each goes to its station by selecting it.
class NearestLinks final : public QObject {
public:
    /// Borrowed.
    struct Sources {
        platform::Host& host;
        reports::Store& store;
        weather::WorldWeather& world;
        SCStationWindowController& controller;
    };
    /// Borrowed as well; the first of them owns this object.
    struct Places {
        LinkButton& metar;
        LinkButton& taf;
    };

    NearestLinks(const Sources& sources, const Places& places);

    /// Renews the links at once, as for another selected station.
    void refresh();
    /// Renews them soon, as for other stations. New reports are noticed without.
    void refreshSoon();
    /// Adds an entry for each kind of report; one that leads nowhere says why.
    void addTo(QMenu& menu, const AviationWeatherStation& station);

private:
    struct Link {
        reports::Kind kind;
        LinkButton& button;
        /// Where it goes, as the catalogue has it.
        std::string identifier = {};
    };

    [[nodiscard]] std::optional<weather::NearestReport> from(const AviationWeatherStation& station,
                                                             reports::Kind kind) const;
    void goTo(const std::string& identifier);

    Sources sources_;
    weather::NearestReports nearest_;
    std::array<Link, 2> links_;
    QTimer* soon_;
    /// Runs while a link tells an age.
    std::unique_ptr<platform::Timer> minutes_;
    /// Work for this object is dropped once it is gone.
    std::shared_ptr<void> alive_ = std::make_shared<int>();
    std::vector<platform::NotificationCenter::Token> changes_;
};

} // namespace desktop
