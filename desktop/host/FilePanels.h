// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Host.h"

#include <QStringList>

namespace desktop {

/// File dialogs, the platform's own where it has them, in front of the active window.
class FilePanels final : public platform::Panels {
public:
    /// Besides files of the types the panel offers, as a second choice, all files.
    [[nodiscard]] std::optional<platform::URL>
    openPanel(const std::vector<std::string>& types) override;
    [[nodiscard]] std::optional<platform::URL>
    savePanel(const std::function<std::string(const std::string&)>& writtenPath) override;
};

/// The filters of an open panel: one for the types together, in upper and lower case alike, and
/// one for all files.
[[nodiscard]] QStringList nameFilters(const std::vector<std::string>& types);

/// Lets `choose` name a path until it gives none or one that can be written without loss: nothing
/// exists under `writtenPath` of it, or `mayReplace` agrees to replacing what does.
[[nodiscard]] std::optional<std::string>
choosePlace(const std::function<std::optional<std::string>()>& choose,
            const std::function<std::string(const std::string&)>& writtenPath,
            const std::function<bool(const std::string&)>& mayReplace);

} // namespace desktop
