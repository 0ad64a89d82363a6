// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"
#include "platform/views/Outlet.h"

#include <memory>
#include <string>

/// The help window's logic: shows the program's own pages, and nothing from the network. Main
/// thread only.
class slibHelpWindow {
public:
    struct Outlets {
        platform::Outlet<platform::PageView> theWebHelp{};
    };

    [[nodiscard]] static std::shared_ptr<slibHelpWindow> initWithWindowNibName(platform::Host& host,
                                                                               std::string name);

    Outlets outlets;

    /// The name of the interface file from which the window is built.
    [[nodiscard]] const std::string& windowNibName() const { return windowNibName_; }

    /// Loads the first page, once the outlet is filled. If there is no such page, the view stays
    /// empty.
    void awakeFromNib();

private:
    /// Only the factory makes controllers.
    struct Private {};

public:
    slibHelpWindow(Private, platform::Host& host, std::string name);

private:
    platform::Host& host_;
    std::string windowNibName_;
};
