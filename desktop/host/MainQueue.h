// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

#include <QObject>

#include <deque>
#include <mutex>

namespace desktop {

/// Hands work over to the thread that made the queue, which runs it piece by piece from its event
/// loop.
class MainQueue final : public QObject, public platform::MainThread {
public:
    void perform(std::weak_ptr<void> target, std::function<void()> work) override;

    /// Drops the work that waits, and from now on whatever is handed over.
    void close();

protected:
    bool event(QEvent* event) override;

private:
    struct Piece {
        std::weak_ptr<void> target;
        std::function<void()> work;
    };

    /// Not the toolkit's own queue of calls: ThreadSanitizer cannot see how that synchronizes, and
    /// would be blind to races in the work.
    std::mutex mutex_;
    std::deque<Piece> waiting_;
    bool closed_ = false;
};

} // namespace desktop
