// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

/// What a host bears: so many requests in any minute, and so many at once.
struct HostLimit {
    /// Compared without regard to case.
    std::string host;
    std::size_t perMinute = 0;
    std::size_t atOnce = 0;
};

/// How servers are asked, what bounds a request, and what stands in for the outside world in tests.
struct URLSessionOptions {
    /// What the program calls itself.
    std::string userAgent;
    /// Where to ask instead of an address that its server gave up; any other address is returned as
    /// it is. Called on the sessions' thread. Unset where there is none.
    std::function<URL(const URL&)> successor;
    /// Requests to other hosts are not paced.
    std::vector<HostLimit> hostLimits;

    /// Without a byte for that long, connecting included, a transfer has failed.
    std::chrono::milliseconds idleLimit = std::chrono::seconds(60);
    /// From its first sending on, its redirects included.
    std::chrono::milliseconds totalLimit = std::chrono::minutes(5);
    /// Of a body, unpacked, and of all headers of a reply.
    std::size_t byteLimit = std::size_t{16} << 20;
    int redirectLimit = 5;
    /// Of all replies that are kept to be reused, in memory only.
    std::size_t cacheBytes = std::size_t{4} << 20;

    std::function<std::chrono::steady_clock::time_point()> now = std::chrono::steady_clock::now;
    /// By which kept replies age.
    std::function<Date()> date = [] {
        return std::chrono::floor<Date::duration>(std::chrono::system_clock::now());
    };
    /// A file (PEM) of the only authorities to trust, instead of the system's.
    std::string certificateFile;
    /// "host:port" to connect to, whatever host and port an address names.
    std::string connectTo;
};

/// Requests over HTTP and HTTPS on one background thread, which starts with the first one;
/// connections are reused, HTTP/2 where the server speaks it.
///
/// - An address that has a successor is asked there. Requests to a host with a limit are paced,
///   redirected ones included: those beyond what it bears wait. The newest goes first, superseded
///   ones after all others. Waiting does not count against a request's limits.
/// - Replies are kept and asked after by the addresses that are really asked; one that came by way
///   of a redirect is not kept.
/// - Redirects lead from https to https only; a plain http address is never redirected. One that
///   leads elsewhere, one too many, and any limit exceeded make the transfer incomplete.
/// - Every certificate is checked. No cookies, stored passwords or credentials. Proxies are those
///   that the environment names (`https_proxy` and its kin).
class CurlURLSessions final : public URLSessions {
public:
    /// Posts on `center`, which outlives the sessions.
    explicit CurlURLSessions(NotificationCenter& center, URLSessionOptions options = {});
    /// Stops.
    ~CurlURLSessions() override;
    CurlURLSessions(const CurlURLSessions&) = delete;
    CurlURLSessions& operator=(const CurlURLSessions&) = delete;

    void startDataTask(const Request& request, CompletionHandler handler) override;
    void perform(std::function<void()> work) override;
    [[nodiscard]] std::size_t openRequests() const override;

    /// Waits for a handler that runs, breaks off every transfer and drops what was handed over,
    /// now and from now on. Any thread but the sessions' own, one at a time.
    void stop();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace platform
