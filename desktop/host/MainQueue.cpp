// SPDX-License-Identifier: MIT
#include "desktop/host/MainQueue.h"

#include <QCoreApplication>
#include <QEvent>

#include <utility>

namespace desktop {

void MainQueue::perform(std::weak_ptr<void> target, std::function<void()> work) {
    {
        const std::scoped_lock lock(mutex_);
        if (closed_) {
            return;
        }
        waiting_.push_back({std::move(target), std::move(work)});
    }
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void MainQueue::close() {
    // Declared before the lock, so that what the work holds is released outside it.
    std::deque<Piece> dropped;
    const std::scoped_lock lock(mutex_);
    closed_ = true;
    std::swap(waiting_, dropped);
}

bool MainQueue::event(QEvent* event) {
    if (event->type() != QEvent::User) {
        return QObject::event(event);
    }
    Piece piece;
    {
        const std::scoped_lock lock(mutex_);
        if (waiting_.empty()) {
            return true;
        }
        piece = std::move(waiting_.front());
        waiting_.pop_front();
    }
    if (const auto target = piece.target.lock()) {
        piece.work();
    }
    return true;
}

} // namespace desktop
