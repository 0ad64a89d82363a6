// SPDX-License-Identifier: MIT
#include "desktop/map/MapView.h"

#include "desktop/text/Text.h"

#include <QApplication>
#include <QGestureEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QToolTip>
#include <QWheelEvent>

#include <cmath>

/// How the map responds to the user.
namespace desktop {

namespace {

/// In points; a pointer this near to a dot counts as on it.
constexpr double reach = 8;
/// The part of the view's size that an arrow key moves by.
constexpr double keyStep = 0.2;
/// Degrees per point dragged, and per press of an arrow key.
constexpr double turnByPoint = 0.3;
constexpr double tiltByPoint = 0.15;
constexpr double turnByKey = 15;
/// Wheel units per level: a notch is 120 units, half a level.
constexpr double unitsByLevel = 240;

} // namespace

void MapView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        pressed_ = last_ = event->position();
        dragging_ = false;
    }
}

void MapView::mouseMoveEvent(QMouseEvent* event) {
    const QPointF at = event->position();
    if (!pressed_ || !(event->buttons() & Qt::LeftButton)) {
        point(at);
        return;
    }
    if (!dragging_ && (at - *pressed_).manhattanLength() < QApplication::startDragDistance()) {
        return;
    }
    dragging_ = true;
    setCursor(Qt::ClosedHandCursor);
    const QPointF by = at - last_;
    last_ = at;
    if (state_.isTilted() && !(event->modifiers() & Qt::ShiftModifier)) {
        turnBy(-by.x() * turnByPoint, -by.y() * tiltByPoint);
    } else {
        moveBy(by);
    }
}

void MapView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && pressed_) {
        pressed_.reset();
        if (!dragging_) {
            click(event->position());
        }
        point(event->position());
    }
}

void MapView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        zoomBy(2, event->position());
    }
}

void MapView::point(const QPointF& at) {
    const auto before = state_.pointed;
    const bool onCredit = furniture_.creditPlace().contains(at);
    state_.pointed =
        onCredit ? std::nullopt : state_.index.nearest(state_.view, {at.x(), at.y()}, reach);
    setCursor(state_.pointed || onCredit ? Qt::PointingHandCursor : Qt::OpenHandCursor);
    if (state_.pointed != before) {
        update();
    }
}

void MapView::click(const QPointF& at) {
    point(at);
    if (state_.pointed && stationClicked) {
        stationClicked(*state_.pointed);
    } else if (furniture_.creditPlace().contains(at) && creditClicked) {
        creditClicked(loader_->servers()[*state_.server].creditPage);
    }
}

void MapView::wheelEvent(QWheelEvent* event) {
    zoomBy(std::exp2(event->angleDelta().y() / unitsByLevel), event->position());
    event->accept();
}

void MapView::keyPressEvent(QKeyEvent* event) {
    const QPointF middle(state_.view.size().width / 2, state_.view.size().height / 2);
    const bool turns = state_.isTilted() && (event->modifiers() & Qt::ShiftModifier);
    const double across = turns ? 0 : 2 * keyStep * middle.x();
    const double along = turns ? 0 : 2 * keyStep * middle.y();
    switch (event->key()) {
    case Qt::Key_Left:
        turns ? turnBy(-turnByKey, 0) : moveBy({across, 0});
        break;
    case Qt::Key_Right:
        turns ? turnBy(turnByKey, 0) : moveBy({-across, 0});
        break;
    case Qt::Key_Up:
        turns ? turnBy(0, turnByKey) : moveBy({0, along});
        break;
    case Qt::Key_Down:
        turns ? turnBy(0, -turnByKey) : moveBy({0, -along});
        break;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoomBy(2, middle);
        break;
    case Qt::Key_Minus:
        zoomBy(0.5, middle);
        break;
    case Qt::Key_Home:
        if (set_) {
            setRegion(platform::Region(*set_));
        }
        break;
    default:
        event->ignore();
    }
}

void MapView::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    state_.hasFocus = event->reason() != Qt::MouseFocusReason;
    update();
}

void MapView::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    state_.hasFocus = false;
    update();
}

bool MapView::event(QEvent* event) {
    if (event->type() == QEvent::Gesture) {
        if (const auto* pinch = static_cast<QPinchGesture*>(
                static_cast<QGestureEvent*>(event)->gesture(Qt::PinchGesture))) {
            zoomBy(pinch->scaleFactor(), mapFromGlobal(pinch->centerPoint()));
            moveBy(pinch->centerPoint() - pinch->lastCenterPoint());
            return true;
        }
    } else if (event->type() == QEvent::NativeGesture) {
        const auto* gesture = static_cast<QNativeGestureEvent*>(event);
        if (gesture->gestureType() == Qt::ZoomNativeGesture) {
            zoomBy(1 + gesture->value(), gesture->position());
            return true;
        }
    } else if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        const QString text = helpAt(help->pos());
        if (text.isEmpty()) {
            QToolTip::hideText();
        } else {
            QToolTip::showText(help->globalPos(), toolTipOf(text), this);
        }
        return true;
    } else if (event->type() == QEvent::Leave && state_.pointed) {
        state_.pointed.reset();
        update();
    }
    return QWidget::event(event);
}

} // namespace desktop
