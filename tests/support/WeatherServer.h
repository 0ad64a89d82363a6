// SPDX-License-Identifier: MIT
#pragma once

#include "platform/net/URLSession.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Waiting.h"

#include <httplib.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace support {

/// Named gates: a thread that passes one waits until the test has opened it.
class Gates {
public:
    void open(const std::string& name) {
        const std::scoped_lock lock(mutex_);
        open_.insert(name);
        changed_.notify_all();
    }
    void openAll() {
        const std::scoped_lock lock(mutex_);
        areAllOpen_ = true;
        changed_.notify_all();
    }
    /// Waits for the gate to open. Returns false if it stays shut for too long.
    bool pass(const std::string& name) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, patience,
                                 [&] { return areAllOpen_ || open_.contains(name); });
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::set<std::string> open_;
    bool areAllOpen_ = false;
};

/// The address of the default data server.
inline const std::string defaultServer = "https://aviationweather.gov/";

/// A web server on its own loopback port. For https it has a throwaway certificate, valid for
/// "localhost" and the default data server, that only `options()` trust.
class WeatherServer {
public:
    using Answer = std::function<void(const httplib::Request&, httplib::Response&)>;
    enum Kind { https, http };

    /// `answer` may be called on several threads at once.
    explicit WeatherServer(Answer answer, Kind kind = https);
    ~WeatherServer() { stop(); }
    WeatherServer(const WeatherServer&) = delete;
    WeatherServer& operator=(const WeatherServer&) = delete;

    /// Opens all gates and waits for every answer.
    void stop();
    /// "localhost", a colon and the port.
    [[nodiscard]] const std::string& authority() const { return authority_; }
    /// Options for sessions that trust only this server.
    [[nodiscard]] platform::URLSessionOptions options() const;
    /// The path and query of each request, in order of arrival.
    [[nodiscard]] std::vector<std::string> targets() const;
    [[nodiscard]] bool waitForTargets(std::size_t count) const;

    Gates gates;

private:
    TemporaryFolder folder_;
    std::unique_ptr<httplib::Server> server_;
    std::string authority_;
    std::thread thread_;
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::vector<std::string> targets_;
};

/// Sends a request and waits for its end. Returns the body as text, or "(no data)".
[[nodiscard]] std::string fetch(platform::URLSessions& sessions, const std::string& address,
                                bool revalidates = false);

} // namespace support
