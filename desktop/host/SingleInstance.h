// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

#include <QLocalServer>

#include <functional>
#include <string>

namespace desktop {

/// Ensures that only one instance of the program works on a user's files, however it was started.
/// The first instance holds a lock (flock) on a file among them, which the kernel releases however
/// that instance ends, and writes to it the path of the local socket on which it listens.
class SingleInstance {
public:
    /// `folder` is the program's folder of files, which `isFirst` creates if need be; the log is
    /// borrowed.
    SingleInstance(std::string folder, platform::Log& log);
    /// Releases the lock.
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// True if this is the first instance, or if that cannot be told, as when the folder cannot be
    /// written. If false, the first instance has come to the front or one log line says that it
    /// does not answer; all that is left to this one is to end.
    [[nodiscard]] bool isFirst();
    /// Called from the main thread's event loop each time a later instance is started.
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
