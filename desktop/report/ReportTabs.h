// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/report/ReportPage.h"
#include "platform/host/Host.h"
#include "reports/Store.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

class QTabWidget;
class QTimer;

namespace desktop {

class TrendView;

/// The tabs "Report" and "Trend" on either side of the one that is there: what the store knows of
/// the selected station, always of that one alone, and renewed when a report comes or time passes.
/// Main thread only.
class ReportTabs final : public QObject {
public:
    struct Station {
        /// As reports name it; empty for a station without one.
        std::string identifier;
        /// The station in full.
        std::string description;
    };
    /// Borrowed, and called on the main thread.
    struct Sources {
        platform::Host& host;
        reports::Store& store;
        /// Identifiers of the favourites.
        std::function<std::vector<std::string>()> favorites;
        std::function<void(const std::string& identifier)> select;
    };

    /// The tab widget owns this object.
    ReportTabs(QTabWidget& tabs, Sources sources);

    /// Shows another station; one without a description stands for none.
    void showStation(Station station);
    /// Asks for the station's last hours again where they are on show.
    void askAgain();
    /// Shows everything anew, soon.
    void refreshSoon();

    /// The name of the tab on show, for a later start; an unknown one changes nothing.
    [[nodiscard]] QString chosen() const;
    void choose(const QString& name);

private:
    void refresh();
    void refreshTrend();
    void askForTrend();
    [[nodiscard]] bool showsTrend() const;

    QTabWidget& tabs_;
    Sources sources_;
    ReportPage* page_;
    TrendView* trend_;
    Station station_;
    QTimer* soon_;
    QTimer* trendSoon_;
    /// Stations whose last hours were asked for in this run.
    std::set<std::string> asked_;
    std::unique_ptr<platform::Timer> minutes_;
    /// Work for this object is dropped once it is gone.
    std::shared_ptr<void> alive_ = std::make_shared<int>();
    platform::NotificationCenter::Token changes_;
};

} // namespace desktop
