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

/// The menus of the program's windows, all of which share the same entries. The main window's
/// controller decides the titles of its commands and whether they are enabled; it is asked each
/// time a menu opens and before a shortcut fires.
class ProgramMenus final : public QObject {
public:
    ProgramMenus();

    /// Sends choices to the delegate, and fills its outlet for the favourites' weather entry. The
    /// delegate is borrowed; before this call, and once it has gone, no entry may be chosen.
    void actOn(AppDelegate& delegate);

    /// Adds the menus to a window, which they must outlive.
    void addTo(QMainWindow& window);

    /// What the main window does when an entry is chosen; cleared when that window is destroyed.
    struct StationWindowActions {
        std::function<void()> find;
        /// A station has become a favourite, or is no longer one; or the favourites' weather has
        /// been switched on or off.
        std::function<void()> favoritesChanged;
        /// Whether a chart that has a larger version is on show, and how to open that version.
        std::function<bool()> hasLargerChart;
        std::function<void()> openLargerChart;
    };
    void setStationWindowActions(StationWindowActions actions);
    /// The entry that switches the weather of the world on and off, for the main window to bind.
    [[nodiscard]] QAction& worldWeather() { return *worldWeather_; }
    /// The entry that switches notices about favourites on and off, for the main window to bind.
    [[nodiscard]] QAction& favoriteNotices() { return *favoriteNotices_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void tellOfFavorites();
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
    /// A deque: entries must not move, since the logic keeps a pointer to one.
    std::deque<MenuEntry> validated_;
    MenuEntry* alwaysFavItem_ = nullptr;
    QAction* worldWeather_ = nullptr;
    QAction* favoriteNotices_ = nullptr;
    QAction* largerChart_ = nullptr;
    QAction* useShipped_ = nullptr;
    QAction* useAsMine_ = nullptr;
};

} // namespace desktop
