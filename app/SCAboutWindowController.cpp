// SPDX-License-Identifier: MIT
#include "app/SCAboutWindowController.h"

#include "product/Addresses.h"
#include "slib/slibUtility.h"

#include <fmt/format.h>

#include <string_view>
#include <utility>

namespace {

/// Questions that the message already asks, so that its readers need not.
constexpr std::string_view whatHelps =
    "What I did:\r\n\r\n"
    "What I saw, and what I had expected:\r\n\r\n"
    "My system and its desktop, such as Debian 12 with GNOME:\r\n\r\n"
    "Attached (a picture of the window; the list or package concerned):\r\n";

} // namespace

SCAboutWindowController::SCAboutWindowController(Private, platform::Host& host, std::string name)
    : host_(host), windowNibName_(std::move(name)) {}

std::shared_ptr<SCAboutWindowController>
SCAboutWindowController::initWithWindowNibName(platform::Host& host, std::string name) {
    return std::make_shared<SCAboutWindowController>(Private{}, host, std::move(name));
}

void SCAboutWindowController::doEmailFeedback() {
    const auto version = host_.bundle.infoValue("CFBundleShortVersionString");
    const auto letter = slibUtility::slibNSStringToNSURL(
        fmt::format("mailto:{}?subject=Nosig {} feedback&body={}", product::addresses::feedback,
                    version.value_or("1.0"), whatHelps));
    if (letter) {
        host_.workspace.openURL(*letter);
    }
}

void SCAboutWindowController::doGoToWebsite() {
    host_.workspace.openURL({std::string(product::addresses::productPage)});
}
