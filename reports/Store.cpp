// SPDX-License-Identifier: MIT
#include "reports/Store.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace reports {
namespace {

constexpr std::chrono::hours historyKept{48};
constexpr std::chrono::hours historyShown{24};
/// How far ahead of our clock a report may be and still count as the latest, since clocks differ.
/// Without a limit, one report dated next year would keep all others out until then.
constexpr std::chrono::hours mostAhead{3};

/// Puts `report` in the place of `kept`; false if that one stays.
template <typename Report>
bool put(std::shared_ptr<const Report>& kept, const std::shared_ptr<const Report>& report,
         Date keptTime, Date now) {
    if (kept && !replaces(*report, *kept) && keptTime <= now + mostAhead) {
        return false;
    }
    kept = report;
    return true;
}

} // namespace

Store::Store(platform::NotificationCenter& center, platform::Clock& clock, platform::Log& log,
             std::filesystem::path file)
    : center_(center), clock_(clock) {
    perform([this, &log, path = std::move(file)] {
        database_ = std::make_unique<Database>(path, log);
        Batch kept = database_->latest();
        if (merge(kept)) {
            post({});
        }
    });
}

Store::~Store() {
    flush();
}

StationReports Store::reportsOf(const std::string& station) const {
    const std::scoped_lock lock(mutex_);
    const auto found = stations_.find(station);
    return found == stations_.end() ? StationReports() : found->second;
}

std::vector<std::shared_ptr<const Metar>> Store::allMetars() const {
    const std::scoped_lock lock(mutex_);
    std::vector<std::shared_ptr<const Metar>> all;
    for (const auto& [station, reports] : stations_) {
        if (reports.metar) {
            all.push_back(reports.metar);
        }
    }
    return all;
}

void Store::ask(const Question& question) {
    {
        const std::scoped_lock lock(mutex_);
        for (const std::string& station : question.stations) {
            ++stations_[station].openQuestions;
        }
    }
    post(question.stations.size() == 1 ? std::optional(question.stations.front()) : std::nullopt);
}

void Store::take(Batch batch) {
    std::set<std::string> stations;
    for (const auto& [metar, keepsHistory] : batch.metars) {
        stations.insert(metar->station);
    }
    for (const auto& taf : batch.tafs) {
        stations.insert(taf->station);
    }
    for (const auto& asked : batch.answers) {
        stations.insert(asked.station);
    }
    const bool answers = !batch.answers.empty();
    close(batch.answers);
    const bool changes = merge(batch);
    if (changes) {
        keep(std::move(batch));
    }
    if (changes || answers) {
        post(stations.size() == 1 ? std::optional(*stations.begin()) : std::nullopt);
    }
}

void Store::close(const std::vector<Batch::Asked>& answered) {
    const std::scoped_lock lock(mutex_);
    for (const auto& asked : answered) {
        int& open = stations_[asked.station].openQuestions;
        open = std::max(open - 1, 0);
    }
}

bool Store::merge(Batch& batch) {
    const Date now = clock_.now();
    const std::scoped_lock lock(mutex_);
    std::erase_if(batch.metars, [&](Batch::Entry& entry) {
        StationReports& station = stations_[entry.report->station];
        auto& kept = station.metar;
        // Whoever looked at the station is interested in its history.
        entry.keepsHistory |= station.metarAnswer.has_value();
        // An older one may still fill a gap in the history.
        return !put(kept, entry.report, kept ? kept->observed : now, now) && !entry.keepsHistory;
    });
    std::erase_if(batch.tafs, [&](const std::shared_ptr<const Taf>& taf) {
        auto& kept = stations_[taf->station].taf;
        return !put(kept, taf, kept ? kept->issued : now, now);
    });
    std::erase_if(batch.answers, [&](const Batch::Asked& asked) {
        StationReports& reports = stations_[asked.station];
        auto& kept = asked.kind == Kind::metar ? reports.metarAnswer : reports.tafAnswer;
        if (kept && asked.answer.asked < kept->asked && kept->asked <= now + mostAhead) {
            return true;
        }
        kept = asked.answer;
        return false;
    });
    return !batch.metars.empty() || !batch.tafs.empty() || !batch.answers.empty();
}

void Store::keep(Batch batch) {
    // History is counted back from the newest report, if that is earlier than our clock: a clock
    // that jumps ahead must not empty it.
    Date newest = Date::min() + historyKept;
    for (const auto& [metar, keepsHistory] : batch.metars) {
        newest = std::max(newest, metar->observed);
    }
    newest = std::min(newest, clock_.now());
    perform([this, batch = std::move(batch), newest] {
        database_->write(batch);
        database_->prune(newest - historyKept);
    });
}

void Store::history(std::string station, std::function<void(std::vector<Metar>)> then) {
    perform([this, station = std::move(station), then = std::move(then)] {
        const auto last = reportsOf(station).metar;
        const Date until = last ? last->observed : clock_.now();
        then(database_->history(station, until - historyShown));
    });
}

void Store::flush() {
    queue_.waitUntilAllOperationsAreFinished();
}

void Store::perform(std::function<void()> work) {
    queue_.addWork(std::move(work));
}

void Store::post(std::optional<std::string> station) {
    center_.post(
        {didChange, station ? platform::Value(std::move(*station)) : platform::Value(), nullptr});
}

} // namespace reports
