// SPDX-License-Identifier: MIT
#include "desktop/host/Program.h"

#include "desktop/text/Text.h"
#include "product/Product.h"

#include <QDir>

namespace desktop {

Program::Program(const QString& executableFolder)
    : resourcePath_(filePath(QDir::cleanPath(
          QDir(executableFolder).absoluteFilePath(QStringLiteral(NOSIG_RESOURCES))))) {}

std::string Program::resourcePath() const {
    return resourcePath_;
}

std::optional<std::string> Program::infoValue(std::string_view key) const {
    if (key == "CFBundleExecutable") {
        return "nosig";
    }
    if (key == "CFBundleShortVersionString") {
        return std::string(product::version);
    }
    return {};
}

} // namespace desktop
