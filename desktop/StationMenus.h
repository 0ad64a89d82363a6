// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/Controls.h"

#include <QObject>

#include <deque>
#include <functional>

class QComboBox;
class QMainWindow;
class SCStationWindowController;

namespace desktop {

/// The menus of the main window. The controller says what an entry is called and whether it may
/// be chosen: asked when a menu opens, and before a shortcut fires.
class StationMenus final : public QObject {
public:
    /// What the window itself does at a choice.
    struct Actions {
        std::function<void()> find;
        /// A station was made a favourite, or no longer.
        std::function<void()> favoritesChanged;
    };

    /// Everything is borrowed. The distances are the items of `distances`, which a choice in the
    /// menu sets.
    StationMenus(QMainWindow& window, SCStationWindowController& controller, QComboBox& distances,
                 Actions actions);

    [[nodiscard]] MenuEntry& alwaysFavItem() { return *alwaysFavItem_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void validate();

    QMainWindow& window_;
    SCStationWindowController& controller_;
    Actions actions_;
    /// Entries do not move: the controller keeps one.
    std::deque<MenuEntry> entries_;
    MenuEntry* alwaysFavItem_ = nullptr;
};

} // namespace desktop
