// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Host.h"

#include <QStringList>

#include <string>
#include <string_view>

class QFileDialog;

namespace desktop {

/// File dialogs, the platform's own where it has them, in front of the active window. Each starts
/// in the folder where the user last chose a file in its kind of panel, kept in the settings; the
/// first save panel starts where a file was last opened.
class FilePanels final : public platform::Panels {
public:
    /// The settings are borrowed.
    explicit FilePanels(platform::UserDefaults& settings) : settings_(settings) {}

    /// Offers files of these types and, as a second choice, all files.
    [[nodiscard]] std::optional<platform::URL>
    openPanel(const std::vector<std::string>& types) override;
    /// With `writtenPath`, proposes what it makes of the last opened file's name, or else of
    /// "Stations", and offers files with that extension before all others.
    [[nodiscard]] std::optional<platform::URL>
    savePanel(const std::function<std::string(const std::string&)>& writtenPath) override;

private:
    /// False if none is stored, or it no longer exists.
    bool recallFolder(QFileDialog& dialog, std::string_view key) const;
    void rememberFolder(const std::string& chosen, std::string_view key);

    platform::UserDefaults& settings_;
    std::string openedName_ = "Stations";
};

/// The filters of an open panel: one for all types together, in upper and lower case, and one for
/// all files.
[[nodiscard]] QStringList nameFilters(const std::vector<std::string>& types);

/// Calls `choose` until it returns nothing or a path that can be written without loss, and returns
/// that: nothing exists at its `writtenPath`, or `mayReplace` agrees to replace what does.
[[nodiscard]] std::optional<std::string>
choosePlace(const std::function<std::optional<std::string>()>& choose,
            const std::function<std::string(const std::string&)>& writtenPath,
            const std::function<bool(const std::string&)>& mayReplace);

} // namespace desktop
