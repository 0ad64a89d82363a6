// SPDX-License-Identifier: MIT
#pragma once

#include "reports/Briefing.h"

#include <QColor>
#include <QFont>

#include <functional>
#include <span>

class QPainter;
class QTextCursor;
class QTextDocument;

/// A page of several stations' weather as a document, on a screen or on paper: one block a line, as
/// plain text. The shape of a category stands before its word.
namespace desktop {

/// Empties the document and writes all lines into it, in its default font.
void writeBriefing(QTextDocument& document, std::span<const reports::BriefingLine> lines);
/// Writes another line of the same kind in the place of one block's.
void rewriteBriefingLine(QTextDocument& document, int block, const reports::BriefingLine& line);

/// Draws the categories' shapes of a document that is laid out, in its coordinates.
void drawCategories(QPainter& painter, const QTextDocument& document,
                    const std::function<QColor(reports::Category)>& colorOf);

} // namespace desktop
