// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Host.h"

#include <QLocalServer>
#include <QLockFile>

#include <functional>

namespace desktop {

/// Sees to it that one instance of the program works on the user's files. A lock and a local socket
/// in the user's runtime folder, named after the folder of those files, tell them apart.
class SingleInstance {
public:
    explicit SingleInstance(platform::Log& log);

    /// Whether this is the first instance, or none can be told. Otherwise the first one was asked
    /// to come to the front, and this one has nothing to do but end.
    [[nodiscard]] bool isFirst();
    /// Called from the main thread's event loop each time a later instance was started.
    std::function<void()> laterStarted;

private:
    void listen();
    [[nodiscard]] bool callFirst() const;

    platform::Log& log_;
    QString path_;
    QLockFile lock_;
    QLocalServer server_;
};

} // namespace desktop
