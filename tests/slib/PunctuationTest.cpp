// SPDX-License-Identifier: MIT
#include "slib/slibTextPuncRecord.h"
#include "tests/support/FakeHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
        {"\"),.:;?{}",
         {{'"', 9},
          {')', 8},
          {',', 7},
          {'.', 6},
          {':', 5},
          {';', 4},
          {'?', 3},
          {'{', 2},
          {'}', 1}}},
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
    for (const auto& [count, left] : {std::pair{-1, 4727}, {4728, 4727}, {1, 1}}) {
        record->setCount(count);
        EXPECT_EQ(record->count(), left);
    }
}

TEST_F(Punctuation, CancellingIsSeenAtAnUpdateOnly) {
    onUpdate = [this] { record->op()->cancel(); };
    fill(std::string(5000, '.'));
    EXPECT_THAT(updates, ElementsAre(1576));
    EXPECT_EQ(record->op()->theseRunningWords(), 1576);
    EXPECT_EQ(record->count(), 1576);
    EXPECT_EQ(completions, 1);
    EXPECT_EQ(record->op()->puncRec(), nullptr);
}

TEST_F(Punctuation, AMarkCountsTowardAnUpdateWithoutBytesToo) {
    const auto operation = slibTextPuncOperation::initWithPtr_andLen(fake.host, nullptr, 1);
    operation->setPuncRec(record);
    operation->main();
    EXPECT_EQ(record->count(), 0);
    operation->setTheseRunningWords(1574);
    operation->pipup();
    EXPECT_THAT(updates, IsEmpty());
    operation->pipup();
    EXPECT_THAT(updates, ElementsAre(1576));
}

TEST_F(Punctuation, ARecordWithoutItsOperationCompletesInSilence) {
    onUpdate = [this] { record->setOp(nullptr); };
    fill(std::string(2000, '.'));
    EXPECT_EQ(record->count(), 2000);
    EXPECT_EQ(completions, 0);
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
    for (const bool isQueueHeld : {true, false}) {
        SCOPED_TRACE(isQueueHeld);
        std::promise<void> started;
        std::promise<void> mayGoOn;
        onUpdate = [&] {
            started.set_value();
            mayGoOn.get_future().wait();
        };
        completions = 0;
        record = slibTextPuncRecord::init(fake.host);
        const std::weak_ptr<slibTextPuncRecord> watched = record;
        record->fillPuncRecordNSString(std::string(2000, '.'));
        started.get_future().wait();
        const auto queue = isQueueHeld ? record->queue() : nullptr;
        record = nullptr;
        EXPECT_FALSE(watched.expired());
        mayGoOn.set_value();
        if (queue) {
            queue->waitUntilAllOperationsAreFinished();
            EXPECT_TRUE(watched.expired());
        }
        while (!watched.expired()) {
            std::this_thread::yield();
        }
        EXPECT_EQ(completions, 1);
    }
}

} // namespace
