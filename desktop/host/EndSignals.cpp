// SPDX-License-Identifier: MIT
#include "desktop/host/EndSignals.h"

#include <atomic>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace desktop {

namespace {

std::atomic<int> signalPipe{-1};
static_assert(std::atomic<int>::is_always_lock_free);

// Does only what is safe in a signal handler. If the pipe is full, the event loop has been woken
// already.
extern "C" void wakeEventLoop(int /*signal*/) {
    const int error = errno;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(signalPipe, &byte, 1);
    errno = error;
}

} // namespace

EndSignals::EndSignals(std::function<void()> end) {
    if (::pipe2(pipe_.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    signalPipe = pipe_[1];
    notifier_.emplace(pipe_[0], QSocketNotifier::Read);
    QObject::connect(&*notifier_, &QSocketNotifier::activated, &*notifier_,
                     [source = pipe_[0], end = std::move(end)] {
                         std::array<char, 16> bytes{};
                         while (::read(source, bytes.data(), bytes.size()) > 0) {
                         }
                         end();
                     });
    for (Taken& taken : taken_) {
        struct sigaction action {};
        action.sa_handler = wakeEventLoop;
        action.sa_flags = SA_RESTART;
        ::sigaction(taken.number, nullptr, &taken.before);
        if (taken.number != SIGHUP || taken.before.sa_handler != SIG_IGN) {
            ::sigaction(taken.number, &action, nullptr);
        }
    }
}

EndSignals::~EndSignals() {
    if (!notifier_) {
        return;
    }
    for (const Taken& taken : taken_) {
        ::sigaction(taken.number, &taken.before, nullptr);
    }
    notifier_.reset();
    signalPipe = -1;
    ::close(pipe_[0]);
    ::close(pipe_[1]);
}

} // namespace desktop
