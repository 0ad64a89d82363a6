// SPDX-License-Identifier: MIT
#pragma once

#include "platform/text/Text.h"

#include <QFile>
#include <QString>
#include <QStringList>
#include <QTextDocument>

#include <algorithm>
#include <string>
#include <string_view>

/// Converts text to Qt's and back. Bytes that are not UTF-8 become U+FFFD.
namespace desktop {

/// Keeps every character: for addresses, settings and whatever else the program works with.
[[nodiscard]] inline QString exactText(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// Lines to show to the user, without control characters and characters that change the direction
/// of writing: with these a file or a reply could make one text look like another. Line ends and
/// tabs stay.
[[nodiscard]] inline QString shownLines(std::string_view utf8) {
    return exactText(platform::withoutControls(utf8));
}

/// The same on one line: line ends and tabs become spaces.
[[nodiscard]] inline QString shownText(std::string_view utf8) {
    // The fast path for most table cells.
    if (std::all_of(utf8.begin(), utf8.end(), [](char c) { return c >= ' ' && c < '\x7F'; })) {
        return QString::fromLatin1(utf8.data(), static_cast<qsizetype>(utf8.size()));
    }
    QString text = shownLines(utf8);
    std::replace_if(
        text.begin(), text.end(),
        [](QChar c) {
            return c == u'\n' || c == u'\r' || c == u'\t' || c == QChar::LineSeparator ||
                   c == QChar::ParagraphSeparator;
        },
        u' ');
    return text;
}

/// A tool tip that shows the text as it is, in broken lines. Plain text would stay on one line, and
/// would be read as markup if it looked like it, as a name or a report from outside may.
[[nodiscard]] inline QString toolTipOf(const QString& text) {
    return Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal);
}

/// Decodes a path of the file system.
[[nodiscard]] inline QString pathText(const std::string& path) {
    return QFile::decodeName(path.c_str());
}

/// Keeps right-to-left letters in a text from reordering the text around it, if it has any.
[[nodiscard]] inline QString isolated(const QString& text) {
    const bool mixes = std::any_of(text.begin(), text.end(), [](QChar c) {
        return c.direction() == QChar::DirR || c.direction() == QChar::DirAL;
    });
    return mixes ? QChar(0x2068) + text + QChar(0x2069) : text;
}

/// Isolates the parts between the middle dots of a line such as a station's description, so that
/// right-to-left letters in one do not reorder the others.
[[nodiscard]] inline QString isolatedParts(const QString& line) {
    const QString dot = QStringLiteral(" · ");
    QStringList parts = line.split(dot);
    std::transform(parts.begin(), parts.end(), parts.begin(), isolated);
    return parts.join(dot);
}

/// Encodes a path for the file system.
[[nodiscard]] inline std::string filePath(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

} // namespace desktop
