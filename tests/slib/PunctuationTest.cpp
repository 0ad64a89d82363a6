// SPDX-License-Identifier: MIT
#include "slib/slibTextPuncRecord.h"
#include "tests/support/FakeHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Tokens = std::vector<slibPuncToken>;

class Punctuation : public testing::Test {
protected:
    /// Fills the record and waits for the end.
    void fill(std::optional<std::string> text) {
        record->fillPuncRecordNSString(std::move(text));
        record->queue()->waitUntilAllOperationsAreFinished();
    }

    /// Called on the scanning thread at each update.
    std::function<void()> onUpdate = [] {};
    std::vector<std::int64_t> updates;
    std::atomic<int> completions = 0;

    support::FakeHost fake;
    platform::NotificationCenter::Token updateToken = fake.notificationCenter.addObserver(
        slibTextPuncRecord::parseUpdate, [this](const platform::Notification& posted) {
            updates.push_back(std::get<platform::Number>(posted.object).integerValue());
            onUpdate();
        });
    platform::NotificationCenter::Token completionToken = fake.notificationCenter.addObserver(
        slibTextPuncRecord::parseCompleted, [this](const platform::Notification& posted) {
            EXPECT_EQ(posted.object, platform::Value());
            ++completions;
        });
    std::shared_ptr<slibTextPuncRecord> record = slibTextPuncRecord::init(fake.host);
};

TEST_F(Punctuation, MarksStandWithTheirDistanceFromTheEnd) {
    using namespace std::string_literals;
    const struct {
        std::optional<std::string> text;
        Tokens tokens;
    } rows[] = {
        {"Hi, you.", {{',', 6}, {'.', 1}}},
        {"", {}},
        {std::nullopt, {}},
        {"it's well-known\nOK [a] <b> | ~", {}},
        {"\r!(", {{'\r', 3}, {'!', 2}, {'(', 1}}},
        {"\"):;?", {{'"', 5}, {')', 4}, {':', 3}, {';', 2}, {'?', 1}}},
        {"a,b\0,c"s, {{',', 2}}},
        {"\xFF,\xC3.\xAE\x80", {{',', 5}, {'.', 3}}},
    };
    int completed = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text.value_or("(absent)"));
        record->setPuncTokens({});
        fill(row.text);
        EXPECT_EQ(record->puncTokens(), row.tokens);
        EXPECT_EQ(completions, ++completed);
    }
    EXPECT_THAT(updates, IsEmpty());
}

TEST_F(Punctuation, ASecondFillAddsToTheFirst) {
    fill(std::string(1576, '.'));
    EXPECT_THAT(updates, ElementsAre(1576));
    EXPECT_EQ(record->count(), 1576);
    fill("a" + std::string(2 * 1576 - 1, ','));
    EXPECT_THAT(updates, ElementsAre(1576, 1576));
    EXPECT_EQ(completions, 2);
    EXPECT_EQ(record->count(), 3 * 1576 - 1);
    EXPECT_EQ(record->puncTokens()[1576], (slibPuncToken{',', 3151}));
}

TEST_F(Punctuation, CancellingIsSeenAtAnUpdateOnly) {
    onUpdate = [this] { record->op()->cancel(); };
    fill(std::string(5000, '.'));
    EXPECT_THAT(updates, ElementsAre(1576));
    EXPECT_EQ(record->count(), 1576);
    EXPECT_EQ(completions, 1);
}

TEST_F(Punctuation, TwoFillsAtOnceBothArrive) {
    std::promise<void> mayGoOn;
    onUpdate = [&] { mayGoOn.get_future().wait(); };
    record->fillPuncRecordNSString(std::string(1576, '.'));
    const auto first = record->queue();
    fill("a,b");
    EXPECT_EQ(completions, 1);
    mayGoOn.set_value();
    first->waitUntilAllOperationsAreFinished();
    EXPECT_EQ(completions, 2);
    EXPECT_EQ(record->count(), 1577);
    EXPECT_EQ(record->puncTokens()[0], (slibPuncToken{',', 2}));
}

TEST_F(Punctuation, AnObserverMayFillTheRecordAgain) {
    std::promise<void> filledAgain;
    const auto token = fake.notificationCenter.addObserver(
        slibTextPuncRecord::parseCompleted, [&](const platform::Notification&) {
            completions == 1 ? record->fillPuncRecordNSString("!") : filledAgain.set_value();
        });
    record->fillPuncRecordNSString("?");
    filledAgain.get_future().wait();
    EXPECT_EQ(record->count(), 2);
}

TEST_F(Punctuation, ARecordLetGoInTheMiddleIsFilledToTheEnd) {
    std::promise<void> started;
    std::promise<void> mayGoOn;
    onUpdate = [&] {
        started.set_value();
        mayGoOn.get_future().wait();
    };
    const std::weak_ptr<slibTextPuncRecord> watched = record;
    record->fillPuncRecordNSString(std::string(2000, '.'));
    started.get_future().wait();
    record = nullptr;
    EXPECT_FALSE(watched.expired());
    mayGoOn.set_value();
    while (!watched.expired()) {
        std::this_thread::yield();
    }
    EXPECT_EQ(completions, 1);
}

} // namespace
