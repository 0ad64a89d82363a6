// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"
#include "catalogue/own/OwnCatalogue.h"
#include "desktop/host/DesktopHost.h"
#include "desktop/host/EndSignals.h"
#include "desktop/host/SingleInstance.h"
#include "desktop/windows/ProgramMenus.h"
#include "desktop/windows/ProgramWindows.h"
#include "reports/Sessions.h"
#include "weather/DataServerRequests.h"
#include "weather/DataServerSessions.h"
#include "weather/WorldWeather.h"

#include <QApplication>
#include <QIcon>

#include <cstdlib>
#include <functional>
#include <string_view>
#include <utility>

namespace {

/// What remains to be done before the program ends.
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

    // From here on, a signal to end waits for the event loop.
    const desktop::EndSignals endSignals([] { QCoreApplication::exit(); });
    desktop::DesktopHost host(weather::sessionOptions());
    desktop::SingleInstance instance(host.programFolder(), host.services().log);
    if (!instance.isFirst()) {
        return EXIT_SUCCESS;
    }
    const platform::Host& own = host.services();
    reports::Store reports(own.notificationCenter, own.clock, own.log, host.reportsFile());
    reports::Sessions sessions(host.urlSessions(), reports, weather::questionIn);
    platform::Host services = host.servicesWith(sessions);
    weather::WorldWeather world(services, reports);
    const catalogue::OwnCatalogue ownCatalogue(host.services());
    host.program().replacement = [&](std::string_view name) {
        return ownCatalogue.replacementOf(name);
    };
    // The menus must outlive the delegate, whose windows carry them.
    desktop::ProgramMenus menus;
    desktop::ProgramWindows windows(services, reports, world, host.mapSetup(), host.settingsFile(),
                                    menus);
    AppDelegate delegate(services, reports, windows);
    menus.actOn(delegate);
    delegate.applicationDidFinishLaunching();
    delegate.showReleaseNotesOnce();
    instance.laterStarted = [&] { delegate.openStations(); };

    ending = [&] {
        delegate.applicationWillTerminate();
        host.urlSessions().stop();
        reports.flush();
    };
    // The toolkit leaves the event loop through std::exit if the display server ends first.
    std::atexit(endOnce);
    const int status = QApplication::exec();

    endOnce();
    host.mainQueue().close();
    return status;
}
