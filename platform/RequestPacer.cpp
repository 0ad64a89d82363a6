// SPDX-License-Identifier: MIT
#include "platform/RequestPacer.h"

namespace platform {

RequestPacer::RequestPacer(std::size_t perMinute, std::size_t atOnce)
    : perMinute_(perMinute), atOnce_(atOnce) {}

bool RequestPacer::trySend(TimePoint now) {
    while (!sent_.empty() && now - sent_.front() >= std::chrono::minutes(1)) {
        sent_.pop_front();
    }
    const bool mayGo = running_ < atOnce_ && sent_.size() < perMinute_;
    if (mayGo) {
        ++running_;
        sent_.push_back(now);
    }
    return mayGo;
}

void RequestPacer::hasEnded() {
    --running_;
}

RequestPacer::TimePoint RequestPacer::nextChance() const {
    if (running_ >= atOnce_) {
        return TimePoint::max();
    }
    return sent_.size() < perMinute_ ? TimePoint::min() : sent_.front() + std::chrono::minutes(1);
}

} // namespace platform
