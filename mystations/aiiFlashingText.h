// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"
#include "platform/views/Views.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

/// A text that can blink at one of three speeds, visible and invisible for one interval each. It
/// stands still until `flash` or `setFlashSpeed`. Main thread only.
class aiiFlashingText final : public platform::TextField {
public:
    /// Over a field that stands where its interface file puts it. Both are borrowed.
    [[nodiscard]] static std::shared_ptr<aiiFlashingText>
    initWithFrame(platform::Host& host, platform::FadingTextField& field);

    /// Set-up, once the window is loaded.
    void awakeFromNib();
    void applyColor(const platform::Color& color);
    /// 0 is fast, 2 slow.
    /// Kept: it starts even a field that stands still; windows count on it to set a hint blinking
    /// that is still hidden. Any other index changes nothing.
    void setFlashSpeed(int index);
    /// Starts or stops blinking.
    /// Kept: a second start leaves two timers blinking the field, of which the next stop ends the
    /// later one; windows stop it before they start it again.
    void flash(bool on);
    /// One blink step.
    void doFlashie();

    void setText(const std::string& text) override;
    /// Hiding stops the blinking; showing brings back what was before.
    void setHidden(bool hidden) override;

private:
    /// Only the factory makes fields.
    struct Private {};

public:
    aiiFlashingText(Private, platform::Host& host, platform::FadingTextField& field);

private:
    void innerInit();
    [[nodiscard]] std::unique_ptr<platform::Timer> blinkTimer();

    platform::Host& host_;
    platform::FadingTextField& field_;
    /// Seconds.
    std::array<double, 3> flashSpeed_{};
    double currentSpeed_ = 0;
    /// Whether the next step hides the text.
    bool onoff_ = false;
    bool flashing_ = false;
    /// Whether it was blinking when it was hidden.
    bool oldFlashing_ = false;
    std::unique_ptr<platform::Timer> timit_;
    /// Those that a second start has left running.
    std::vector<std::unique_ptr<platform::Timer>> leftRunning_;
};
