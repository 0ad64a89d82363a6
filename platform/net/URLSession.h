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

/// The requests that a host allows: so many in any minute, and so many at once.
struct HostLimit {
    /// Case is ignored.
    std::string host;
    std::size_t perMinute = 0;
    std::size_t atOnce = 0;
};

/// How requests are made, what limits them, and what replaces the outside world in tests.
struct URLSessionOptions {
    /// The User-Agent header.
    std::string userAgent;
    /// Returns the successor of an address that its server has retired, and any other address
    /// unchanged. Called on the sessions' thread. May be empty.
    std::function<URL(const URL&)> successor;
    /// Requests to other hosts are not paced.
    std::vector<HostLimit> hostLimits;

    /// A transfer fails after this long without a byte, connecting included.
    std::chrono::milliseconds idleLimit = std::chrono::seconds(60);
    /// A transfer fails after this long on the network, redirects included.
    std::chrono::milliseconds totalLimit = std::chrono::minutes(5);
    /// Bounds the decompressed body of a reply and, separately, all its headers.
    std::size_t byteLimit = std::size_t{16} << 20;
    int redirectLimit = 5;
    /// Bounds all cached replies, which are held in memory only.
    std::size_t cacheBytes = std::size_t{4} << 20;

    std::function<std::chrono::steady_clock::time_point()> now = std::chrono::steady_clock::now;
    /// The wall clock by which cached replies age.
    std::function<Date()> date = [] {
        return std::chrono::floor<Date::duration>(std::chrono::system_clock::now());
    };
    /// If not empty, a PEM file of the only certificate authorities to trust.
    std::string certificateFile;
    /// If not empty, the "host:port" to connect to, whatever host and port an address names.
    std::string connectTo;
};

/// Makes HTTP and HTTPS requests on one background thread, which starts with the first one.
/// Connections are reused, with HTTP/2 if the server supports it.
///
/// - A request for an address that has a successor goes to the successor. Requests to a host with a
///   limit are paced, redirected ones included: those beyond the limit wait. The newest goes first,
///   superseded ones after all others. Waiting does not count towards a request's limits.
/// - Replies are cached under the address that is actually requested. A reply reached through a
///   redirect is not cached.
/// - Redirects are followed from https to https only; a plain http address is never redirected. Any
///   other redirect, one too many, or an exceeded limit makes the transfer incomplete.
/// - Every certificate is checked. No cookies, stored passwords or other credentials are used.
///   Proxies are taken from the environment (`https_proxy` and the like).
class CurlURLSessions final : public URLSessions {
public:
    /// Posts on `center`, which must outlive the sessions.
    explicit CurlURLSessions(NotificationCenter& center, URLSessionOptions options = {});
    /// Calls `stop`.
    ~CurlURLSessions() override;
    CurlURLSessions(const CurlURLSessions&) = delete;
    CurlURLSessions& operator=(const CurlURLSessions&) = delete;

    void startDataTask(const Request& request, CompletionHandler handler) override;
    void perform(std::function<void()> work) override;
    [[nodiscard]] std::size_t openRequests() const override;

    /// Waits for a running handler, aborts every transfer, and drops everything handed over now or
    /// later. May be called on any thread but the sessions' own, by one at a time.
    void stop();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace platform
