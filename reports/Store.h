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

/// No station's name: under it stands what is known of the files of all stations' reports.
inline const std::string allStations{};

/// What is known about one station. A report is never changed; a newer one takes its place.
struct StationReports {
    std::shared_ptr<const Metar> metar;
    std::shared_ptr<const Taf> taf;
    std::optional<Answer> metarAnswer;
    std::optional<Answer> tafAnswer;
    /// Questions that the server has not answered yet.
    int openQuestions = 0;
};

/// Every station's last METAR and TAF, and how the last requests for them ended: in memory, and on
/// the disk for the next start. Of stations that were asked for by name, the METARs of 48 hours
/// are kept on the disk. Any thread may use it; only `flush` and the destructor wait for the
/// disk.
class Store {
public:
    /// Posted on the thread that made a change, or on the store's own. The object is the identifier
    /// of the station concerned, or absent if there may be several.
    static constexpr const char* didChange = "reportsDidChange";

    /// The services are borrowed and must outlive the store. It begins to read the file at once.
    /// With an empty path nothing is kept on the disk.
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
    /// Takes what one transfer brought: each report that takes the place of the one that is there,
    /// and the answers.
    void take(Batch batch);
    /// Calls `then` on the store's thread with a station's METARs of the 24 hours up to its last
    /// one, the oldest first.
    void history(std::string station, std::function<void(std::vector<Metar>)> then);

    /// Waits until what was taken so far has been written, or could not be.
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
    /// Declared last, so that it ends before what its work uses.
    platform::OperationQueue queue_;
};

} // namespace reports
