// SPDX-License-Identifier: MIT
#include "tests/support/TemporaryFolder.h"

#include <QApplication>
#include <gtest/gtest.h>

/// ThreadSanitizer calls this by name. The toolkit is built without it, so it cannot see how the
/// toolkit's threads synchronise.
extern "C" const char* __tsan_default_suppressions() {
    return "called_from_lib:libQt6Core.so\n"
           "called_from_lib:libQt6DBus.so\n"
           "called_from_lib:libQt6Gui.so\n"
           "called_from_lib:libQt6Network.so\n"
           "called_from_lib:libQt6Widgets.so\n"
           "called_from_lib:libglib-2.0.so\n";
}

/// Runs tests with widgets without a display and with a home folder of their own.
int main(int argc, char* argv[]) {
    const support::TemporaryFolder home;
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
        qputenv(name, QByteArray::fromStdString(home.path().string()));
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
