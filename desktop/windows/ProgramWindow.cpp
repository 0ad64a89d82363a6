// SPDX-License-Identifier: MIT
#include "desktop/windows/ProgramWindow.h"

#include "desktop/windows/ProgramMenus.h"
#include "desktop/windows/ScreenFit.h"

#include <QCoreApplication>
#include <QScreen>
#include <QSplitter>

namespace desktop {

namespace {

const QString geometryKey = QStringLiteral("geometry");

} // namespace

ProgramWindow::ProgramWindow(ProgramMenus& menus, QSettings& memory) : memory_(memory) {
    menus.addTo(*this);
    connect(qApp, &QCoreApplication::aboutToQuit, this, [this] { rememberAll(); });
}

void ProgramWindow::showWindow() {
    if (!isArranged_) {
        isArranged_ = true;
        letContentScroll(*this);
        resize(size().boundedTo(screen()->availableSize()));
        arrange();
        recallAll();
        new ScreenFit(*this);
    }
    if (isMinimized()) {
        setWindowState(windowState() & ~Qt::WindowMinimized);
    }
    show();
    raise();
}

void ProgramWindow::makeKey() {
    activateWindow();
}

void ProgramWindow::closeEvent(QCloseEvent* event) {
    rememberAll();
    QMainWindow::closeEvent(event);
}

void ProgramWindow::recallAll() {
    memory_.beginGroup(objectName());
    restoreGeometry(memory_.value(geometryKey).toByteArray());
    for (QSplitter* splitter : findChildren<QSplitter*>()) {
        splitter->restoreState(memory_.value(splitter->objectName()).toByteArray());
    }
    recall(memory_);
    memory_.endGroup();
}

void ProgramWindow::rememberAll() {
    if (!isArranged_) {
        return;
    }
    memory_.beginGroup(objectName());
    memory_.setValue(geometryKey, saveGeometry());
    for (const QSplitter* splitter : findChildren<QSplitter*>()) {
        memory_.setValue(splitter->objectName(), splitter->saveState());
    }
    remember(memory_);
    memory_.endGroup();
}

} // namespace desktop
