// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

class QTextDocument;

namespace desktop {

inline constexpr qint64 longestRTF = 1 << 20;

/// Shows rich text (RTF 1.9) in a document, as far as the program's own release notes use it:
/// paragraphs and their indents, line breaks, tabs, bullets, bold, italic, font sizes, and
/// characters given by code. Other control words are ignored, and so are whole groups that hold no
/// text, such as font tables. Does nothing if the bytes are not RTF.
void showRTF(QTextDocument& document, const QByteArray& rtf);

} // namespace desktop
