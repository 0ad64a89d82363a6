// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/Text.h"
#include "platform/Views.h"

#include <QLabel>
#include <QPushButton>

/// Plain controls of the logic on Qt widgets, which they borrow.
namespace desktop {

class PushButton final : public platform::Button {
public:
    explicit PushButton(QPushButton& button) : button_(button) {}

    void setEnabled(bool enabled) override { button_.setEnabled(enabled); }

private:
    QPushButton& button_;
};

/// Text that the user reads and cannot change.
class Label final : public platform::TextField {
public:
    explicit Label(QLabel& label) : label_(label) {}

    void setText(const std::string& text) override { label_.setText(shownText(text)); }
    void setHidden(bool hidden) override { label_.setHidden(hidden); }

private:
    QLabel& label_;
};

} // namespace desktop
