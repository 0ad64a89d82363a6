// SPDX-License-Identifier: MIT
#include "tests/support/WidgetTests.h"

int main(int argc, char* argv[]) {
    return support::runWidgetTests(argc, argv);
}
