// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"
#include "platform/host/OperationQueue.h"
#include "reports/Store.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace weather {

/// The weather of all stations: while the user wants it and can see it or is told of it, keeps the
/// store's reports new by the data server's files of every station's last METAR and TAF. One
/// request every few minutes is what the service asks of those who want many stations
/// (https://aviationweather.gov/data/api).
///
/// A file is asked for only if it has changed, which holds across restarts, and never again before
/// its interval has passed, however the last request ended. Nothing is asked for at a start while
/// what is kept is fresh. A reply is unpacked and read on a thread of its own.
///
/// Main thread only.
class WorldWeather {
public:
    static constexpr std::chrono::minutes metarInterval{5};
    static constexpr std::chrono::minutes tafInterval{15};
    /// A file that unpacks to more is not read to its end.
    static constexpr std::size_t mostBytes = std::size_t{64} << 20;
    /// Posted on the main thread when any of the answers below may have changed. No object.
    static constexpr const char* didChange = "worldWeatherDidChange";

    /// Both are borrowed; the sessions must be stopped before this object goes.
    WorldWeather(platform::Host& host, reports::Store& store);
    WorldWeather(const WorldWeather&) = delete;
    WorldWeather& operator=(const WorldWeather&) = delete;
    ~WorldWeather();

    /// Whether the user wants it: a setting, off until it is set.
    [[nodiscard]] bool isOn() const { return isOn_; }
    void setOn(bool on);
    /// Whether it can be seen; at first it cannot.
    void setSeen(bool seen);
    /// Whether somebody follows it who can see nothing; at first nobody does.
    void setFollowed(bool followed);

    /// Bytes that have arrived of a file on its way; absent if none is.
    [[nodiscard]] std::optional<std::size_t> arrived() const;
    /// When the reports of a kind were last renewed; absent if they never were.
    [[nodiscard]] std::optional<platform::Date> renewed(reports::Kind kind) const;
    /// When the last request for the METARs was made that has ended, in whatever way; absent if
    /// none has.
    [[nodiscard]] std::optional<platform::Date> asked() const;
    /// One sentence for the user; empty while it is off.
    [[nodiscard]] std::string status() const;

private:
    /// One of the two files.
    struct File {
        reports::Kind kind;
        std::chrono::minutes interval;
        /// Absent unless the file is on its way.
        std::optional<std::size_t> arrived = std::nullopt;
    };
    [[nodiscard]] std::optional<reports::Answer> answer(reports::Kind kind) const;
    [[nodiscard]] bool isDue(const File& file) const;
    void fetchWhatIsDue();
    void fetch(File& file);
    void post();

    platform::Host& host_;
    reports::Store& store_;
    bool isOn_;
    bool isSeen_ = false;
    bool isFollowed_ = false;
    std::array<File, 2> files_{
        {{reports::Kind::metar, metarInterval}, {reports::Kind::taf, tafInterval}}};
    std::unique_ptr<platform::Timer> minutes_;
    /// Reads the files. Work for this object is dropped once the queue is gone.
    std::shared_ptr<platform::OperationQueue> queue_ = std::make_shared<platform::OperationQueue>();
    platform::NotificationCenter::Token storeChanges_;
};

} // namespace weather
