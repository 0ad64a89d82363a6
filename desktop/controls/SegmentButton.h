// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

namespace desktop {

/// One of a row of buttons of which one is down. Many themes hardly show which, so that one is
/// drawn in the palette's current selection colour, adjusted so that it stands out from the window
/// and its letters from it.
class SegmentButton final : public QPushButton {
public:
    using QPushButton::QPushButton;

    /// As narrow as a tool button. A real one would not do: assistive technology would take it for
    /// a check box.
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// A row of such buttons, which assistive technology presents as a group under its accessible name.
class SegmentGroup final : public QWidget {
public:
    explicit SegmentGroup(QWidget* parent = nullptr);
};

} // namespace desktop
