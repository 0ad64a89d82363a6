// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

#include <QString>

namespace desktop {

/// The program as it is installed, or as it stands in its build tree; told from the place of the
/// executable alone.
class Program final : public platform::Bundle {
public:
    explicit Program(const QString& executableFolder);

    [[nodiscard]] std::string resourcePath() const override;
    /// Known are "CFBundleExecutable" and "CFBundleShortVersionString".
    [[nodiscard]] std::optional<std::string> infoValue(std::string_view key) const override;

private:
    std::string resourcePath_;
};

} // namespace desktop
