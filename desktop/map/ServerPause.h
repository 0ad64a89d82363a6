// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDateTime>

#include <algorithm>
#include <chrono>

namespace desktop {

/// How long a server is left alone that refuses or cannot be reached. The current time is given,
/// not asked for.
class ServerPause {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// A first refusal, or a server that cannot be reached, is worth the pause `first`; each
    /// further refusal twice the one before, up to `longest`.
    ServerPause(std::chrono::milliseconds first, std::chrono::milliseconds longest)
        : first_(first), longest_(longest) {}

    /// `retryAfter` is how long the server wants to be left alone at least; zero if it does not
    /// say.
    void refused(Time now, std::chrono::milliseconds retryAfter);
    void notReached(Time now) { extend(now + first_); }
    /// The next refusal counts as a first one.
    void served() { last_ = {}; }
    void neverAsk() { end_ = Time::max(); }

    /// When the server may be asked again: in the past if it may be now, `Time::max()` if never.
    [[nodiscard]] Time end() const { return end_; }

private:
    void extend(Time end) { end_ = std::max(end_, end); }

    std::chrono::milliseconds first_;
    std::chrono::milliseconds longest_;
    /// After the last refusal; zero if none counts.
    std::chrono::milliseconds last_{0};
    Time end_ = Time::min();
};

/// The delay that a server asks for by the value of its Retry-After header, in seconds or by a date
/// (RFC 9110, 10.2.3): a day at most, zero if it asks for none. A date is compared with the value
/// of the Date header, which is the server's own clock, or if that cannot be read with `now`.
[[nodiscard]] std::chrono::milliseconds retryAfter(const QByteArray& value, const QByteArray& date,
                                                   const QDateTime& now);

} // namespace desktop
