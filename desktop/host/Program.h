// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

#include <QString>

namespace desktop {

/// The program as it is installed or laid out in its build tree. Its files are found from the
/// executable's folder alone.
class Program final : public platform::Bundle {
public:
    explicit Program(const QString& executableFolder);

    [[nodiscard]] std::string resourcePath() const override;
    /// Knows only "CFBundleExecutable" and "CFBundleShortVersionString".
    [[nodiscard]] std::optional<std::string> infoValue(std::string_view key) const override;

private:
    std::string resourcePath_;
};

} // namespace desktop
