// SPDX-License-Identifier: MIT
#include "tests/support/TemporaryFolder.h"

#include <QApplication>
#include <gtest/gtest.h>

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
