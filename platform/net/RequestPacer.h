// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <deque>

namespace platform {

/// Keeps requests to one host within what it bears: so many in any minute, and so many at once,
/// which bounds the connections to it too. No locks, and no clock of its own.
///
/// Superseded requests go only while all requests together take less than half of a minute's number
/// and less than half of the connections: the rest of either is always there for current ones. Only
/// where there is a single one to take they may take it.
class RequestPacer {
public:
    using TimePoint = std::chrono::steady_clock::time_point;
    enum class Rank { current, superseded };

    RequestPacer(std::size_t perMinute, std::size_t atOnce);

    /// Whether a request may be sent at `now`; one that may counts as sent. `now` never goes back.
    [[nodiscard]] bool trySend(TimePoint now, Rank rank);
    /// One of the requests sent has ended.
    void hasEnded();
    /// When the minute has room again for a request; past when it has. Only an end can help where
    /// all that may run at once do, and then this is the end of time.
    [[nodiscard]] TimePoint nextChance(Rank rank) const;

private:
    std::size_t perMinute_;
    std::size_t atOnce_;
    std::size_t running_ = 0;
    /// Of the requests sent in the last minute, at most `perMinute_`; the oldest first.
    std::deque<TimePoint> sent_;
};

} // namespace platform
