// SPDX-License-Identifier: MIT
#include "weather/FavoriteWatch.h"

#include "reports/Cells.h"
#include "reports/Description.h"
#include "weather/NearestReports.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace weather {
namespace {

using namespace std::chrono_literals;
using platform::Date;
using reports::Category;

constexpr const char* watchSetting = "favoritenotices";
constexpr auto minute = 1min;
/// Without a look for so long, the computer slept or its clock was set.
constexpr auto gap = 3min;
/// Replies come one by one, and what they bring is to be one notice: a look waits for the open
/// requests, but not for ever.
constexpr auto watchStep = 2s;
constexpr int mostWaits = 30;
/// A notice that fills the screen helps nobody.
constexpr std::size_t mostLines = 8;

/// "; visibility 2 SM, ceiling 800 ft", as far as the METAR has them.
std::string valuesOf(const reports::Metar& metar) {
    std::string values;
    const auto add = [&values](const char* name, const std::string& value) {
        if (!value.empty()) {
            values += fmt::format("{}{} {}", values.empty() ? "; " : ", ", name, value);
        }
    };
    add("visibility", reports::visibilityCell(metar.conditions.visibility));
    add("ceiling", reports::ceilingCell(metar.conditions));
    return values;
}

/// "A favorite has worsened", "3 favorites have worsened".
std::string counted(std::size_t count, const char* what) {
    return count == 1 ? fmt::format("A favorite has {}", what)
                      : fmt::format("{} favorites have {}", count, what);
}

} // namespace

struct FavoriteWatch::Change {
    enum class Kind { worse, ended, old } kind;
    Category before;
    std::shared_ptr<const reports::Metar> metar;
    std::shared_ptr<AviationWeatherStation> station = nullptr;

    [[nodiscard]] std::string inWords(Date now) const {
        const std::string name = stationInWords(*station);
        const std::string age = reports::ageInWords(metar->observed, now);
        switch (kind) {
        case Kind::worse:
            return fmt::format("{}: {}, was {}{}; {}", name, reports::nameOf(metar->category),
                               reports::nameOf(before), valuesOf(*metar), age);
        case Kind::ended:
            return fmt::format("{}: the server has no METAR of it any more; the last one: {}", name,
                               age);
        case Kind::old:
            break;
        }
        return fmt::format("{}: no new METAR; the last one: {}", name, age);
    }
};

FavoriteWatch::FavoriteWatch(platform::Host& host, reports::Store& store, WorldWeather& world,
                             Sources sources)
    : host_(host),
      store_(store),
      world_(world),
      sources_(std::move(sources)),
      isOn_(platform::integerOf(host.userDefaults.objectForKey(watchSetting)) == 1),
      since_(host.clock.now()),
      awakeSince_(since_),
      lastLook_(since_) {
    const auto observe = [&](const char* name, void (FavoriteWatch::*then)()) {
        observers_.push_back(host.notificationCenter.addObserver(
            name, [this, then, &main = host.mainThread,
                   alive = std::weak_ptr(alive_)](const platform::Notification&) {
                main.perform(alive, [this, then] { (this->*then)(); });
            }));
    };
    observe(reports::Store::didChange, &FavoriteWatch::lookSoon);
    observe(WorldWeather::didChange, &FavoriteWatch::follow);
    observe(platform::Notices::didChange, &FavoriteWatch::follow);
    start();
}

FavoriteWatch::~FavoriteWatch() {
    world_.setFollowed(false);
}

void FavoriteWatch::setOn(bool on) {
    if (on != isOn_) {
        isOn_ = on;
        host_.userDefaults.setObject(platform::Number(on ? 1 : 0), watchSetting);
        start();
    }
}

void FavoriteWatch::start() {
    world_.setFollowed(isOn_);
    if (isOn_) {
        host_.notices.prepare();
        awakeSince_ = lastLook_ = host_.clock.now();
        minutes_ = host_.timers.scheduleRepeating(minute, [this] { lookSoon(); });
    } else {
        minutes_.reset();
        soon_.reset();
    }
    look();
}

void FavoriteWatch::lookSoon() {
    if (!isOn_ || soon_) {
        return;
    }
    waits_ = 0;
    soon_ = host_.timers.scheduleRepeating(watchStep, [this] {
        if (host_.urlSessions.openRequests() == 0 || ++waits_ > mostWaits) {
            soon_.reset();
            look();
        }
    });
}

void FavoriteWatch::follow() {
    if (std::string now = status(); now != lastStatus_) {
        lastStatus_ = std::move(now);
        host_.notificationCenter.post({didChange, {}, nullptr});
    }
}

bool FavoriteWatch::isWatching() const {
    return isOn_ && (world_.isOn() || sources_.fetchesFavorites());
}

