// SPDX-License-Identifier: MIT
#include "desktop/report/BriefingText.h"

#include "desktop/controls/CategoryLook.h"
#include "desktop/text/Text.h"

#include <QAbstractTextDocumentLayout>
#include <QFontDatabase>
#include <QPainter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>

namespace desktop {

namespace {

using reports::BriefingLine;
using Kind = BriefingLine::Kind;

/// Of a block with a category: which one.
constexpr int categoryProperty = QTextFormat::UserProperty + 1;
/// Shares of the height of a line.
constexpr double aboveStation = 1;
constexpr double aboveReport = 0.3;
constexpr double shapeHeight = 0.7;

/// On the document's device.
double lineHeight(const QTextDocument& document) {
    return QFontMetricsF(document.defaultFont(), document.documentLayout()->paintDevice())
        .lineSpacing();
}

QTextBlockFormat blockFormat(const QTextDocument& document, const BriefingLine& line) {
    // The layout fits margins to its device itself, but not the indent.
    const double height = QFontMetricsF(document.defaultFont()).lineSpacing();
    QTextBlockFormat format;
    switch (line.kind) {
    case Kind::station:
        format.setTopMargin(aboveStation * height);
        break;
    case Kind::category:
        format.setProperty(categoryProperty, static_cast<int>(line.category));
        format.setTextIndent(lineHeight(document));
        break;
    case Kind::words:
    case Kind::raw:
        break;
    }
    if (line.kind != Kind::station) {
        format.setTopMargin(aboveReport * height);
    }
    return format;
}

QTextCharFormat letters(const QTextDocument& document, Kind kind) {
    QTextCharFormat format;
    if (kind == Kind::station) {
        format.setFontWeight(QFont::Bold);
    } else if (kind == Kind::raw) {
        QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        fixed.setPointSizeF(QFontInfo(document.defaultFont()).pointSizeF());
        format.setFont(fixed);
    }
    return format;
}

/// Writes a line into the empty block at the cursor.
void writeLine(QTextCursor& cursor, const QTextDocument& document, const BriefingLine& line) {
    cursor.setBlockFormat(blockFormat(document, line));
    const QTextCharFormat format = letters(document, line.kind);
    cursor.setBlockCharFormat(format);
    QString text = line.kind == Kind::raw ? shownLines(line.text) : shownText(line.text);
    if (line.kind == Kind::station) {
        text = isolatedParts(text);
    } else if (line.kind == Kind::category) {
        QTextCharFormat bold;
        bold.setFontWeight(QFont::Bold);
        const auto comma = text.indexOf(u',');
        cursor.insertText(text.left(comma), bold);
        text.remove(0, comma);
    }
    // A line end would begin another block.
    text.replace(u'\n', QChar::LineSeparator);
    cursor.insertText(text, format);
}

} // namespace

void writeBriefing(QTextDocument& document, std::span<const BriefingLine> lines) {
    document.clear();
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    for (const BriefingLine& line : lines) {
        if (&line != lines.data()) {
            cursor.insertBlock();
        }
        writeLine(cursor, document, line);
    }
    cursor.endEditBlock();
}

void rewriteBriefingLine(QTextDocument& document, int block, const BriefingLine& line) {
    QTextCursor cursor(document.findBlockByNumber(block));
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    writeLine(cursor, document, line);
}

void drawCategories(QPainter& painter, const QTextDocument& document,
                    const std::function<QColor(reports::Category)>& colorOf) {
    painter.setRenderHint(QPainter::Antialiasing);
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QTextBlockFormat format = block.blockFormat();
        if (!format.hasProperty(categoryProperty) || block.layout()->lineCount() == 0) {
            continue;
        }
        const auto category =
            static_cast<reports::Category>(format.property(categoryProperty).toInt());
        // The line's rectangle begins after the indent, in which the shape has its place.
        const QRectF line = block.layout()->lineAt(0).naturalTextRect().translated(
            document.documentLayout()->blockBoundingRect(block).topLeft());
        const double size = shapeHeight * format.textIndent();
        const QRectF place(line.left() - format.textIndent(), line.center().y() - size / 2, size,
                           size);
        painter.fillPath(categoryShape(category, place), colorOf(category));
    }
}

} // namespace desktop
