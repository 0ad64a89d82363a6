// SPDX-License-Identifier: MIT
#pragma once

#include "platform/URLSession.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

namespace platform {

/// One GET on its way through any redirects, each of which is a sending of its own. Made on any
/// thread, then used on one only.
class URLTransfer {
public:
    using TimePoint = std::chrono::steady_clock::time_point;
    enum class Outcome { complete, redirected, failed };

    /// `options` outlive the transfer.
    URLTransfer(const URL& address, URLSessions::CompletionHandler handler,
                const URLSessionOptions& options);

    /// Whether the next sending goes to the default data server.
    [[nodiscard]] bool isPaced() const;
    /// Prepares a sending and gives the library's handle for it.
    void* begin();
    /// The handle of the sending under way, or null.
    [[nodiscard]] void* handle() const { return handle_.get(); }
    /// When the sending under way will have failed, unless something arrives.
    [[nodiscard]] TimePoint deadline() const;
    /// Ends a sending, which gives its handle back to the library. `isWhole` tells whether the
    /// library has the complete reply. After `redirected` the transfer may begin again.
    [[nodiscard]] Outcome end(bool isWhole);
    /// Calls the handler: with the body that arrived if the outcome was `complete`.
    void complete(Outcome outcome);

private:
    struct Free {
        void operator()(void* handle) const;
    };
    struct FreeList {
        void operator()(void* list) const;
    };

    static std::size_t receiveHeader(char* bytes, std::size_t size, std::size_t count, void* self);
    static std::size_t receiveBody(char* bytes, std::size_t size, std::size_t count, void* self);
    [[nodiscard]] bool mayGoTo(const std::string& target);

    std::string address_;
    URLSessions::CompletionHandler handler_;
    const URLSessionOptions& options_;
    std::unique_ptr<void, FreeList> connectTo_;
    std::unique_ptr<void, Free> handle_;
    int redirects_ = 0;
    std::chrono::nanoseconds timeLeft_;
    TimePoint begun_;
    TimePoint lastByte_;
    std::size_t headerBytes_ = 0;
    Data body_;
};

} // namespace platform
