// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

#include <memory>
#include <string>

/// The about window's logic. Main thread only.
class SCAboutWindowController {
public:
    [[nodiscard]] static std::shared_ptr<SCAboutWindowController>
    initWithWindowNibName(platform::Host& host, std::string name);

    /// The name of the interface file from which the window is built.
    [[nodiscard]] const std::string& windowNibName() const { return windowNibName_; }

    /// Opens a message to the developers in the user's mail program. Its subject names the program
    /// and its version; its body asks for what a report needs.
    void doEmailFeedback();
    /// Opens the product's page in the user's browser.
    void doGoToWebsite();

private:
    /// Only the factory makes controllers.
    struct Private {};

public:
    SCAboutWindowController(Private, platform::Host& host, std::string name);

private:
    platform::Host& host_;
    std::string windowNibName_;
};
