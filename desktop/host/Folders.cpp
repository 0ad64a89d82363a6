// SPDX-License-Identifier: MIT
#include "desktop/host/Folders.h"

#include "desktop/text/Text.h"
#include "platform/host/Files.h"

#include <QStandardPaths>

namespace desktop {

Folders::Folders(platform::Log& log)
    : documents_(filePath(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation))),
      applicationSupport_(
          filePath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation))) {
    if (const auto error = platform::createDirectory(applicationSupport_, true)) {
        areThere_ = false;
        log.line("Cannot create the folder " + applicationSupport_ + ": " + error.message());
    }
}

std::vector<std::string> Folders::paths(int kind, int domainMask) const {
    if ((domainMask & userDomain) == 0) {
        return {};
    }
    switch (kind) {
    case documents:
        return {documents_};
    case applicationSupport:
        return {applicationSupport_};
    default:
        return {};
    }
}

} // namespace desktop
