// SPDX-License-Identifier: MIT
#include "tests/support/TemporaryFolder.h"

#include <QApplication>
#include <gtest/gtest.h>

/// Web pages without a display, in a home of their own. The browser engine trusts the throwaway
/// certificate of the test's server, has a camera, and runs as root too, as in containers.
int main(int argc, char* argv[]) {
    const support::TemporaryFolder home;
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
        qputenv(name, QByteArray::fromStdString(home.path().string()));
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS",
            "--ignore-certificate-errors --use-fake-device-for-media-stream");
    const QApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
