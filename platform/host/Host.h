// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Notices.h"
#include "platform/host/NotificationCenter.h"
#include "platform/values/Value.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The services outside the process that logic may use. The desktop implements them, and tests fake
/// them. Main thread only, except where a service says otherwise.
namespace platform {

/// The user's settings. Any thread.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;
    /// Absent if nothing is set under the key.
    [[nodiscard]] virtual Value objectForKey(std::string_view key) const = 0;
    virtual void setObject(const Value& value, std::string_view key) = 0;
};

/// Standard folders. Any thread.
class SearchPaths {
public:
    enum Kind : int { documents = 9, applicationSupport = 14 };
    enum DomainMask : int { userDomain = 1 };

    virtual ~SearchPaths() = default;
    /// Absolute paths, the preferred one first; empty for a kind or domain that does not exist
    /// here. The user's application support folder exists before any logic runs.
    [[nodiscard]] virtual std::vector<std::string> paths(int kind, int domainMask) const = 0;
};

/// The installed program. Any thread.
class Bundle {
public:
    virtual ~Bundle() = default;
    /// The folder of the files that ship with the program.
    [[nodiscard]] virtual std::string resourcePath() const = 0;
    /// The user's own file in place of one that ships with the program; absent if there is none.
    [[nodiscard]] virtual std::optional<std::string>
    replacementOf(std::string_view /*name*/) const {
        return std::nullopt;
    }
    /// A fact about the program, such as "CFBundleExecutable"; absent if unknown.
    [[nodiscard]] virtual std::optional<std::string> infoValue(std::string_view key) const = 0;
};

/// Asks the user for files; each call returns once the user has answered.
class Panels {
public:
    virtual ~Panels() = default;
    /// An existing file; absent if cancelled. Files whose extension is among `types` (without dots)
    /// are offered before all others.
    [[nodiscard]] virtual std::optional<URL> openPanel(const std::vector<std::string>& types) = 0;
    /// A file to write; absent if cancelled. `writtenPath` maps a chosen path to the one that will
    /// really be written, so that the panel asks before that file is replaced; without it, the
    /// chosen path itself is written.
    [[nodiscard]] virtual std::optional<URL>
    savePanel(const std::function<std::string(const std::string&)>& writtenPath) = 0;
};

/// A running timer; destroying it stops it.
class Timer {
public:
    virtual ~Timer() = default;
};

class Timers {
public:
    virtual ~Timers() = default;
    /// Calls `action` on the main thread each time the interval has passed.
    [[nodiscard]] virtual std::unique_ptr<Timer>
    scheduleRepeating(std::chrono::milliseconds interval, std::function<void()> action) = 0;
};

/// Hands work over to the main thread. Any thread.
class MainThread {
public:
    virtual ~MainThread() = default;
    /// Queues the work and returns at once. Work runs in the order of queueing, and is dropped if
    /// `target` has expired by then.
    virtual void perform(std::weak_ptr<void> target, std::function<void()> work) = 0;
};

/// Any thread.
class Clock {
public:
    virtual ~Clock() = default;
    [[nodiscard]] virtual Date now() const = 0;
};

/// The system log. Any thread.
class Log {
public:
    virtual ~Log() = default;
    /// Logs one line; the text is data, never a format.
    virtual void line(std::string_view text) = 0;
};

/// The user's other programs.
class Workspace {
public:
    virtual ~Workspace() = default;
    /// Opens an address in the program that the user has chosen for its kind, such as the web
    /// browser or the mail program. Does nothing if the address is invalid.
    virtual void openURL(const URL& address) = 0;
};

/// The user's mouse and keyboard events.
class Events {
public:
    enum Type : int { none = 0, leftMouseDown = 1, leftMouseUp = 2, mouseMoved = 5, other = 13 };

    struct Event {
        Type type = none;
        /// In seconds since some moment in the past.
        double timestamp = 0;
    };

    virtual ~Events() = default;
    /// The event being handled, or else the last one.
    [[nodiscard]] virtual Event currentEvent() const = 0;
    /// Two clicks closer than this, in seconds, are a double click.
    [[nodiscard]] virtual double doubleClickInterval() const = 0;
};

/// Fetches resources by address. May be used on any thread. Handlers and other work handed over run
/// one at a time on the sessions' own thread, must not throw, and are dropped without running once
/// the sessions are stopped.
///
/// Replies may be reused while the sessions exist, if their headers allow it (RFC 9111); a reply
/// without such headers never is. Equal requests in flight share one transfer. To a handler, either
/// looks like a transfer of its own: it is never called from within `startDataTask`, and handlers
/// that share a transfer are called one after another, in the order of asking.
class URLSessions {
public:
    /// What tells a reply from earlier and later ones for the same address.
    struct Version {
        /// When the server says that it was last changed.
        std::optional<Date> modified;
        /// Its entity tag (RFC 9110, 8.8.3); empty if it has none.
        std::string tag;

        friend bool operator==(const Version&, const Version&) = default;
    };

    /// How a transfer ended.
    struct Ending {
        /// Of the HTTP reply; 0 where the transfer did not complete.
        int status = 0;
        /// When the server was asked: of a reply that is reused, when that was asked for.
        Date asked;
        /// What the handler is given.
        const std::optional<Data>& data;
        Version version = {};
    };

    struct Request {
        URL address;
        /// Asks the server even if a cached reply may still be reused.
        bool revalidates = false;
        /// Once true, the request yields to all others, waiting or yet to come, that are not
        /// superseded; it is made all the same. A shared transfer yields once all its requests do.
        /// Must never return to false; null for a request that never yields.
        std::shared_ptr<const std::atomic<bool>> superseded = nullptr;
        /// For who wants to know more than a handler is told: called right before the handler, on
        /// the same thread. May be empty.
        std::function<void(const Ending& ending)> ended = nullptr;
        /// For who keeps the reply, so that no cache need: asks only for a later one than this,
        /// which may be unknown. If there is none, the reply is empty, with status 304.
        std::optional<Version> known = std::nullopt;
        /// Told how many bytes of the reply have arrived, decompressed, each time some do. Same
        /// thread. May be empty.
        std::function<void(std::size_t bytes)> arrived = nullptr;
    };

    /// Takes the body of a complete reply, whatever its status; absent if the transfer did not
    /// complete, whatever had arrived by then.
    using CompletionHandler = std::function<void(const std::optional<Data>& data)>;

    /// Posted on the thread that changes the number of open requests, without an object.
    static constexpr const char* openRequestsDidChange = "openRequestsDidChange";

    virtual ~URLSessions() = default;
    /// Starts a GET and returns at once. Handlers run in the order in which transfers complete.
    virtual void startDataTask(const Request& request, CompletionHandler handler) = 0;
    /// Runs work on the handlers' thread, after everything handed over before.
    virtual void perform(std::function<void()> work) = 0;
    /// The number of requests whose handlers have not returned yet, counting each that shares a
    /// transfer.
    [[nodiscard]] virtual std::size_t openRequests() const = 0;
};

/// All these services, as one run of the program has them. `main` creates them first and destroys
/// them last.
struct Host {
    NotificationCenter& notificationCenter;
    UserDefaults& userDefaults;
    SearchPaths& searchPaths;
    Bundle& bundle;
    Panels& panels;
    Timers& timers;
    MainThread& mainThread;
    Clock& clock;
    Log& log;
    URLSessions& urlSessions;
    Workspace& workspace;
    Events& events;
    Notices& notices;
};

} // namespace platform
