// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

#include <QString>

#include <functional>
#include <utility>

namespace desktop {

/// The program as it is installed or laid out in its build tree. Its files are found from the
/// executable's folder alone.
class Program final : public platform::Bundle {
public:
    explicit Program(const QString& executableFolder);

    [[nodiscard]] std::string resourcePath() const override;
    [[nodiscard]] std::optional<std::string> replacementOf(std::string_view name) const override {
        return replacement ? replacement(name) : std::nullopt;
    }
    /// Answers for the user's own files; set once, before any thread but the main one runs. May be
    /// empty.
    std::function<std::optional<std::string>(std::string_view name)> replacement;
    /// Knows only "CFBundleExecutable" and "CFBundleShortVersionString".
    [[nodiscard]] std::optional<std::string> infoValue(std::string_view key) const override;

private:
    std::string resourcePath_;
};

} // namespace desktop
