// SPDX-License-Identifier: MIT
#include "desktop/host/RepeatingTimers.h"

#include <QTimer>

#include <utility>

namespace desktop {

namespace {

class RunningTimer final : public platform::Timer {
public:
    RunningTimer(std::chrono::milliseconds interval, std::function<void()> action) {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, std::move(action));
        timer_.start(interval);
    }

private:
    QTimer timer_;
};

} // namespace

std::unique_ptr<platform::Timer>
RepeatingTimers::scheduleRepeating(std::chrono::milliseconds interval,
                                   std::function<void()> action) {
    return std::make_unique<RunningTimer>(interval, std::move(action));
}

} // namespace desktop
