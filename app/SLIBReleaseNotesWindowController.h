// SPDX-License-Identifier: MIT
#pragma once

#include "app/Windows.h"
#include "platform/host/Host.h"
#include "platform/views/Outlet.h"

#include <memory>
#include <string>

/// The release notes' logic. Main thread only.
class SLIBReleaseNotesWindowController {
public:
    struct Outlets {
        platform::Outlet<platform::RichTextView> rlText{};
    };

    /// Shows its window at once. What is borrowed outlives the controller.
    [[nodiscard]] static std::shared_ptr<SLIBReleaseNotesWindowController>
    initWithWindowNibName(platform::Host& host, app::Windows& windows, std::string name);

    Outlets outlets;

    /// The name of the interface file that the window is made from.
    [[nodiscard]] const std::string& windowNibName() const { return windowNibName_; }

    /// Shows the window before all others, again if it was closed.
    void bringToFront();

private:
    /// Only the factory makes controllers.
    struct Private {};

public:
    SLIBReleaseNotesWindowController(Private, std::string name);

private:
    std::string windowNibName_;
    std::unique_ptr<platform::Window> window_;
};
