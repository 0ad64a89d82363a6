// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

#include <QLocalServer>

#include <functional>
#include <string>

namespace desktop {

/// Sees to it that one instance of the program works on a user's files, whichever way it was
/// started. The first one holds a lock (flock) on a file among them, which the kernel lets go of
/// however that instance ends, and writes into it the path of the local socket on which it listens.
class SingleInstance {
public:
    /// `folder` is that of the program's files, made here if need be; the log is borrowed.
    SingleInstance(std::string folder, platform::Log& log);
    /// Lets go of the lock.
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// Whether this is the first instance, or none can be told, as where the folder cannot be
    /// written. Otherwise the first one has come to the front, or one line in the log says that it
    /// does not answer; this one has nothing to do but end.
    [[nodiscard]] bool isFirst();
    /// Called from the main thread's event loop each time a later instance was started.
    std::function<void()> laterStarted;

private:
    void listen();
    void answer(QLocalSocket& later);
    [[nodiscard]] bool callFirst() const;

    std::string folder_;
    std::string lockPath_;
    platform::Log& log_;
    int lock_ = -1;
    QLocalServer server_;
};

} // namespace desktop
