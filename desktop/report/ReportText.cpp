// SPDX-License-Identifier: MIT
#include "desktop/report/ReportText.h"

#include <QKeyEvent>
#include <QRegularExpression>
#include <QTextBlockFormat>
#include <QTextCursor>

#include <algorithm>
#include <cmath>

namespace desktop {

namespace {

/// A line is not broken between a number and its unit. Copied, the text has ordinary spaces.
QString withUnitsKept(QString sentence) {
    static const QRegularExpression space(QStringLiteral("(?<=\\d) "));
    return sentence.replace(space, QString(QChar::Nbsp));
}

} // namespace

ReportText::ReportText(const QString& name, QWidget* parent) : QTextEdit(parent) {
    setAccessibleName(name);
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    hide();
}

void ReportText::showLines(const QString& lines) {
    showEntries(lines.isEmpty() ? QList<Entry>() : QList<Entry>{{{}, lines}}, Layout::below);
}

void ReportText::showEntries(const QList<Entry>& entries, Layout layout) {
    if (entries != entries_ || layout != layout_) {
        entries_ = entries;
        layout_ = layout;
        write();
    }
    setVisible(!entries_.isEmpty());
}

void ReportText::write() {
    QTextCharFormat name;
    name.setFontWeight(QFont::DemiBold);
    QFont bold = font();
    bold.setWeight(QFont::DemiBold);
    const QFontMetrics metrics(bold);
    const double gap = metrics.horizontalAdvance(u'M');
    double indent = gap;
    for (const Entry& entry : entries_) {
        if (layout_ == Layout::beside) {
            indent = std::max(indent, metrics.horizontalAdvance(entry.name) + gap);
        }
    }
    QTextBlockFormat hanging;
    if (layout_ == Layout::beside) {
        hanging.setLeftMargin(indent);
        hanging.setTextIndent(-indent);
    }
    setTabStopDistance(indent);
    clear();
    QTextCursor cursor(document());
    const auto startLine = [&](const QTextBlockFormat& format) {
        if (!document()->isEmpty()) {
            cursor.insertBlock();
        }
        cursor.setBlockFormat(format);
    };
    for (const Entry& entry : entries_) {
        startLine(hanging);
        if (!entry.name.isEmpty()) {
            cursor.insertText(entry.name, name);
            if (layout_ == Layout::beside) {
                cursor.insertText(QStringLiteral("\t"), {});
            } else if (!entry.text.isEmpty()) {
                QTextBlockFormat below;
                below.setLeftMargin(indent);
                startLine(below);
            }
        }
        cursor.insertText(entry.name.isEmpty() ? entry.text : withUnitsKept(entry.text), {});
    }
    moveCursor(QTextCursor::Start);
    fit();
}

void ReportText::fit() {
    document()->setTextWidth(viewport()->width());
    setFixedHeight(static_cast<int>(std::ceil(document()->size().height())) + 2 * frameWidth());
}

bool ReportText::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
        event->setAccepted(textCursor().hasSelection());
        return true;
    }
    return QTextEdit::event(event);
}

void ReportText::changeEvent(QEvent* event) {
    QTextEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        write();
    }
}

void ReportText::resizeEvent(QResizeEvent* event) {
    QTextEdit::resizeEvent(event);
    fit();
}

void ReportText::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

} // namespace desktop
