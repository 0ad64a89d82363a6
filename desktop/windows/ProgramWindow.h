// SPDX-License-Identifier: MIT
#pragma once

#include "platform/views/Views.h"

#include <QMainWindow>
#include <QSettings>

namespace desktop {

class ProgramMenus;

/// What all windows of the program have in common: the menus, a content that scrolls where the
/// window must be smaller, and a memory. Closed, a window is only hidden, and comes back as it was.
///
/// Where it lies, how large it is and where its splitters stand is remembered in the settings, in a
/// group of its own name; restored only onto a screen that exists, and no larger than that.
class ProgramWindow : public QMainWindow, public platform::Window {
public:
    void showWindow() override;
    void makeKey() override;

protected:
    /// Both are borrowed.
    ProgramWindow(ProgramMenus& menus, QSettings& memory);

    /// Lays the window out, just before it is shown for the first time.
    virtual void arrange() {}
    /// What a window remembers beside the above; called within its group.
    virtual void recall(const QSettings& /*memory*/) {}
    virtual void remember(QSettings& /*memory*/) const {}

    void closeEvent(QCloseEvent* event) override;

private:
    void recallAll();
    void rememberAll();

    QSettings& memory_;
    bool isArranged_ = false;
};

} // namespace desktop
