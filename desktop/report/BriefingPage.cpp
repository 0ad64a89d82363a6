// SPDX-License-Identifier: MIT
#include "desktop/report/BriefingPage.h"

#include "desktop/controls/CategoryLook.h"
#include "desktop/report/BriefingText.h"

#include <QEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace desktop {

BriefingPage::BriefingPage(QWidget* parent) : QTextEdit(parent) {
    setAccessibleName(QStringLiteral("Briefing"));
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    setUndoRedoEnabled(false);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    // A bar that came and went would change the width to which texts are wrapped.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
}

void BriefingPage::show(std::vector<reports::BriefingLine> lines) {
    const std::vector<reports::BriefingLine> before = std::exchange(lines_, std::move(lines));
    const bool isAlike = std::ranges::equal(lines_, before, {}, &reports::BriefingLine::kind,
                                            &reports::BriefingLine::kind);
    if (!isAlike) {
        write();
        return;
    }
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        if (lines_[i] != before[i]) {
            rewriteBriefingLine(*document(), static_cast<int>(i), lines_[i]);
        }
    }
}

void BriefingPage::write() {
    const int place = verticalScrollBar()->value();
    writeBriefing(*document(), lines_);
    // It was carried along to the end.
    moveCursor(QTextCursor::Start);
    verticalScrollBar()->setValue(place);
}

void BriefingPage::changeEvent(QEvent* event) {
    QTextEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        write();
    }
}

void BriefingPage::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy) && !textCursor().hasSelection()) {
        copyAll();
    } else {
        QTextEdit::keyPressEvent(event);
    }
}

void BriefingPage::paintEvent(QPaintEvent* event) {
    QTextEdit::paintEvent(event);
    QPainter painter(viewport());
    painter.translate(-horizontalScrollBar()->value(), -verticalScrollBar()->value());
    drawCategories(painter, *document(), [this](reports::Category category) {
        return categoryColor(category, palette().color(QPalette::Base));
    });
}

} // namespace desktop
