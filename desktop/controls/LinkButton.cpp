// SPDX-License-Identifier: MIT
#include "desktop/controls/LinkButton.h"

#include "desktop/controls/Contrast.h"

#include <QPainter>
#include <QStyleOption>

namespace desktop {

namespace {

/// For the focus frame.
constexpr int margin = 2;
constexpr int leastLetters = 12;
constexpr int flags =
    Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap | Qt::TextForceLeftToRight;

} // namespace

LinkButton::LinkButton(QWidget* parent) : QPushButton(parent) {
    setFlat(true);
    setCursor(Qt::PointingHandCursor);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void LinkButton::setWords(const QString& words) {
    if (words != words_) {
        words_ = words;
        setText(QString(words).replace(u'&', QStringLiteral("&&")));
        updateGeometry();
    }
}

QSize LinkButton::sizeHint() const {
    return fontMetrics().size(0, words_).grownBy({margin, margin, margin, margin});
}

QSize LinkButton::minimumSizeHint() const {
    return {leastLetters * fontMetrics().averageCharWidth(), fontMetrics().height() + 2 * margin};
}

int LinkButton::heightForWidth(int width) const {
    const QRect room(0, 0, width - 2 * margin, QWIDGETSIZE_MAX);
    return fontMetrics().boundingRect(room, flags, words_).height() + 2 * margin;
}

void LinkButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    QFont underlined = font();
    underlined.setUnderline(true);
    painter.setFont(underlined);
    const QPalette& colors = palette();
    painter.setPen(
        standingOut(colors.color(QPalette::Link), colors.color(QPalette::Window), contrastOfText));
    painter.drawText(rect().adjusted(margin, margin, -margin, -margin), flags, words_);
    if (hasFocus()) {
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

} // namespace desktop
