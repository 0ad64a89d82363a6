// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

namespace desktop {

/// Timers on the main thread's event loop. An action may drop its own timer.
class RepeatingTimers final : public platform::Timers {
public:
    [[nodiscard]] std::unique_ptr<platform::Timer>
    scheduleRepeating(std::chrono::milliseconds interval, std::function<void()> action) override;
};

} // namespace desktop
