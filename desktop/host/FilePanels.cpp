// SPDX-License-Identifier: MIT
#include "desktop/host/FilePanels.h"

#include "desktop/Text.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

namespace desktop {

namespace {

std::optional<std::string> answer(QFileDialog& dialog) {
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return {};
    }
    return filePath(dialog.selectedFiles().constFirst());
}

bool userMayReplace(const std::string& path) {
    const QFileInfo file(QFile::decodeName(path.c_str()));
    QMessageBox box(QApplication::activeWindow());
    box.setIcon(QMessageBox::Warning);
    box.setWindowTitle(QStringLiteral("Save"));
    box.setTextFormat(Qt::PlainText);
    if (file.isDir()) {
        box.setText(QStringLiteral("“%1” is a folder.").arg(file.fileName()));
        box.setInformativeText(QStringLiteral("Please choose another name."));
        box.exec();
        return false;
    }
    box.setText(QStringLiteral("“%1” already exists.").arg(file.fileName()));
    box.setInformativeText(
        QStringLiteral("Replacing it in “%1” overwrites what it holds.").arg(file.path()));
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
        for (const QChar c : shownText(type)) {
            // Not every dialog ignores case in a plain pattern.
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
    filters += QStringLiteral("All files (*)");
    return filters;
}

std::optional<std::string>
choosePlace(const std::function<std::optional<std::string>()>& choose,
            const std::function<std::string(const std::string&)>& writtenPath,
            const std::function<bool(const std::string&)>& mayReplace) {
    while (auto chosen = choose()) {
        const std::string written = writtenPath ? writtenPath(*chosen) : *chosen;
        if (!QFileInfo::exists(QFile::decodeName(written.c_str())) || mayReplace(written)) {
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
    const auto chosen = answer(dialog);
    return chosen ? std::optional(platform::URL::file(*chosen)) : std::nullopt;
}

std::optional<platform::URL>
FilePanels::savePanel(const std::function<std::string(const std::string&)>& writtenPath) {
    QFileDialog dialog(QApplication::activeWindow(), QStringLiteral("Save"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    // The dialog knows the chosen name only, not the one that will be written.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    const auto chosen =
        choosePlace([&dialog] { return answer(dialog); }, writtenPath, userMayReplace);
    return chosen ? std::optional(platform::URL::file(*chosen)) : std::nullopt;
}

} // namespace desktop
