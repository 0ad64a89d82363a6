// SPDX-License-Identifier: MIT
#include "platform/net/RequestPacer.h"

#include <algorithm>

namespace platform {
namespace {

std::size_t shareOf(RequestPacer::Rank rank, std::size_t all) {
    return rank == RequestPacer::Rank::current ? all : std::max<std::size_t>(all / 2, 1);
}

} // namespace

RequestPacer::RequestPacer(std::size_t perMinute, std::size_t atOnce)
    : perMinute_(perMinute), atOnce_(atOnce) {}

bool RequestPacer::trySend(TimePoint now, Rank rank) {
    while (!sent_.empty() && now - sent_.front() >= std::chrono::minutes(1)) {
        sent_.pop_front();
    }
    const bool mayGo =
        running_ < shareOf(rank, atOnce_) && sent_.size() < shareOf(rank, perMinute_);
    if (mayGo) {
        ++running_;
        sent_.push_back(now);
    }
    return mayGo;
}

void RequestPacer::hasEnded() {
    --running_;
}

RequestPacer::TimePoint RequestPacer::nextChance(Rank rank) const {
    if (running_ >= shareOf(rank, atOnce_)) {
        return TimePoint::max();
    }
    const std::size_t share = shareOf(rank, perMinute_);
    return sent_.size() < share ? TimePoint::min()
                                : sent_[sent_.size() - share] + std::chrono::minutes(1);
}

} // namespace platform
