// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <deque>

namespace platform {

/// Keeps requests to one host within its limits: so many in any minute and so many at once, which
/// also bounds the connections to it. Has no locks and no clock of its own.
///
/// Superseded requests may go only while all requests together use less than half of each limit, so
/// that the other half is always free for current ones. A limit of one cannot be halved and is open
/// to both.
class RequestPacer {
public:
    using TimePoint = std::chrono::steady_clock::time_point;
    enum class Rank { current, superseded };

    RequestPacer(std::size_t perMinute, std::size_t atOnce);

    /// Returns whether a request may be sent at `now`, and if so counts it as sent. `now` must
    /// never go back.
    [[nodiscard]] bool trySend(TimePoint now, Rank rank);
    /// To be called when a request that was sent has ended.
    void hasEnded();
    /// When the minute has room for another request: `TimePoint::min()` if it has room already,
    /// `TimePoint::max()` if as many requests run as may, so that one of them must end first.
    [[nodiscard]] TimePoint nextChance(Rank rank) const;

private:
    std::size_t perMinute_;
    std::size_t atOnce_;
    std::size_t running_ = 0;
    /// When the requests of the last minute were sent, at most `perMinute_` of them, oldest first.
    std::deque<TimePoint> sent_;
};

} // namespace platform
