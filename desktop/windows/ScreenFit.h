// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class QMainWindow;

namespace desktop {

/// Brings a window with its whole frame onto its screen when it is first shown, and leaves it to
/// the user afterwards. Must be created just before that, and deletes itself when it is done.
///
/// It has to wait because the window system reports the frame's width only after showing the
/// window.
class ScreenFit final : public QObject {
public:
    /// Owned by the window, whose size it limits to the screen's at once.
    explicit ScreenFit(QWidget& window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& window_;
};

/// Lets a window be smaller than its content, which then scrolls. A control that receives the
/// keyboard focus is scrolled into view.
void letContentScroll(QMainWindow& window);

} // namespace desktop
