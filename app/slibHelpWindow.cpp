// SPDX-License-Identifier: MIT
#include "app/slibHelpWindow.h"

#include "slib/SupportLibCat.h"

#include <filesystem>
#include <utility>

slibHelpWindow::slibHelpWindow(Private, platform::Host& host, std::string name)
    : host_(host), windowNibName_(std::move(name)) {}

std::shared_ptr<slibHelpWindow> slibHelpWindow::initWithWindowNibName(platform::Host& host,
                                                                      std::string name) {
    return std::make_shared<slibHelpWindow>(Private{}, host, std::move(name));
}

void slibHelpWindow::awakeFromNib() {
    const std::string page = SupportLibCat::fileNameInBundle(host_, "index.html");
    std::error_code none;
    if (std::filesystem::exists(page, none)) {
        outlets.theWebHelp->loadRequest(platform::URL::file(page));
    }
}
