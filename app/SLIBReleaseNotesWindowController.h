// SPDX-License-Identifier: MIT
#pragma once

#include "app/Windows.h"
#include "platform/host/Host.h"
#include "platform/views/Outlet.h"

#include <memory>
#include <string>

/// The release notes window's logic. Main thread only.
class SLIBReleaseNotesWindowController {
public:
    struct Outlets {
        platform::Outlet<platform::RichTextView> rlText{};
    };

    /// Shows the window at once. The borrowed arguments must outlive the controller.
    [[nodiscard]] static std::shared_ptr<SLIBReleaseNotesWindowController>
    initWithWindowNibName(platform::Host& host, app::Windows& windows, std::string name);

    Outlets outlets;

    /// The name of the interface file from which the window is built.
    [[nodiscard]] const std::string& windowNibName() const { return windowNibName_; }

    /// Brings the window to the front, reopening it if it was closed.
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
