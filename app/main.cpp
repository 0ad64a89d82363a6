// SPDX-License-Identifier: MIT
#include "browser/SCStationWindowController.h"
#include "desktop/SCStationWindow.h"
#include "desktop/host/DesktopHost.h"
#include "desktop/host/EndSignals.h"

#include <QApplication>
#include <QIcon>

#include <cstdlib>
#include <functional>
#include <memory>
#include <utility>

namespace {

/// What is left to do before the program ends.
std::function<void()> ending;

void endOnce() {
    if (const auto end = std::exchange(ending, {})) {
        end();
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

    ending = [&] {
        controller->quitting();
        host.urlSessions().stop();
    };
    // The toolkit leaves the event loop by std::exit when the display server goes before us.
    std::atexit(endOnce);
    const desktop::EndSignals endSignals([] { QCoreApplication::exit(); });
    const int status = QApplication::exec();

    endOnce();
    host.mainQueue().close();
    window.reset();
    return status;
}
