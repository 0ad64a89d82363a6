// SPDX-License-Identifier: MIT
#pragma once

#include "platform/net/HTTPCache.h"
#include "platform/net/URLSession.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace platform {

/// One GET on its way through any redirects, each of which is a sending of its own, and those who
/// asked for it. Used on one thread only.
class URLTransfer {
public:
    using TimePoint = std::chrono::steady_clock::time_point;
    enum class Outcome { complete, redirected, failed };
    /// Who asks for a transfer, and hears of its end.
    struct Asker {
        URLSessions::Request request;
        URLSessions::CompletionHandler handler;
    };

    /// `options` outlive the transfer.
    URLTransfer(std::string address, const URLSessionOptions& options);

    /// What was asked for, wherever redirects lead.
    [[nodiscard]] const std::string& address() const { return address_; }
    /// One more who asks. A sending that has begun is not changed by it.
    void join(Asker asker);
    /// Whether all who ask have been superseded.
    [[nodiscard]] bool isSuperseded() const;
    /// All who ask, in the order in which they joined; nobody asks any more.
    [[nodiscard]] std::vector<Asker> takeAskers() { return std::exchange(askers_, {}); }

    /// The reply that is asked after rather than for, as long as no redirect leads elsewhere; null
    /// for none.
    [[nodiscard]] const HTTPCache::Kept& kept() const { return kept_; }
    void setKept(HTTPCache::Kept kept) { kept_ = std::move(kept); }

    [[nodiscard]] bool isRedirected() const { return redirects_ > 0; }
    /// To which host the next sending goes, or the one under way.
    [[nodiscard]] const std::string& targetHost() const { return targetHost_; }
    /// Prepares a sending and gives the library's handle for it.
    void* begin();
    /// The handle of the sending under way, or null.
    [[nodiscard]] void* handle() const { return handle_.get(); }
    /// When the sending under way will have failed, unless something arrives.
    [[nodiscard]] TimePoint deadline() const;
    /// Ends a sending, which gives its handle back to the library. `isWhole` tells whether the
    /// library has the complete reply. After `redirected` the transfer may begin again.
    [[nodiscard]] Outcome end(bool isWhole);
    /// What a complete transfer came to.
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
    /// Where the next sending goes, or the one under way.
    std::string target_;
    std::string targetHost_;
    const URLSessionOptions& options_;
    std::vector<Asker> askers_;
    bool revalidates_ = false;
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
