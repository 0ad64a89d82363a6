// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"
#include "platform/views/Views.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

/// A text that can blink at one of three speeds, visible and invisible for one interval each. It
/// does not blink until `flash` or `setFlashSpeed` is called. Main thread only.
class aiiFlashingText final : public platform::TextField {
public:
    /// Wraps a field that its interface file has laid out. Both arguments are borrowed.
    [[nodiscard]] static std::shared_ptr<aiiFlashingText>
    initWithFrame(platform::Host& host, platform::FadingTextField& field);

    /// Sets the text up, once the window is loaded.
    void awakeFromNib();
    void applyColor(const platform::Color& color);
    /// 0 is fast, 2 is slow; any other index changes nothing.
    /// Kept: windows rely on it to make a hint blink that is still hidden. It starts even a field
    /// that is not blinking.
    void setFlashSpeed(int index);
    /// Starts or stops blinking.
    /// Kept: windows stop it before they start it again. A second start leaves two timers blinking
    /// the field, and the next stop ends only the later one.
    void flash(bool on);
    /// Performs one blink step.
    void doFlashie();

    void setText(const std::string& text) override;
    /// Hiding stops the blinking; showing restores what it was before.
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
    /// Whether the text was blinking when it was hidden.
    bool oldFlashing_ = false;
    std::unique_ptr<platform::Timer> timit_;
    /// The timers that a second start has left running.
    std::vector<std::unique_ptr<platform::Timer>> leftRunning_;
};
