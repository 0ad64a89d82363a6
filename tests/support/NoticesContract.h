// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Notices.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// What the logic relies on in every service for notices. The real one and the fake run the same
/// tests. A stage has `notices`; `setThere`, which brings the service or takes it away; `settle`,
/// which returns whether a condition came about; `shown`, which tells what the user sees of each
/// notice, the title and the lines as one text each; `choose`, by which the user chooses one of
/// these; `hasLost`, whether a notice with that title will never be shown; and `changes`, the
/// number of posts.
namespace support {

template <typename Stage>
struct NoticesContract : testing::Test {
    Stage stage;
    std::vector<std::string> chosen;

    void show(const std::string& title) {
        stage.notices().show({title, {"QNH < 1013 & \"more\"", "<b>second</b>"}, [this, title] {
                                  chosen.push_back(title);
                              }});
    }
};

TYPED_TEST_SUITE_P(NoticesContract);

TYPED_TEST_P(NoticesContract, ShowsPlainTextAndTellsWhichNoticeWasChosenOnce) {
    auto& seen = this->stage;
    EXPECT_EQ(seen.notices().canShow(), std::nullopt);
    seen.setThere(true);
    this->show("A & <i>B</i>");
    this->show("C");
    ASSERT_TRUE(seen.settle([&] { return seen.shown().size() == 2; }));
    EXPECT_EQ(seen.notices().canShow(), true);
    EXPECT_EQ(seen.shown()[0], "A & <i>B</i>\nQNH < 1013 & \"more\"\n<b>second</b>");
    seen.choose(1);
    EXPECT_TRUE(seen.settle([&] { return !this->chosen.empty(); }));
    seen.choose(1);
    seen.choose(0);
    EXPECT_TRUE(seen.settle([&] { return this->chosen.size() > 1; }));
    EXPECT_EQ(this->chosen, (std::vector<std::string>{"C", "A & <i>B</i>"}));
}

TYPED_TEST_P(NoticesContract, TheServiceMayBeMissingAndMayComeAndGo) {
    auto& seen = this->stage;
    const auto settles = [&](bool canShow, int changes) {
        return seen.settle(
            [&] { return seen.notices().canShow() == canShow && seen.changes() == changes; });
    };
    seen.setThere(false);
    seen.notices().prepare();
    EXPECT_TRUE(settles(false, 1));
    this->show("lost");
    EXPECT_TRUE(seen.settle([&] { return seen.hasLost("lost"); }));
    seen.setThere(true);
    EXPECT_TRUE(settles(true, 2));
    this->show("seen");
    EXPECT_TRUE(seen.settle([&] { return seen.shown().size() == 1; }));
    EXPECT_TRUE(seen.shown().at(0).starts_with("seen"));
    seen.setThere(false);
    EXPECT_TRUE(settles(false, 3));
    this->show("lost as well");
    EXPECT_TRUE(seen.settle([&] { return seen.hasLost("lost as well"); }));
    seen.setThere(true);
    EXPECT_TRUE(settles(true, 4));
    EXPECT_EQ(seen.shown().size(), 1U);
}

REGISTER_TYPED_TEST_SUITE_P(NoticesContract, ShowsPlainTextAndTellsWhichNoticeWasChosenOnce,
                            TheServiceMayBeMissingAndMayComeAndGo);

} // namespace support
