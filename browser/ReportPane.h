// SPDX-License-Identifier: MIT
#pragma once

#include "platform/views/Outlet.h"

#include <string>

/// A pane of reports: collects the texts of a walk over stations, and shows them together once they
/// are complete. Main thread only.
class ReportPane {
public:
    /// Shows text in whatever view `outlet` holds at the time. The outlet must outlive the pane.
    explicit ReportPane(const platform::Outlet<platform::TextView>& outlet) : outlet_(outlet) {}

    /// Discards what was collected, and shows `text` until `show` is called.
    void begin(const std::string& text) {
        gathered_.clear();
        outlet_->setString(text);
    }
    /// Appends a station's report, or the heading of the reports that follow, on lines of its own.
    void add(const std::string& text) { gathered_ += text + "\n"; }
    void show() { outlet_->setString(gathered_); }

private:
    const platform::Outlet<platform::TextView>& outlet_;
    std::string gathered_;
};
