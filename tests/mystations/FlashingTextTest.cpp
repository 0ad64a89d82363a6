// SPDX-License-Identifier: MIT
#include "mystations/aiiFlashingText.h"
#include "tests/support/FakeHost.h"
#include "tests/support/FakeViews.h"

#include <gtest/gtest.h>

namespace {

using Intervals = std::vector<std::chrono::milliseconds>;
using namespace std::chrono_literals;

class FlashingText : public testing::Test {
protected:
    /// Fires all timers `count` times and returns the alpha values that they set.
    std::vector<double> steps(int count) {
        field.alphas.clear();
        for (int i = 0; i < count; ++i) {
            host.timers.fire();
        }
        return field.alphas;
    }
    [[nodiscard]] Intervals running() const { return host.timers.runningIntervals(); }

    support::FakeHost host;
    support::FakeFadingTextField field;
    std::shared_ptr<aiiFlashingText> text = aiiFlashingText::initWithFrame(host.host, field);
};

TEST_F(FlashingText, BlinksAtTheChosenSpeed) {
    EXPECT_TRUE(running().empty());
    text->applyColor({1, 0, 0});
    text->setText("Select a station");
    text->flash(true);
    EXPECT_EQ(field.color, (platform::Color{1, 0, 0}));
    EXPECT_EQ(field.text, "Select a station");
    EXPECT_EQ(running(), Intervals{700ms});
    EXPECT_EQ(steps(4), (std::vector<double>{1, 0, 1, 0}));
    for (const auto& [index, interval] :
         {std::pair(0, 200ms), std::pair(2, 1300ms), std::pair(1, 700ms)}) {
        text->setFlashSpeed(index);
        EXPECT_EQ(running(), Intervals{interval});
        EXPECT_EQ(steps(1), std::vector<double>{1}) << "it begins with the text visible";
    }
    for (const int outside : {-1, 3, 1'000'000}) {
        text->setFlashSpeed(outside);
        EXPECT_EQ(running(), Intervals{700ms});
    }
    text->flash(false);
    EXPECT_TRUE(running().empty());
    EXPECT_EQ(field.alphas.back(), 1);

    text->setFlashSpeed(0);
    EXPECT_EQ(running(), Intervals{200ms}) << "setting a speed starts an idle field too";
    text->awakeFromNib();
    text->flash(true);
    EXPECT_EQ(running(), (Intervals{200ms, 700ms})) << "a second start leaves both timers running";
    EXPECT_EQ(steps(1).size(), 2U);
    text->flash(false);
    EXPECT_EQ(running(), Intervals{200ms});
    text.reset();
    EXPECT_TRUE(running().empty());
}

TEST_F(FlashingText, HidingKeepsWhetherItBlinks) {
    for (const bool isBlinking : {true, false}) {
        isBlinking ? text->setFlashSpeed(0) : text->flash(false);
        text->setHidden(true);
        EXPECT_TRUE(field.hidden);
        EXPECT_TRUE(running().empty());
        text->setHidden(false);
        EXPECT_FALSE(field.hidden);
        EXPECT_EQ(running().empty(), !isBlinking);
        EXPECT_EQ(steps(1), std::vector<double>(isBlinking ? 1 : 0, 0)) << "it is visible already";
    }
}

} // namespace
