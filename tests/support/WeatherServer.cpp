// SPDX-License-Identifier: MIT
#include "tests/support/WeatherServer.h"

#include <cstdlib>
#include <future>
#include <stdexcept>

namespace support {
namespace {

/// A server with a newly made certificate.
std::unique_ptr<httplib::Server> secureServer(const std::filesystem::path& certificate,
                                              const std::filesystem::path& key) {
    const std::string command = "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 "
                                "-nodes -days 1 -subj /CN=Throwaway -addext "
                                "subjectAltName=DNS:localhost,DNS:aviationweather.gov -keyout '" +
                                key.string() + "' -out '" + certificate.string() + "' 2>'" +
                                key.string() + ".log'";
    if (std::system(command.c_str()) != 0) {
        throw std::runtime_error("cannot make a certificate");
    }
    return std::make_unique<httplib::SSLServer>(certificate.c_str(), key.c_str());
}

} // namespace

WeatherServer::WeatherServer(Answer answer, Kind kind)
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

void WeatherServer::stop() {
    if (!thread_.joinable()) {
        return;
    }
    gates.openAll();
    // A server that is stopped before it listens would listen for ever.
    waitUntil("the start of the server", [this] { return server_->is_running(); });
    server_->stop();
    thread_.join();
}

platform::URLSessionOptions WeatherServer::options() const {
    platform::URLSessionOptions options;
    options.certificateFile = (folder_ / "certificate.pem").string();
    return options;
}

std::vector<std::string> WeatherServer::targets() const {
    const std::scoped_lock lock(mutex_);
    return targets_;
}

bool WeatherServer::waitForTargets(std::size_t count) const {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, patience, [&] { return targets_.size() >= count; });
}

std::string fetch(platform::URLSessions& sessions, const std::string& address, bool revalidates) {
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
