// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"
#include "desktop/SCStationWindow.h"
#include "desktop/host/DesktopHost.h"
#include "desktop/host/EndSignals.h"

#include <QApplication>
#include <QIcon>

#include <cstdlib>
#include <memory>
#include <utility>

namespace {

/// The controller whose state is not stored yet.
SCStationWindowController* unsaved = nullptr;

void quitOnce() {
    if (auto* controller = std::exchange(unsaved, nullptr)) {
        controller->quitting();
    }
}

} // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("nosig"));
    QApplication::setApplicationDisplayName(QStringLiteral("Nosig"));
    QApplication::setDesktopFileName(QStringLiteral("nosig"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/nosig.svg")));

    desktop::DesktopHost host;
    const auto controller = SCStationWindowController::initWithWindowNibName(
        host.services(), "SCStationWindowController");
    auto window =
        std::make_unique<desktop::SCStationWindow>(*controller, host.services(), host.mapSetup());
    controller->windowDidLoad();
    window->present();

    // The toolkit leaves the event loop by std::exit when the display server goes before us.
    unsaved = controller.get();
    std::atexit(quitOnce);
    const desktop::EndSignals endSignals([] { QCoreApplication::exit(); });
    const int status = QApplication::exec();

    quitOnce();
    host.urlSessions().stop();
    host.mainQueue().close();
    window.reset();
    return status;
}
