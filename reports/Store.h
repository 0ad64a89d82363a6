// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"
#include "platform/host/OperationQueue.h"
#include "reports/Database.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace reports {

/// What is known of one station. Its reports do not change any more; a newer one takes their place.
struct StationReports {
    std::shared_ptr<const Metar> metar;
    std::shared_ptr<const Taf> taf;
    std::optional<Answer> metarAnswer;
    std::optional<Answer> tafAnswer;
    /// Questions that the server has not answered yet.
    int openQuestions = 0;
};

/// Every station's last METAR and TAF and how they were had, in memory and behind that on the disk,
/// where the METARs of stations that were asked for on their own are kept for 48 hours. Any thread;
/// nothing waits for the disk.
class Store {
public:
    /// Posted on the thread that changes something, or on the store's own; the object is the text
    /// of the one station concerned, or absent when there may be many.
    static constexpr const char* didChange = "reportsDidChange";

    /// The services are borrowed and outlive the store. Reading what the file holds begins at once.
    Store(platform::NotificationCenter& center, platform::Clock& clock, platform::Log& log,
          std::filesystem::path file);
    /// Waits until everything is written.
    ~Store();
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    [[nodiscard]] StationReports reportsOf(const std::string& station) const;
    [[nodiscard]] std::vector<std::shared_ptr<const Metar>> allMetars() const;

    /// Notes that a server is being asked; `take` brings the answer.
    void ask(const Question& question);
    /// Takes what one transfer brought: each report where it takes the place of the one that is
    /// there, and the answers.
    void take(Batch batch);
    /// Hands a station's METARs of the last 24 hours, the oldest first, to `then` on the store's
    /// thread.
    void history(std::string station, std::function<void(std::vector<Metar>)> then);

    /// Waits until what was taken so far is on the disk, or given up.
    void flush();

private:
    void close(const std::vector<Batch::Asked>& answered);
    [[nodiscard]] bool merge(Batch& batch);
    void keep(Batch batch);
    void perform(std::function<void()> work);
    void post(std::optional<std::string> station);

    platform::NotificationCenter& center_;
    platform::Clock& clock_;
    mutable std::mutex mutex_;
    std::map<std::string, StationReports, std::less<>> stations_;
    /// Used on the queue's thread only.
    std::unique_ptr<Database> database_;
    /// Last, so that it ends first.
    platform::OperationQueue queue_;
};

} // namespace reports
