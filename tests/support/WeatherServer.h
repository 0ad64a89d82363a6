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

/// Named doors: whoever comes to one waits until the test has opened it.
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
    /// False when it stayed shut for too long.
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

/// A web server on a loopback port of its own. With a certificate it is a throwaway one, valid for
/// "localhost" and the default data server, that nobody else trusts. Going, the server opens its
/// gates and waits for every answer.
class WeatherServer {
public:
    using Answer = std::function<void(const httplib::Request&, httplib::Response&)>;
    enum Kind { https, http };

    /// `answer` is called on many threads at once.
    explicit WeatherServer(Answer answer, Kind kind = https);
    ~WeatherServer();
    WeatherServer(const WeatherServer&) = delete;
    WeatherServer& operator=(const WeatherServer&) = delete;

    /// "localhost" and the port.
    [[nodiscard]] const std::string& authority() const { return authority_; }
    /// Sessions that trust this server alone.
    [[nodiscard]] platform::URLSessionOptions options() const;
    /// What was asked for, path and query, in order of arrival.
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

/// What a request came to: the body as text, or "(no data)".
[[nodiscard]] std::string fetch(platform::URLSessions& sessions, const std::string& address,
                                bool revalidates = false);

} // namespace support
