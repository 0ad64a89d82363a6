// SPDX-License-Identifier: MIT
#include "tests/support/WidgetTests.h"

/// AddressSanitizer calls these by name. The browser engine is built without it, frees some of its
/// objects with another size than it allocated, and keeps others until the process ends, as does
/// the font library.
extern "C" const char* __asan_default_options() {
    return "new_delete_type_mismatch=0";
}
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libQt6WebEngineCore.so\n"
           "leak:libfontconfig.so\n";
}

/// The browser engine trusts the throwaway certificate of the test's server, has a fake camera, and
/// can run as root, as in containers. The logging rules ask it to describe itself, which the
/// program must prevent.
int main(int argc, char* argv[]) {
    qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS",
            "--ignore-certificate-errors --use-fake-device-for-media-stream");
    qputenv("QT_LOGGING_RULES", "qt.webenginecontext.*=true");
    return support::runWidgetTests(argc, argv);
}
