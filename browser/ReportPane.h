// SPDX-License-Identifier: MIT
#pragma once

#include "platform/views/Outlet.h"

#include <string>

/// A pane of reports: gathers the texts of a walk over stations and shows them together, once they
/// are complete. Main thread only.
class ReportPane {
public:
    /// Shows in whatever view `outlet` holds by then. The outlet outlives it.
    explicit ReportPane(const platform::Outlet<platform::TextView>& outlet) : outlet_(outlet) {}

    /// Forgets what was gathered, and shows `text` until there is something to show.
    void begin(const std::string& text) {
        gathered_.clear();
        outlet_->setString(text);
    }
    /// Takes a station's report, or the heading of those that follow, as lines of its own.
    void add(const std::string& text) { gathered_ += text + "\n"; }
    void show() { outlet_->setString(gathered_); }

private:
    const platform::Outlet<platform::TextView>& outlet_;
    std::string gathered_;
};
