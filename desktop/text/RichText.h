// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

class QTextDocument;

namespace desktop {

inline constexpr qint64 longestRTF = 1 << 20;

/// Shows rich text (RTF 1.9) in a document, as far as the program's own release notes use it:
/// paragraphs with their indents, line breaks, tabs, bullets, bold, italic, letter sizes, and
/// characters by code. Other words are passed over; so are whole groups that are no text, such as
/// tables of fonts. What is no RTF changes nothing.
void showRTF(QTextDocument& document, const QByteArray& rtf);

} // namespace desktop
