// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/TemporaryFolder.h"

#include <QApplication>
#include <gtest/gtest.h>

namespace support {

/// Runs tests with widgets without a display and with a home folder of their own.
template <typename Application = QApplication>
int runWidgetTests(int argc, char* argv[]) {
    const TemporaryFolder home;
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
        qputenv(name, QByteArray::fromStdString(home.path().string()));
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const Application application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

} // namespace support
