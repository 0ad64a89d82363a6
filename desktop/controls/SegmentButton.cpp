// SPDX-License-Identifier: MIT
#include "desktop/controls/SegmentButton.h"

#include "desktop/controls/Contrast.h"

#include <QAccessibleWidget>
#include <QPainter>
#include <QStyleOption>

namespace desktop {

namespace {

constexpr double rounding = 2;
/// Between the button's edge and its focus frame.
constexpr double focusGap = 2;

} // namespace

QSize SegmentButton::sizeHint() const {
    const QFontMetrics metrics = fontMetrics();
    QStyleOptionToolButton option;
    option.initFrom(this);
    const QSize words = metrics.size(Qt::TextShowMnemonic, text());
    return style()->sizeFromContents(
        QStyle::CT_ToolButton, &option,
        words.grownBy({metrics.averageCharWidth(), 0, metrics.averageCharWidth(), 0}), this);
}

void SegmentButton::paintEvent(QPaintEvent* event) {
    if (!isChecked()) {
        QPushButton::paintEvent(event);
        return;
    }
    const QPalette& colors = palette();
    const Filling filling =
        legible(colors.color(QPalette::Highlight), colors.color(QPalette::HighlightedText),
                colors.color(QPalette::Window));
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(filling.ground);
    painter.drawRoundedRect(rect(), rounding, rounding);
    painter.setPen(filling.letters);
    const bool showsLetters = style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, this) != 0;
    painter.drawText(rect(),
                     Qt::AlignCenter | Qt::TextForceLeftToRight |
                         (showsLetters ? Qt::TextShowMnemonic : Qt::TextHideMnemonic),
                     text());
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(focusGap + 0.5, focusGap + 0.5,
                                                        -focusGap - 0.5, -focusGap - 0.5),
                                rounding, rounding);
    }
}

SegmentGroup::SegmentGroup(QWidget* parent) : QWidget(parent) {
    // The registry owns it.
    QAccessible::registerAccessibleInterface(new QAccessibleWidget(this, QAccessible::Grouping));
}

} // namespace desktop
