// SPDX-License-Identifier: MIT
#pragma once

#include "platform/views/Views.h"

#include <QMainWindow>
#include <QSettings>

namespace desktop {

class ProgramMenus;

/// What all windows of the program have in common: the menus, content that scrolls if the window is
/// too small for it, and remembered settings. Closing a window only hides it, and it comes back as
/// it was.
///
/// The position, size and splitter positions of a window are kept in the settings, in a group of
/// the window's object name. They are restored only onto a screen that exists, and no larger than
/// that screen.
class ProgramWindow : public QMainWindow, public platform::Window {
public:
    void showWindow() override;
    void makeKey() override;

protected:
    /// Both are borrowed.
    ProgramWindow(ProgramMenus& menus, QSettings& memory);

    /// Lays out the window just before it is first shown.
    virtual void arrange() {}
    /// Restore and save what a window remembers beyond that; called within its group.
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
