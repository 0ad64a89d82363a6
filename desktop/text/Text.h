// SPDX-License-Identifier: MIT
#pragma once

#include "platform/text/Text.h"

#include <QFile>
#include <QString>

#include <algorithm>
#include <string>
#include <string_view>

/// Text crosses into Qt and back here. Bytes that are not UTF-8 become U+FFFD.
namespace desktop {

/// Every character kept: for addresses, settings and whatever else the program works with.
[[nodiscard]] inline QString exactText(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// Lines for the user's eyes. Without control characters and those that change the direction of
/// writing, with which a file or a reply could make a text look like another one; line ends and
/// tabs stay.
[[nodiscard]] inline QString shownLines(std::string_view utf8) {
    return exactText(platform::withoutControls(utf8));
}

/// The same in one line: a line end or a tab shows as a blank.
[[nodiscard]] inline QString shownText(std::string_view utf8) {
    // Most cells of the tables.
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

/// A path as the file system has it.
[[nodiscard]] inline QString pathText(const std::string& path) {
    return QFile::decodeName(path.c_str());
}

/// A line of parts between middle dots, as stations are described. Letters that run from right to
/// left do not carry the parts beside theirs along.
[[nodiscard]] inline QString isolatedParts(const QString& line) {
    const bool mixes = std::any_of(line.begin(), line.end(), [](QChar c) {
        return c.direction() == QChar::DirR || c.direction() == QChar::DirAL;
    });
    if (!mixes) {
        return line;
    }
    const QString dot = QStringLiteral(" · ");
    const QChar open(0x2068);
    const QChar close(0x2069);
    return open + line.split(dot).join(close + dot + open) + close;
}

/// A path as the file system takes it.
[[nodiscard]] inline std::string filePath(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

} // namespace desktop
