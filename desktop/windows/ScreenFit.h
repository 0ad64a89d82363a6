// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class QMainWindow;

namespace desktop {

/// Brings a window onto its screen with all of its frame when it is first shown; what the user does
/// with it later is the user's. Made just before that, and gone when it is done.
///
/// How wide the frame is the window system tells only after it has shown the window.
class ScreenFit final : public QObject {
public:
    /// Owned by the window, whose size it bounds at once.
    explicit ScreenFit(QWidget& window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& window_;
};

/// Lets a window be smaller than its content, which is scrolled then. The control that has the
/// keyboard's focus is brought into sight.
void letContentScroll(QMainWindow& window);

} // namespace desktop
