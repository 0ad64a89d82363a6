// SPDX-License-Identifier: MIT
#include "desktop/host/UserEvents.h"

#include <QApplication>
#include <QMouseEvent>

namespace desktop {

UserEvents::UserEvents() {
    qApp->installEventFilter(this);
}

double UserEvents::doubleClickInterval() const {
    return QApplication::doubleClickInterval() / 1000.0;
}

bool UserEvents::eventFilter(QObject* watched, QEvent* event) {
    if (event->isInputEvent()) {
        const auto timestamp =
            static_cast<double>(static_cast<QInputEvent*>(event)->timestamp()) / 1000;
        current_ = {other, timestamp};
        switch (event->type()) {
        case QEvent::MouseMove:
            current_.type = mouseMoved;
            break;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseButtonRelease:
            if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
                current_.type =
                    event->type() == QEvent::MouseButtonRelease ? leftMouseUp : leftMouseDown;
            }
            break;
        default:
            break;
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace desktop
