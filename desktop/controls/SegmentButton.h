// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

namespace desktop {

/// One of a row of buttons of which one is down. Many themes hardly tell which: this one is drawn
/// in the colour of selections then, as the palette has it at that time, so that it stands out from
/// the window and its letters from it.
class SegmentButton final : public QPushButton {
public:
    using QPushButton::QPushButton;

    /// As narrow as a tool button, which assistive technology would take for a check box.
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// A row of such buttons: assistive technology reads it as a group of its accessible name.
class SegmentGroup final : public QWidget {
public:
    explicit SegmentGroup(QWidget* parent = nullptr);
};

} // namespace desktop
