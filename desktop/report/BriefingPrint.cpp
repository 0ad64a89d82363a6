// SPDX-License-Identifier: MIT
#include "desktop/report/BriefingPrint.h"

#include "desktop/report/BriefingText.h"

#include <QAbstractTextDocumentLayout>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <algorithm>

namespace desktop {

namespace {

/// Of letters on paper, in points.
constexpr double letterSize = 10;

/// The sheet on which the first line of a block begins.
int sheetOf(const QTextDocument& document, int number) {
    const QTextBlock block = document.findBlockByNumber(number);
    const double top =
        document.documentLayout()->blockBoundingRect(block).top() + block.layout()->lineAt(0).y();
    return static_cast<int>(top / document.pageSize().height());
}

/// The line that a station's name is to be on one sheet with: of its first report, or its last.
std::size_t companionOf(std::span<const reports::BriefingLine> lines, std::size_t station) {
    using Kind = reports::BriefingLine::Kind;
    std::size_t at = station;
    while (at + 1 < lines.size() && lines[at].kind != Kind::raw &&
           lines[at + 1].kind != Kind::station) {
        ++at;
    }
    return at;
}

void keepNamesWithReports(QTextDocument& document, std::span<const reports::BriefingLine> lines) {
    for (std::size_t i = 1; i < lines.size(); ++i) {
        if (lines[i].kind == reports::BriefingLine::Kind::station &&
            sheetOf(document, static_cast<int>(i)) !=
                sheetOf(document, static_cast<int>(companionOf(lines, i)))) {
            QTextCursor cursor(document.findBlockByNumber(static_cast<int>(i)));
            QTextBlockFormat format;
            format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
            cursor.mergeBlockFormat(format);
        }
    }
}

} // namespace

bool printBriefing(QPagedPaintDevice& device, std::span<const reports::BriefingLine> lines,
                   const QString& time) {
    QPainter painter;
    if (!painter.begin(&device)) {
        return false;
    }
    QFont font;
    font.setPointSizeF(letterSize);
    QTextDocument document;
    document.setDefaultFont(font);
    document.setDocumentMargin(0);
    document.documentLayout()->setPaintDevice(&device);
    QTextOption wrapped = document.defaultTextOption();
    wrapped.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document.setDefaultTextOption(wrapped);

    const double foot = 2 * QFontMetricsF(font, &device).lineSpacing();
    const QRectF body(0, 0, device.width(), std::max<double>(device.height() - foot, foot));
    document.setPageSize(body.size());
    writeBriefing(document, lines);
    keepNamesWithReports(document, lines);

    QAbstractTextDocumentLayout::PaintContext context;
    context.palette.setColor(QPalette::Text, Qt::black);
    const int sheets = document.pageCount();
    bool isFirst = true;
    for (int sheet = 1; sheet <= sheets; ++sheet) {
        if (!device.pageRanges().isEmpty() && !device.pageRanges().contains(sheet)) {
            continue;
        }
        if (!isFirst && !device.newPage()) {
            return false;
        }
        isFirst = false;
        painter.save();
        painter.translate(0, -(sheet - 1) * body.height());
        context.clip = body.translated(0, (sheet - 1) * body.height());
        painter.setClipRect(context.clip);
        document.documentLayout()->draw(&painter, context);
        drawCategories(painter, document, [](reports::Category) { return QColor(Qt::black); });
        painter.restore();
        painter.setFont(font);
        painter.setPen(Qt::black);
        const QRectF last(0, body.height(), body.width(), foot);
        painter.drawText(last, Qt::AlignBottom | Qt::AlignLeft,
                         QStringLiteral("Printed %1. No briefing for flight.").arg(time));
        painter.drawText(last, Qt::AlignBottom | Qt::AlignRight,
                         QStringLiteral("%1 of %2").arg(sheet).arg(sheets));
    }
    return painter.end();
}

} // namespace desktop
