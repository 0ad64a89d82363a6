// SPDX-License-Identifier: MIT
#include "app/SCAboutWindowController.h"

#include "platform/Addresses.h"

#include <fmt/format.h>

#include <utility>

SCAboutWindowController::SCAboutWindowController(Private, platform::Host& host, std::string name)
    : host_(host), windowNibName_(std::move(name)) {}

std::shared_ptr<SCAboutWindowController>
SCAboutWindowController::initWithWindowNibName(platform::Host& host, std::string name) {
    return std::make_shared<SCAboutWindowController>(Private{}, host, std::move(name));
}

void SCAboutWindowController::doEmailFeedback() {
    const auto version = host_.bundle.infoValue("CFBundleShortVersionString");
    host_.workspace.openURL({fmt::format("mailto:{}?subject=Nosig%20{}%20feedback",
                                         platform::addresses::feedback, version.value_or("1.0"))});
}

void SCAboutWindowController::doGoToWebsite() {
    host_.workspace.openURL({std::string(platform::addresses::productPage)});
}
