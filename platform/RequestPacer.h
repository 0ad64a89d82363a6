// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <deque>

namespace platform {

/// Keeps requests to one host within what it bears: so many in any minute, and so many at once,
/// which bounds the connections to it too. No locks, and no clock of its own.
class RequestPacer {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    RequestPacer(std::size_t perMinute, std::size_t atOnce);

    /// Whether a request may be sent at `now`; one that may counts as sent. `now` never goes back.
    [[nodiscard]] bool trySend(TimePoint now);
    /// One of the requests sent has ended.
    void hasEnded();
    /// When the minute has room again; past when it has. Only an end can help where all that may
    /// run at once do, and then this is the end of time.
    [[nodiscard]] TimePoint nextChance() const;

private:
    std::size_t perMinute_;
    std::size_t atOnce_;
    std::size_t running_ = 0;
    /// Of the requests sent in the last minute, at most `perMinute_`; the oldest first.
    std::deque<TimePoint> sent_;
};

} // namespace platform
