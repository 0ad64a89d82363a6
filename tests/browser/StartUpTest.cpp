// SPDX-License-Identifier: MIT
#include "tests/support/ShownCatalogue.h"

#include <fmt/format.h>

namespace {

struct StartUp : support::ShownCatalogue {};

TEST_F(StartUp, ShowsTheShippedCatalogue) {
    start({{"KJFK"}, {"KDEN"}, {"LSZH"}});
    EXPECT_EQ(window.table.rows, 3);
    EXPECT_EQ(window.cell(1, "3"), "KDEN");
    EXPECT_EQ(window.words.text, "3 stations");
    // The second row, not the first.
    EXPECT_EQ(window.table.selected, 1);
    EXPECT_EQ(window.switchie.segment, 0);
    EXPECT_EQ(window.distButton.item, 0);
    EXPECT_TRUE(window.sf.immediately);
    EXPECT_FALSE(window.sf.whole);
    EXPECT_FALSE(window.saver.enabled);
    EXPECT_TRUE(window.parserIt.enabled);
    EXPECT_TRUE(window.secView.hidden);
    EXPECT_TRUE(window.dLcikWords.hidden);
    std::string widths;
    for (const auto& [column, width] : window.table.widths) {
        widths += fmt::format("{} ", width);
    }
    EXPECT_EQ(widths, "10 15 15 15 15 15 40 20 120 45 45 50 90 90 40 15 ");
    EXPECT_EQ(host.timers.runningIntervals(),
              (std::vector<std::chrono::milliseconds>{std::chrono::minutes(30)}));
}

TEST_F(StartUp, WithoutAnyOutletNothingFails) {
    start({{"KJFK"}, {"KDEN"}});
    controller =
        SCStationWindowController::initWithWindowNibName(host.host, "SCStationWindowController");
    controller->windowDidLoad();
    controller->loadParsedFile(true);
    EXPECT_FALSE(controller->masterCollection());
    controller->quitting();
}

} // namespace
