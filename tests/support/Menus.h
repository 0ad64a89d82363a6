// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>

#include <algorithm>
#include <stdexcept>

namespace support {

/// Opens the menu of a place in a widget, as the user does, and returns it.
inline QMenu& openMenu(QWidget& on, const QPoint& place,
                       QContextMenuEvent::Reason reason = QContextMenuEvent::Mouse) {
    QContextMenuEvent event(reason, place, on.mapToGlobal(place));
    QApplication::sendEvent(&on, &event);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (menu == nullptr) {
        throw std::runtime_error("no menu");
    }
    return *menu;
}

/// The entry to which titles that begin so lead from a menu or a menu bar, validated on the way.
inline QAction& entryOf(const QWidget& menus, const QStringList& titles) {
    QList<QAction*> entries = menus.actions();
    QAction* found = nullptr;
    for (const QString& title : titles) {
        const auto place = std::ranges::find_if(entries, [&title](const QAction* entry) {
            return entry->text().remove(u'&').startsWith(title);
        });
        if (place == entries.end()) {
            throw std::runtime_error("no entry " + title.toStdString());
        }
        found = *place;
        if (found->menu() != nullptr) {
            emit found->menu()->aboutToShow();
            entries = found->menu()->actions();
        }
    }
    return *found;
}

} // namespace support
