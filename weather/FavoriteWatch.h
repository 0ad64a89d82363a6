// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"
#include "platform/host/Host.h"
#include "reports/Store.h"
#include "weather/WorldWeather.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace weather {

/// Tells the user by a notice when a favourite gets worse: when its flight category does, when the
/// server has no METAR of it any more, and when its METAR has become old. It works while the user
/// wants it and the program fetches the favourites' weather by itself; it fetches nothing, but lets
/// the weather of the world be fetched while nobody sees it.
///
/// What is told are changes within this run, each once. The first METAR that the server is known to
/// have confirmed in this run is only what later ones are compared with. An unknown category is
/// neither better nor worse: the next known one is compared with the last known one. Of a
/// favourite that has fallen silent nothing more is told until it has sent a new METAR.
///
/// A METAR has become old if it was so when the server was last asked, however that ended; or if
/// nothing has been asked for so long that something must be wrong. Time that the computer slept
/// does not count for that.
///
/// Main thread only.
class FavoriteWatch {
public:
    struct Sources {
        /// In the order in which they are to be told of.
        std::function<StationArray()> favorites;
        /// Whether the favourites' own weather is fetched again by itself.
        std::function<bool()> fetchesFavorites;
        /// The user has chosen a notice; the identifier of the station that it tells of first, as
        /// the catalogue has it.
        std::function<void(const std::string& identifier)> chosen;
    };

    /// How long nothing may have been asked beyond the time when a METAR became old. More than the
    /// half hour between two requests for the favourites' weather.
    static constexpr std::chrono::minutes patience{40};
    /// Posted on the main thread when `status` has changed. No object.
    static constexpr const char* didChange = "favoriteWatchDidChange";

    /// Host, store and world are borrowed, and so is whatever the sources refer to.
    FavoriteWatch(platform::Host& host, reports::Store& store, WorldWeather& world,
                  Sources sources);
    ~FavoriteWatch();
    FavoriteWatch(const FavoriteWatch&) = delete;
    FavoriteWatch& operator=(const FavoriteWatch&) = delete;

    /// Whether the user wants it: a setting, off until it is set.
    [[nodiscard]] bool isOn() const { return isOn_; }
    void setOn(bool on);
    /// Looks at the favourites now, or once the open requests have been answered. To be called when
    /// there are others, or when `Sources::fetchesFavorites` has changed; new reports and passing
    /// time are noticed without.
    void look();
    void lookSoon();

    /// One sentence for the user; empty while it is off.
    [[nodiscard]] std::string status() const;

private:
    /// What is known of one favourite.
    struct Favorite {
        /// Of the last METAR seen.
        std::optional<platform::Date> observed;
        /// Whether it counts as one that sends METARs.
        bool isHeard = false;
        /// When the server had last been asked as a new METAR was first seen.
        platform::Date heard = platform::Date::min();
        reports::Category category = reports::Category::unknown;
        /// The METAR last told of, and the category told then.
        std::optional<platform::Date> toldOf;
        reports::Category told = reports::Category::unknown;
    };
    struct Change;

    void start();
    void follow();
    [[nodiscard]] bool isWatching() const;
    [[nodiscard]] std::optional<platform::Date> asked(const reports::StationReports& reports,
                                                      platform::Date now) const;
    [[nodiscard]] bool hasBecomeOld(platform::Date observed, platform::Date asked,
                                    platform::Date now) const;
    [[nodiscard]] std::optional<Change>
    judge(Favorite& favorite, const reports::StationReports& reports, platform::Date now) const;
    void tell(std::vector<Change> changes) const;

    platform::Host& host_;
    reports::Store& store_;
    WorldWeather& world_;
    Sources sources_;
    bool isOn_;
    /// Answers to earlier questions are those of another run.
    platform::Date since_;
    /// When time last began to pass without a gap, and when that was last noticed.
    platform::Date awakeSince_;
    platform::Date lastLook_;
    /// By identifier.
    std::map<std::string, Favorite> favorites_;
    std::string lastStatus_;
    std::unique_ptr<platform::Timer> minutes_;
    /// Runs from a change until a look at what it has brought.
    std::unique_ptr<platform::Timer> soon_;
    int waits_ = 0;
    /// Work for this object is dropped once it is gone.
    std::shared_ptr<void> alive_ = std::make_shared<int>();
    std::vector<platform::NotificationCenter::Token> observers_;
};

} // namespace weather
