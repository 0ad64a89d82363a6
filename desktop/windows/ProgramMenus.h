// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/controls/Controls.h"

#include <QObject>

#include <deque>
#include <functional>
#include <string_view>
#include <vector>

class AppDelegate;
class QMainWindow;

namespace desktop {

/// The menus that every window of the program carries; their entries are the same ones everywhere.
/// The main window's controller says what an entry is called and whether it may be chosen: asked
/// when a menu opens, and before a shortcut fires.
class ProgramMenus final : public QObject {
public:
    ProgramMenus();

    /// From now on choices go to the delegate, which knows the entry of the favourites' weather by
    /// then. It is borrowed; before, and once it has gone, nothing must be chosen.
    void actOn(AppDelegate& delegate);

    /// Puts the menus into a window, which they outlive.
    void addTo(QMainWindow& window);

    /// What the main window does at a choice; it takes them back when it dies.
    struct StationWindowActions {
        std::function<void()> find;
        /// A station was made a favourite, or no longer.
        std::function<void()> favoritesChanged;
        /// Whether a chart is on show that has a larger one, and to open that.
        std::function<bool()> hasLargerChart;
        std::function<void()> openLargerChart;
    };
    void setStationWindowActions(StationWindowActions actions);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void addProgramEntries();
    void addStationEntries();
    void addWindowEntries();
    QAction& add(std::vector<QAction*>& menu, const QString& title, const QKeySequence& shortcut,
                 std::function<void()> chosen, Qt::ConnectionType connection = Qt::AutoConnection);
    MenuEntry& addValidated(std::vector<QAction*>& menu, const QString& title,
                            std::string_view operation, const QKeySequence& shortcut,
                            std::function<void()> chosen);
    void validate();

    AppDelegate* delegate_ = nullptr;
    StationWindowActions stationWindow_;
    std::vector<QAction*> program_;
    std::vector<QAction*> stations_;
    std::vector<QAction*> near_;
    std::vector<QAction*> windows_;
    std::vector<QAction*> help_;
    /// Entries do not move: the controller keeps one.
    std::deque<MenuEntry> validated_;
    MenuEntry* alwaysFavItem_ = nullptr;
    QAction* largerChart_ = nullptr;
};

} // namespace desktop
