// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace platform {

/// Tells the user something outside the program's windows, through the desktop's service for that.
/// The service may be missing, and may come and go. Nothing here waits for it. Main thread only.
class Notices {
public:
    struct Notice {
        /// One line each, in plain text, whatever is in it.
        std::string title;
        std::vector<std::string> lines;
        /// Called if the user chooses the notice, at most once. May be empty.
        std::function<void()> chosen;
    };

    /// Posted on the main thread when `canShow` has changed. No object.
    static constexpr const char* didChange = "noticesDidChange";

    virtual ~Notices() = default;
    /// Looks for the service, so that `canShow` will tell.
    virtual void prepare() = 0;
    /// Whether there is a service that shows notices; absent until that is known.
    [[nodiscard]] virtual std::optional<bool> canShow() const = 0;
    /// Shows a notice, as soon as it is known that there is a service. If there is none, the notice
    /// is not shown, not even later, but logged in one line.
    virtual void show(const Notice& notice) = 0;
};

} // namespace platform