void FavoriteWatch::look() {
    const Date now = host_.clock.now();
    since_ = std::min(since_, now);
    if (now < lastLook_ || now - lastLook_ > gap) {
        awakeSince_ = now;
    }
    lastLook_ = now;
    std::vector<Change> changes;
    std::map<std::string, Favorite> before = std::exchange(favorites_, {});
    if (isWatching()) {
        for (const auto& station : sources_.favorites()) {
            const std::string name = reportsName(*station);
            if (name.empty() || favorites_.contains(name)) {
                continue;
            }
            Favorite& favorite = favorites_[name] = before[name];
            if (auto change = judge(favorite, store_.reportsOf(name), now)) {
                change->station = station;
                changes.push_back(*std::move(change));
            }
        }
    }
    if (!changes.empty()) {
        tell(std::move(changes));
    }
    follow();
}

std::optional<Date> FavoriteWatch::asked(const reports::StationReports& reports, Date now) const {
    std::optional<Date> last = world_.isOn() ? world_.asked() : std::nullopt;
    if (reports.metarAnswer) {
        last = std::max(last, std::optional(reports.metarAnswer->asked));
    }
    // What is ahead of the clock was asked before the clock was set back.
    return last && *last >= since_ ? std::optional(std::min(*last, now)) : std::nullopt;
}

bool FavoriteWatch::hasBecomeOld(Date observed, Date asked, Date now) const {
    return reports::isOld(observed, asked) ||
           now - std::max(observed + reports::oldAge, awakeSince_) >= patience;
}

std::optional<FavoriteWatch::Change>
FavoriteWatch::judge(Favorite& favorite, const reports::StationReports& reports, Date now) const {
    const auto& metar = reports.metar;
    const auto lastAsked = asked(reports, now);
    if (!metar || !lastAsked) {
        return {};
    }
    const auto before = std::exchange(favorite.observed, metar->observed);
    const bool isNew = before != metar->observed;
    if (isNew) {
        favorite.heard = *lastAsked;
    }
    const bool hasEnded = reports.metarAnswer &&
                          reports.metarAnswer->ending == reports::Answer::Ending::nothing &&
                          reports.metarAnswer->asked > favorite.heard;
    const bool isOld = hasBecomeOld(metar->observed, *lastAsked, now);
    const bool wasHeard = favorite.isHeard;
    favorite.isHeard = !isOld && !hasEnded && (wasHeard || isNew);
    if (!favorite.isHeard) {
        return wasHeard ? std::optional(Change{hasEnded ? Change::Kind::ended : Change::Kind::old,
                                               favorite.category, metar})
                        : std::nullopt;
    }
    if (metar->category == Category::unknown) {
        return {};
    }
    const Category last = std::exchange(favorite.category, metar->category);
    // A correction may say again what was told of the same METAR before another correction.
    const bool isTold = favorite.toldOf == metar->observed && metar->category <= favorite.told;
    if (last == Category::unknown || metar->category <= last || isTold ||
        metar->observed < before.value_or(metar->observed)) {
        return {};
    }
    favorite.toldOf = metar->observed;
    favorite.told = metar->category;
    return Change{Change::Kind::worse, last, metar};
}

void FavoriteWatch::tell(std::vector<Change> changes) const {
    const auto badness = [](const Change& change) {
        return change.kind == Change::Kind::worse ? change.metar->category : Category::unknown;
    };
    std::ranges::stable_sort(changes, std::greater(), badness);
    const auto worse = static_cast<std::size_t>(std::ranges::count(
        changes, Change::Kind::worse, [](const Change& change) { return change.kind; }));
    platform::Notices::Notice notice;
    notice.title = counted(changes.size(), worse == changes.size() ? "worsened"
                                           : worse == 0            ? "fallen silent"
                                                                   : "worsened or fallen silent");
    for (const Change& change : changes) {
        if (notice.lines.size() == mostLines && changes.size() > mostLines + 1) {
            notice.lines.push_back(fmt::format("and {} more", changes.size() - mostLines));
            break;
        }
        notice.lines.push_back(change.inWords(lastLook_));
    }
    notice.chosen = [this, alive = std::weak_ptr(alive_),
                     identifier = changes.front().station->ICAO.value_or("")] {
        if (const auto held = alive.lock()) {
            sources_.chosen(identifier);
        }
    };
    host_.notices.show(notice);
}

std::string FavoriteWatch::status() const {
    if (!isOn_) {
        return {};
    }
    if (host_.notices.canShow() == false) {
        return "No notification service answers, so nothing can be told of favorites.";
    }
    if (!isWatching()) {
        return "To be told of favorites, switch on World Weather or their own weather.";
    }
    const StationArray favorites = sources_.favorites();
    const auto count = std::ranges::count_if(
        favorites, [](const auto& station) { return !reportsName(*station).empty(); });
    return count == 0   ? "There are no favorites to tell of."
           : count == 1 ? "Watching 1 favorite."
                        : fmt::format("Watching {} favorites.", count);
}

} // namespace weather
