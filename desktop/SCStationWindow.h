// SPDX-License-Identifier: MIT
#pragma once

#include <QMainWindow>

#include <memory>

class SCStationWindowController;

namespace desktop {

/// The main window: binds the controls of its interface file to the controller's outlets and the
/// user's actions to its operations. Decides nothing itself.
class SCStationWindow final : public QMainWindow {
public:
    /// Fills the outlets; the controller is borrowed and outlives the window.
    explicit SCStationWindow(SCStationWindowController& controller);
    /// Empties the outlets.
    ~SCStationWindow() override;

    /// Shows the window, wide enough for its columns as far as the screen has room.
    void present();

private:
    struct Views;

    void showTableOrHint();

    SCStationWindowController& controller_;
    std::unique_ptr<Views> views_;
};

} // namespace desktop
