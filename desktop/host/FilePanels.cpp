// SPDX-License-Identifier: MIT
#include "desktop/host/FilePanels.h"

#include "desktop/text/Text.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

#include <filesystem>

namespace desktop {

namespace {

/// Settings keys.
constexpr std::string_view openFolder = "openfolder";
constexpr std::string_view saveFolder = "savefolder";

const QString allFiles = QStringLiteral("All files (*)");

std::optional<std::string> answer(QFileDialog& dialog) {
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return {};
    }
    return filePath(dialog.selectedFiles().constFirst());
}

bool userMayReplace(const std::string& path) {
    const std::filesystem::path file(path);
    const QString name = shownText(file.filename().string());
    QMessageBox box(QApplication::activeWindow());
    box.setIcon(QMessageBox::Warning);
    box.setWindowTitle(QStringLiteral("Save"));
    // Applies to the main text only: the informative text would take a name with tags for rich
    // text.
    box.setTextFormat(Qt::PlainText);
    if (QFileInfo(pathText(path)).isDir()) {
        box.setText(QStringLiteral("“%1” is a folder.\n\nPlease choose another name.").arg(name));
        box.exec();
        return false;
    }
    box.setText(
        QStringLiteral("“%1” already exists.\n\nReplacing it in “%2” overwrites what it holds.")
            .arg(name, shownText(file.parent_path().string())));
    const QAbstractButton* replace =
        box.addButton(QStringLiteral("&Replace"), QMessageBox::DestructiveRole);
    box.setDefaultButton(box.addButton(QMessageBox::Cancel));
    box.exec();
    return box.clickedButton() == replace;
}

} // namespace

QStringList nameFilters(const std::vector<std::string>& types) {
    QStringList patterns;
    QStringList names;
    for (const std::string& type : types) {
        QString pattern = QStringLiteral("*.");
        for (const QChar c : exactText(type)) {
            // Not every dialog ignores the case of a plain pattern.
            pattern +=
                c.isLetter() ? QStringLiteral("[%1%2]").arg(c.toLower(), c.toUpper()) : QString(c);
        }
        patterns += pattern;
        names += shownText(type).toUpper();
    }
    QStringList filters;
    if (!patterns.isEmpty()) {
        filters += QStringLiteral("%1 files (%2)").arg(names.join(u", "), patterns.join(u' '));
    }
    filters += allFiles;
    return filters;
}

std::optional<std::string>
choosePlace(const std::function<std::optional<std::string>()>& choose,
            const std::function<std::string(const std::string&)>& writtenPath,
            const std::function<bool(const std::string&)>& mayReplace) {
    while (auto chosen = choose()) {
        const std::string written = writtenPath ? writtenPath(*chosen) : *chosen;
        if (!QFileInfo::exists(pathText(written)) || mayReplace(written)) {
            return chosen;
        }
    }
    return {};
}

std::optional<platform::URL> FilePanels::openPanel(const std::vector<std::string>& types) {
    QFileDialog dialog(QApplication::activeWindow(), QStringLiteral("Open"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilters(nameFilters(types));
    recallFolder(dialog, openFolder);
    const auto chosen = answer(dialog);
    if (!chosen) {
        return {};
    }
    rememberFolder(*chosen, openFolder);
    openedName_ = std::filesystem::path(*chosen).filename().string();
    return platform::URL::file(*chosen);
}

std::optional<platform::URL>
FilePanels::savePanel(const std::function<std::string(const std::string&)>& writtenPath) {
    QFileDialog dialog(QApplication::activeWindow(), QStringLiteral("Save"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    // The dialog knows only the chosen name, not the one that will be written.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    if (!recallFolder(dialog, saveFolder)) {
        recallFolder(dialog, openFolder);
    }
    if (writtenPath) {
        const QString proposed =
            shownText(std::filesystem::path(writtenPath(openedName_)).filename().string());
        // In one case only, unlike an open panel's: when the user switches filters, the dialog
        // copies the pattern's extension into the name.
        const QString extension = QFileInfo(proposed).suffix();
        if (!extension.isEmpty()) {
            dialog.setOption(QFileDialog::HideNameFilterDetails);
            dialog.setNameFilters({QStringLiteral("%1 files (*.%1)").arg(extension), allFiles});
        }
        dialog.selectFile(proposed);
    }
    const auto chosen =
        choosePlace([&dialog] { return answer(dialog); }, writtenPath, userMayReplace);
    if (!chosen) {
        return {};
    }
    rememberFolder(*chosen, saveFolder);
    return platform::URL::file(*chosen);
}

bool FilePanels::recallFolder(QFileDialog& dialog, std::string_view key) const {
    const platform::Value kept = settings_.objectForKey(key);
    const auto* folder = std::get_if<std::string>(&kept);
    if (!folder || !QFileInfo(pathText(*folder)).isDir()) {
        return false;
    }
    dialog.setDirectory(pathText(*folder));
    return true;
}

void FilePanels::rememberFolder(const std::string& chosen, std::string_view key) {
    settings_.setObject(std::filesystem::path(chosen).parent_path().string(), key);
}

} // namespace desktop
