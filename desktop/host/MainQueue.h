// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

#include <QObject>

#include <deque>
#include <mutex>

namespace desktop {

/// Hands work over to the thread that created the queue, which runs it one piece at a time from its
/// event loop.
class MainQueue final : public QObject, public platform::MainThread {
public:
    void perform(std::weak_ptr<void> target, std::function<void()> work) override;

    /// Drops the waiting work, and from now on any that is handed over.
    void close();

protected:
    bool event(QEvent* event) override;

private:
    struct Piece {
        std::weak_ptr<void> target;
        std::function<void()> work;
    };

    /// Used instead of the toolkit's own queue of calls, whose synchronisation ThreadSanitizer
    /// cannot see: it would miss races in the work.
    std::mutex mutex_;
    std::deque<Piece> waiting_;
    bool closed_ = false;
};

} // namespace desktop
