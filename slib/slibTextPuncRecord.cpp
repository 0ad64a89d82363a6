// SPDX-License-Identifier: MIT
#include "slib/slibTextPuncRecord.h"

#include <algorithm>
#include <utility>

slibTextPuncRecord::slibTextPuncRecord(platform::Host& host)
    : SLibObject(GRACompare{}, "slib Punctuation record"), host_(host) {}

slibTextPuncRecord::slibTextPuncRecord(platform::Host& host, platform::KeyedUnarchiver& coder)
    : SLibObject(coder), host_(host) {}

std::shared_ptr<slibTextPuncRecord> slibTextPuncRecord::init(platform::Host& host) {
    return std::shared_ptr<slibTextPuncRecord>(new slibTextPuncRecord(host));
}

std::shared_ptr<slibTextPuncRecord>
slibTextPuncRecord::initWithCoder(platform::Host& host, platform::KeyedUnarchiver& coder) {
    return std::shared_ptr<slibTextPuncRecord>(new slibTextPuncRecord(host, coder));
}

void slibTextPuncRecord::fillPuncRecordNSString(std::optional<std::string> text) {
    const auto words = std::make_shared<const std::string>(std::move(text).value_or(""));
    const auto length = std::min(words->find('\0'), words->size());
    auto operation = slibTextPuncOperation::initWithPtr_andLen(
        host_, std::shared_ptr<const char>(words, words->data()), length);
    operation->setPuncRec(shared_from_this());
    auto fillQueue = std::make_shared<platform::OperationQueue>();
    // It holds the queue too, because the next fill, or the end of the record, must not end this
    // one.
    operation->completionBlock = [record = shared_from_this(), fillQueue] {
        if (record->op()) {
            record->host_.notificationCenter.post({parseCompleted, {}, nullptr});
        }
    };
    // The old ones are released outside the lock, because a queue waits for its thread to end.
    auto oldQueue = fillQueue;
    auto oldOperation = operation;
    {
        const std::scoped_lock lock(mutex_);
        queue_.swap(oldQueue);
        op_.swap(oldOperation);
    }
    fillQueue->addOperation(std::move(operation));
}

std::int64_t slibTextPuncRecord::count() const {
    const std::scoped_lock lock(mutex_);
    return static_cast<std::int64_t>(puncTokens_.size());
}

void slibTextPuncRecord::setCount(std::int64_t count) {
    const std::scoped_lock lock(mutex_);
    if (count >= 0 && std::cmp_less_equal(count, puncTokens_.size())) {
        puncTokens_.resize(static_cast<std::size_t>(count));
    }
}

std::vector<slibPuncToken> slibTextPuncRecord::puncTokens() const {
    const std::scoped_lock lock(mutex_);
    return puncTokens_;
}

void slibTextPuncRecord::setPuncTokens(std::vector<slibPuncToken> tokens) {
    const std::scoped_lock lock(mutex_);
    puncTokens_.swap(tokens);
}

void slibTextPuncRecord::appendPuncTokens(std::vector<slibPuncToken> tokens) {
    const std::scoped_lock lock(mutex_);
    if (puncTokens_.empty()) {
        puncTokens_.swap(tokens);
    } else {
        puncTokens_.insert(puncTokens_.end(), tokens.begin(), tokens.end());
    }
}

std::shared_ptr<platform::OperationQueue> slibTextPuncRecord::queue() const {
    const std::scoped_lock lock(mutex_);
    return queue_;
}

std::shared_ptr<slibTextPuncOperation> slibTextPuncRecord::op() const {
    const std::scoped_lock lock(mutex_);
    return op_;
}

void slibTextPuncRecord::setOp(std::shared_ptr<slibTextPuncOperation> operation) {
    const std::scoped_lock lock(mutex_);
    op_.swap(operation);
}

const platform::ClassNames& slibTextPuncRecord::archivedClass() const {
    static const platform::ClassNames names{"slibTextPuncRecord", "SLibObject", "NSObject"};
    return names;
}
