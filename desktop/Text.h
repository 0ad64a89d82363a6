// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QString>

#include <string>
#include <string_view>

/// Text crosses into Qt and back here.
namespace desktop {

/// Bytes that are not UTF-8 show as U+FFFD.
[[nodiscard]] inline QString shownText(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// A path as the file system takes it.
[[nodiscard]] inline std::string filePath(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

} // namespace desktop
