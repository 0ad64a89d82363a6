// SPDX-License-Identifier: MIT
#include "desktop/windows/ScreenFit.h"

#include <QApplication>
#include <QEvent>
#include <QLayout>
#include <QMainWindow>
#include <QScreen>
#include <QScrollArea>

#include <algorithm>

namespace desktop {

namespace {

/// Shows its content as large as there is room for, but no smaller than its layout allows.
class Scroller final : public QScrollArea {
public:
    explicit Scroller(QWidget* content) {
        setFrameShape(QFrame::NoFrame);
        setFocusPolicy(Qt::NoFocus);
        setWidget(content);
        connect(qApp, &QApplication::focusChanged, this,
                [this](const QWidget* /*before*/, QWidget* now) {
                    if (now && widget()->isAncestorOf(now)) {
                        ensureWidgetVisible(now);
                    }
                });
    }

    [[nodiscard]] QSize sizeHint() const override { return widget()->sizeHint(); }

protected:
    void resizeEvent(QResizeEvent* event) override {
        QScrollArea::resizeEvent(event);
        fit();
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == widget() && event->type() == QEvent::LayoutRequest) {
            fit();
        }
        return QScrollArea::eventFilter(watched, event);
    }

private:
    /// The toolkit's own resizing would make wrapping content as high as its size hint.
    void fit() {
        const QSize room = viewport()->size();
        const int width = std::max(room.width(), widget()->minimumSizeHint().width());
        const int height = std::max(widget()->minimumSizeHint().height(),
                                    widget()->layout()->minimumHeightForWidth(width));
        widget()->resize(width, std::max(room.height(), height));
    }
};

} // namespace

ScreenFit::ScreenFit(QWidget& window) : QObject(&window), window_(window) {
    window.resize(window.size().boundedTo(window.screen()->availableSize()));
    window.installEventFilter(this);
}

bool ScreenFit::eventFilter(QObject* watched, QEvent* event) {
    const QRect before = window_.geometry();
    const QRect frame = window_.frameGeometry();
    if (watched == &window_ && window_.isVisible() && frame != before) {
        window_.removeEventFilter(this);
        deleteLater();
        if (!window_.isMaximized() && !window_.isFullScreen()) {
            const QMargins margins(before.left() - frame.left(), before.top() - frame.top(),
                                   frame.right() - before.right(),
                                   frame.bottom() - before.bottom());
            const QRect room = window_.screen()->availableGeometry().marginsRemoved(margins);
            QRect fitting(before.topLeft(), before.size().boundedTo(room.size()));
            fitting.moveLeft(
                std::clamp(fitting.left(), room.left(), room.right() + 1 - fitting.width()));
            fitting.moveTop(
                std::clamp(fitting.top(), room.top(), room.bottom() + 1 - fitting.height()));
            window_.setGeometry(fitting);
        }
    }
    return QObject::eventFilter(watched, event);
}

void letContentScroll(QMainWindow& window) {
    QWidget* focused = window.focusWidget();
    window.setCentralWidget(new Scroller(window.takeCentralWidget()));
    // Lost when the content moved into the scroller.
    if (focused) {
        focused->setFocus();
    }
}

} // namespace desktop
