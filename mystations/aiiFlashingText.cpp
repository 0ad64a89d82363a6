// SPDX-License-Identifier: MIT
#include "mystations/aiiFlashingText.h"

#include <chrono>
#include <cstddef>
#include <utility>

aiiFlashingText::aiiFlashingText(Private, platform::Host& host, platform::FadingTextField& field)
    : host_(host), field_(field) {}

std::shared_ptr<aiiFlashingText> aiiFlashingText::initWithFrame(platform::Host& host,
                                                                platform::FadingTextField& field) {
    auto text = std::make_shared<aiiFlashingText>(Private{}, host, field);
    text->innerInit();
    return text;
}

void aiiFlashingText::awakeFromNib() {
    innerInit();
}

void aiiFlashingText::innerInit() {
    flashSpeed_ = {0.2, 0.7, 1.3};
    currentSpeed_ = flashSpeed_[1];
}

void aiiFlashingText::applyColor(const platform::Color& color) {
    field_.setTextColor(color);
}

std::unique_ptr<platform::Timer> aiiFlashingText::blinkTimer() {
    return host_.timers.scheduleRepeating(
        std::chrono::round<std::chrono::milliseconds>(std::chrono::duration<double>(currentSpeed_)),
        [this] { doFlashie(); });
}

void aiiFlashingText::setFlashSpeed(int index) {
    if (index < 0 || index >= static_cast<int>(flashSpeed_.size())) {
        return;
    }
    currentSpeed_ = flashSpeed_[static_cast<std::size_t>(index)];
    timit_ = blinkTimer();
    onoff_ = false;
    flashing_ = true;
}

void aiiFlashingText::flash(bool on) {
    if (!on) {
        onoff_ = true;
        timit_.reset();
    }
    field_.animateAlpha(1);
    if (on) {
        if (timit_) {
            leftRunning_.push_back(std::move(timit_));
        }
        timit_ = blinkTimer();
    }
    flashing_ = on;
}

void aiiFlashingText::doFlashie() {
    field_.animateAlpha(onoff_ ? 0 : 1);
    onoff_ = !onoff_;
}

void aiiFlashingText::setText(const std::string& text) {
    field_.setText(text);
}

void aiiFlashingText::setHidden(bool hidden) {
    field_.setHidden(hidden);
    if (hidden) {
        oldFlashing_ = flashing_;
        flash(false);
    } else {
        flash(oldFlashing_);
    }
}
