// SPDX-License-Identifier: MIT
#include "app/SLIBReleaseNotesWindowController.h"

#include "slib/SupportLibCat.h"

#include <utility>

SLIBReleaseNotesWindowController::SLIBReleaseNotesWindowController(Private, std::string name)
    : windowNibName_(std::move(name)) {}

std::shared_ptr<SLIBReleaseNotesWindowController>
SLIBReleaseNotesWindowController::initWithWindowNibName(platform::Host& host, app::Windows& windows,
                                                        std::string name) {
    auto controller =
        std::make_shared<SLIBReleaseNotesWindowController>(Private{}, std::move(name));
    controller->window_ = windows.releaseNotesWindow(*controller);
    controller->window_->showWindow();
    controller->outlets.rlText->readRTFDFromFile(
        SupportLibCat::fileNameInBundle(host, "Release Notes.rtf"));
    return controller;
}

void SLIBReleaseNotesWindowController::bringToFront() {
    window_->showWindow();
    window_->makeKey();
}
