// SPDX-License-Identifier: MIT
#include "slib/slibTextPuncRecord.h"
#include "tests/support/FakeHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Tokens = std::vector<slibPuncToken>;

class Punctuation : public testing::Test {
protected:
    /// Fills the record and waits until the scan has ended.
    void fill(std::optional<std::string> text) {
        record->fillPuncRecordNSString(std::move(text));
        record->queue()->waitUntilAllOperationsAreFinished();
    }

    std::vector<std::int64_t> updates;
    std::atomic<int> completions = 0;

    support::FakeHost fake;
    platform::NotificationCenter::Token updateToken = fake.notificationCenter.addObserver(
        slibTextPuncRecord::parseUpdate, [this](const platform::Notification& posted) {
            updates.push_back(std::get<platform::Number>(posted.object).integerValue());
        });
    platform::NotificationCenter::Token completionToken = fake.notificationCenter.addObserver(
        slibTextPuncRecord::parseCompleted, [this](const platform::Notification& posted) {
            EXPECT_EQ(posted.object, platform::Value());
            ++completions;
        });
    std::shared_ptr<slibTextPuncRecord> record = slibTextPuncRecord::init(fake.host);
};

TEST_F(Punctuation, MarksAreKeptWithTheirDistanceFromTheEnd) {
    using namespace std::string_literals;
    const struct {
        std::optional<std::string> text;
        Tokens tokens;
    } rows[] = {
        {"Hi, you.", {{',', 6}, {'.', 1}}},
        {".", {{'.', 1}}},
        {"", {}},
        {std::nullopt, {}},
        {"it's well-known\nOK [a] <b> | ~", {}},
        {"\r!(", {{'\r', 3}, {'!', 2}, {'(', 1}}},
        {"\"):;?{}", {{'"', 7}, {')', 6}, {':', 5}, {';', 4}, {'?', 3}, {'{', 2}, {'}', 1}}},
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
        EXPECT_FALSE(record->op()->puncRec());
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
    for (const auto& [count, left] : {std::pair(-1, 4727), {4728, 4727}, {4727, 4727}, {0, 0}}) {
        record->setCount(count);
        EXPECT_EQ(record->count(), left);
    }
    for (int i = 0; i < 1576; ++i) {
        record->op()->pipup();
    }
    EXPECT_THAT(updates, ElementsAre(1576, 1576, 3152));
}

TEST_F(Punctuation, AScanCanBeCancelledAndWithoutARecordOrBytesOnlyCounts) {
    const auto token = fake.notificationCenter.addObserver(
        slibTextPuncRecord::parseUpdate, [this](const auto&) { record->op()->cancel(); });
    fill(std::string(1577, '.'));
    EXPECT_EQ(record->count(), 1576);
    EXPECT_EQ(completions, 1);
    record->setOp(nullptr);
    EXPECT_FALSE(record->op());
    const std::shared_ptr<const char> words(std::shared_ptr<void>(), ",a,");
    for (const auto& [bytes, marks] : {std::pair(words, 1), {nullptr, 0}}) {
        const auto scan = slibTextPuncOperation::initWithPtr_andLen(fake.host, bytes, 2);
        scan->setTheseRunningWords(5);
        scan->main();
        EXPECT_EQ(scan->theseRunningWords(), 5);
        scan->doFullParse();
        EXPECT_EQ(scan->theseRunningWords(), marks);
    }
}

} // namespace
