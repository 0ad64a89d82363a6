// SPDX-License-Identifier: MIT
#pragma once

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <functional>
#include <optional>

namespace desktop {

/// While it lives, SIGTERM, SIGINT and SIGHUP call a function from the main thread's event loop
/// instead of ending the process; a SIGHUP that was ignored stays ignored. Only one object may
/// exist at a time.
class EndSignals {
public:
    explicit EndSignals(std::function<void()> end);
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

private:
    struct Taken {
        int number;
        struct sigaction before {};
    };

    std::array<Taken, 3> taken_{{{SIGTERM}, {SIGINT}, {SIGHUP}}};
    std::array<int, 2> pipe_{-1, -1};
    std::optional<QSocketNotifier> notifier_;
};

} // namespace desktop
