// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"
#include "catalogue/NamedStations.h"
#include "platform/host/Host.h"
#include "reports/Briefing.h"
#include "reports/Store.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace app {

/// The weather of several stations on one page: which they are, what the data server is asked for,
/// and what the page says. Main thread only.
///
/// What the store knows of the stations is on the page, whoever asked for it, and nothing of any
/// other station. A list that is shown is asked for at once, in one request for its METARs and one
/// for its TAFs, each of the stations whose report is missing (`reports::isMissing`). Requests for
/// an earlier list give way to it. Nothing else is ever asked for.
class Briefing {
public:
    /// What the page is made from.
    struct Sources {
        /// May return null.
        std::function<std::shared_ptr<const AviationWeatherStationCollection>()> catalogue;
        std::function<StationArray()> favorites;
    };

    /// Host and store are borrowed.
    Briefing(platform::Host& host, reports::Store& store, Sources sources);
    Briefing(const Briefing&) = delete;
    Briefing& operator=(const Briefing&) = delete;

    /// The list as it was written last; remembered in the settings.
    [[nodiscard]] const std::string& text() const { return text_; }
    /// Shows the stations that a text lists (`catalogue::namedStations`).
    void show(std::string text);
    /// Shows the favourites, which become the text. Without any, only says so.
    void showFavorites();

    /// The page as of now. Before the first list, it says what to do.
    [[nodiscard]] std::vector<reports::BriefingLine> page() const;
    /// The page as text, and the time that belongs on what is made of it.
    [[nodiscard]] std::string asText() const;
    [[nodiscard]] std::string time() const;
    /// Whether it has any stations.
    [[nodiscard]] bool hasStations() const { return !list_.stations.empty(); }

    /// Called when the page may have changed; set by the window.
    std::function<void()> changed = [] {};

private:
    void showList(catalogue::NamedStations list, std::string words);
    void ask(reports::Kind kind);
    [[nodiscard]] reports::Known known(const std::string& station) const;

    platform::Host& host_;
    reports::Store& store_;
    Sources sources_;
    std::string text_;
    catalogue::NamedStations list_;
    /// What the page says in place of stations.
    std::string words_;
    /// Of the requests for this list.
    std::shared_ptr<std::atomic<bool>> superseded_ = std::make_shared<std::atomic<bool>>(false);
    std::unique_ptr<platform::Timer> minutes_;
    /// Whether a change of the store is on its way to the main thread. Work for this object is
    /// dropped once it is gone.
    std::shared_ptr<std::atomic<bool>> isStale_ = std::make_shared<std::atomic<bool>>(false);
    platform::NotificationCenter::Token storeChanges_;
};

} // namespace app
