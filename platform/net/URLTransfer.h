// SPDX-License-Identifier: MIT
#pragma once

#include "platform/net/HTTPCache.h"
#include "platform/net/URLSession.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace platform {

/// One GET and the requests that share it. Each redirect that it follows, and each new attempt, is
/// an exchange of its own. Used on one thread only.
class URLTransfer {
public:
    using TimePoint = std::chrono::steady_clock::time_point;
    enum class Outcome { complete, redirected, failed };
    /// One of the requests that share a transfer, and the handler of its reply.
    struct Asker {
        URLSessions::Request request;
        URLSessions::CompletionHandler handler;
    };

    /// `options` must outlive the transfer.
    URLTransfer(std::string address, const URLSessionOptions& options);

    /// The address that was asked for, whatever redirects follow.
    [[nodiscard]] const std::string& address() const { return address_; }
    /// Adds a request that shares the transfer. An exchange that has begun is not affected.
    void join(Asker asker);
    /// The condition that all its requests have in common.
    [[nodiscard]] const std::optional<URLSessions::Version>& known() const { return known_; }
    /// Whether all requests have been superseded.
    [[nodiscard]] bool isSuperseded() const;
    /// Returns all requests, in the order of joining, and forgets them.
    [[nodiscard]] std::vector<Asker> takeAskers() { return std::exchange(askers_, {}); }

    /// The cached reply to revalidate, or null; a redirect resets it.
    [[nodiscard]] const HTTPCache::Kept& kept() const { return kept_; }
    void setKept(HTTPCache::Kept kept) { kept_ = std::move(kept); }

    [[nodiscard]] bool isRedirected() const { return redirects_ > 0; }
    /// The host of the current exchange, or else of the next.
    [[nodiscard]] const std::string& targetHost() const { return targetHost_; }
    /// Prepares an exchange and returns libcurl's handle for it.
    void* begin();
    /// The handle of the current exchange, or null.
    [[nodiscard]] void* handle() const { return handle_.get(); }
    /// When the current exchange fails. Bytes that arrive put this off, up to the total limit.
    [[nodiscard]] TimePoint deadline() const;
    /// Ends the current exchange and frees its handle. `isWhole` says whether libcurl has the
    /// complete reply. After `redirected` the transfer may begin again.
    [[nodiscard]] Outcome end(bool isWhole);
    /// The reply of a complete transfer.
    [[nodiscard]] HTTPReply& reply() { return reply_; }

private:
    struct Free {
        void operator()(void* handle) const;
    };
    struct FreeList {
        void operator()(void* list) const;
    };

    static std::size_t receiveHeader(char* bytes, std::size_t size, std::size_t count, void* self);
    static std::size_t receiveBody(char* bytes, std::size_t size, std::size_t count, void* self);
    void setHeaderLines();
    void readHead();
    [[nodiscard]] bool mayGoTo(const std::string& target);

    const std::string address_;
    /// The address of the current exchange, or else of the next.
    std::string target_;
    std::string targetHost_;
    const URLSessionOptions& options_;
    std::vector<Asker> askers_;
    bool revalidates_ = false;
    std::optional<URLSessions::Version> known_;
    HTTPCache::Kept kept_;
    std::unique_ptr<void, FreeList> connectTo_;
    std::unique_ptr<void, FreeList> headerLines_;
    std::unique_ptr<void, Free> handle_;
    int redirects_ = 0;
    std::chrono::nanoseconds timeLeft_;
    TimePoint begun_;
    TimePoint lastByte_;
    std::size_t headerBytes_ = 0;
    HTTPReply reply_;
};

} // namespace platform
