// SPDX-License-Identifier: MIT
#include "tests/support/TemporaryFolder.h"

#include <QApplication>
#include <gtest/gtest.h>

/// The browser engine, built without the address checker, frees some of its objects under another
/// size, and keeps others, as the library of fonts does, until the process ends. The checker asks
/// for these by name.
extern "C" const char* __asan_default_options() {
    return "new_delete_type_mismatch=0";
}
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libQt6WebEngineCore.so\n"
           "leak:libfontconfig.so\n";
}

/// The thread checker does not see how libraries built without it synchronize their threads.
extern "C" const char* __tsan_default_suppressions() {
    return "race:libcpp-httplib.so\n"
           "race:libQt6WebEngineCore.so\n"
           "race:_dl_deallocate_tls\n"
           "thread:libQt6WebEngineCore.so\n"
           "called_from_lib:libQt6Core.so\n"
           "called_from_lib:libQt6Gui.so\n"
           "called_from_lib:libQt6Widgets.so\n"
           "called_from_lib:libglib-2.0.so\n";
}

/// Web pages without a display, in a home of their own. The browser engine trusts the throwaway
/// certificate of the test's server, has a camera, and runs as root too, as in containers. It is
/// asked to tell of itself, which must not happen.
int main(int argc, char* argv[]) {
    const support::TemporaryFolder home;
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
        qputenv(name, QByteArray::fromStdString(home.path().string()));
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS",
            "--ignore-certificate-errors --use-fake-device-for-media-stream");
    qputenv("QT_LOGGING_RULES", "qt.webenginecontext.*=true");
    const QApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
