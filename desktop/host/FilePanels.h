// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

#include <QStringList>

#include <string>
#include <string_view>

class QFileDialog;

namespace desktop {

/// File dialogs, the platform's own where it has them, in front of the active window. Each begins
/// in the folder where the user has last chosen a file in its like, which the settings keep; the
/// first to save, where the last one was opened.
class FilePanels final : public platform::Panels {
public:
    /// The settings are borrowed.
    explicit FilePanels(platform::UserDefaults& settings) : settings_(settings) {}

    /// Besides files of the types the panel offers, as a second choice, all files.
    [[nodiscard]] std::optional<platform::URL>
    openPanel(const std::vector<std::string>& types) override;
    /// With `writtenPath`, proposes what it makes of the name of the file that was opened last, or
    /// else of "Stations", and offers files of that extension before all others.
    [[nodiscard]] std::optional<platform::URL>
    savePanel(const std::function<std::string(const std::string&)>& writtenPath) override;

private:
    /// False where there is none any more.
    bool recallFolder(QFileDialog& dialog, std::string_view key) const;
    void rememberFolder(const std::string& chosen, std::string_view key);

    platform::UserDefaults& settings_;
    std::string openedName_ = "Stations";
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
