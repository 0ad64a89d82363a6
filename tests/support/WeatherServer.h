// SPDX-License-Identifier: MIT
#pragma once

#include "platform/net/URLSession.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Waiting.h"

#include <httplib.h>

#include <condition_variable>
#include <cstdlib>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <stdexcept>
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
    explicit WeatherServer(Answer answer, Kind kind = https)
        : server_(kind == https ? secureServer(folder_ / "certificate.pem", folder_ / "key.pem")
                                : std::make_unique<httplib::Server>()) {
        // Loopback must be reached directly, whatever proxy the environment names.
        ::setenv("no_proxy", "*", 1);
        // Each connection occupies a thread for as long as it is open.
        server_->new_task_queue = [] { return new httplib::ThreadPool(32); };
        server_->set_tcp_nodelay(true);
        server_->set_keep_alive_max_count(1000);
        server_->Get(".*", [this, answer = std::move(answer)](const httplib::Request& request,
                                                              httplib::Response& response) {
            {
                const std::scoped_lock lock(mutex_);
                targets_.push_back(request.target);
                changed_.notify_all();
            }
            answer(request, response);
        });
        const int port = server_->bind_to_any_port("127.0.0.1");
        if (!server_->is_valid() || port <= 0) {
            throw std::runtime_error("cannot start a server on loopback");
        }
        authority_ = "localhost:" + std::to_string(port);
        thread_ = std::thread([this] { server_->listen_after_bind(); });
    }
    ~WeatherServer() { stop(); }
    WeatherServer(const WeatherServer&) = delete;
    WeatherServer& operator=(const WeatherServer&) = delete;

    /// Opens all gates and waits for every answer.
    void stop() {
        if (!thread_.joinable()) {
            return;
        }
        gates.openAll();
        // A server that is stopped before it listens would listen for ever.
        waitUntil("the start of the server", [this] { return server_->is_running(); });
        server_->stop();
        thread_.join();
    }
    /// "localhost", a colon and the port.
    [[nodiscard]] const std::string& authority() const { return authority_; }
    /// Options for sessions that trust only this server.
    [[nodiscard]] platform::URLSessionOptions options() const {
        platform::URLSessionOptions options;
        options.certificateFile = (folder_ / "certificate.pem").string();
        return options;
    }
    /// The path and query of each request, in order of arrival.
    [[nodiscard]] std::vector<std::string> targets() const {
        const std::scoped_lock lock(mutex_);
        return targets_;
    }
    [[nodiscard]] bool waitForTargets(std::size_t count) const {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, patience, [&] { return targets_.size() >= count; });
    }

    Gates gates;

private:
    /// A server with a newly made certificate.
    static std::unique_ptr<httplib::Server> secureServer(const std::filesystem::path& certificate,
                                                         const std::filesystem::path& key) {
        const std::string command =
            "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 "
            "-nodes -days 1 -subj /CN=Throwaway -addext "
            "subjectAltName=DNS:localhost,DNS:aviationweather.gov -keyout '" +
            key.string() + "' -out '" + certificate.string() + "' 2>'" + key.string() + ".log'";
        if (std::system(command.c_str()) != 0) {
            throw std::runtime_error("cannot make a certificate");
        }
        return std::make_unique<httplib::SSLServer>(certificate.c_str(), key.c_str());
    }

    TemporaryFolder folder_;
    std::unique_ptr<httplib::Server> server_;
    std::string authority_;
    std::thread thread_;
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::vector<std::string> targets_;
};

/// Sends a request and waits for its end. Returns the body as text, or "(no data)".
[[nodiscard]] inline std::string fetch(platform::URLSessions& sessions, const std::string& address,
                                       bool revalidates = false) {
    const auto promise = std::make_shared<std::promise<std::string>>();
    auto future = promise->get_future();
    sessions.startDataTask(
        {{address}, revalidates}, [promise](const std::optional<platform::Data>& data) {
            promise->set_value(
                data ? std::string(reinterpret_cast<const char*>(data->data()), data->size())
                     : "(no data)");
        });
    return future.wait_for(patience) == std::future_status::ready ? future.get() : "(no answer)";
}

} // namespace support
