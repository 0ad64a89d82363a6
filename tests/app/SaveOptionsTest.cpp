// SPDX-License-Identifier: MIT
#include "app/SCSaveOptionsSheetController.h"
#include "tests/support/FakeViews.h"

#include <gtest/gtest.h>

namespace {

TEST(SaveOptions, AreRecordedAndTheButtonsEndTheSheet) {
    support::FakeCheckBox box;
    support::FakeSheet sheet;
    SCSaveOptionsSheetController options;
    options.saveCliked();
    options.outlets.window = &sheet;
    box.on = true;
    options.usonlyclicked(box);
    EXPECT_TRUE(options.usOnly && !options.noNames);
    options.nonamesclicked(box);
    box.on = false;
    options.usonlyclicked(box);
    EXPECT_TRUE(!options.usOnly && options.noNames);
    options.saveCliked();
    options.cancelClicked();
    EXPECT_EQ(sheet.told, (std::vector<std::string>{"ordered out", "ended with 1", "ordered out",
                                                    "ended with 0"}));
}

} // namespace
