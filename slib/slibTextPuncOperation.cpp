// SPDX-License-Identifier: MIT
#include "slib/slibTextPuncOperation.h"

#include "slib/slibTextPuncRecord.h"

#include <array>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr std::array<bool, 256> markTable = [] {
    std::array<bool, 256> isMark{};
    for (const char mark : std::string_view("\r!\"(),.:;?{}")) {
        isMark[static_cast<unsigned char>(mark)] = true;
    }
    return isMark;
}();

} // namespace

slibTextPuncOperation::slibTextPuncOperation(platform::Host& host,
                                             std::shared_ptr<const char> words, std::uint64_t len)
    : host_(host), words_(std::move(words)), len_(words_ ? len : 0) {}

std::shared_ptr<slibTextPuncOperation>
slibTextPuncOperation::initWithPtr_andLen(platform::Host& host, std::shared_ptr<const char> words,
                                          std::uint64_t len) {
    return std::shared_ptr<slibTextPuncOperation>(
        new slibTextPuncOperation(host, std::move(words), len));
}

void slibTextPuncOperation::setPuncRec(std::shared_ptr<slibTextPuncRecord> record) {
    puncRec_.store(std::move(record));
}

void slibTextPuncOperation::main() {
    if (len_ != 0 && puncRec()) {
        doFullParse();
    }
    setPuncRec(nullptr);
}

void slibTextPuncOperation::doFullParse() {
    setTheseRunningWords(0);
    // Growing would take longer than the scan. Prose has fewer marks than this, and what it leaves
    // unused of a large block costs no memory.
    constexpr std::uint64_t fewestBytesForAMark = 16;
    std::vector<slibPuncToken> found;
    found.reserve(len_ / fewestBytesForAMark);
    for (std::uint64_t i = 0; i < len_; ++i) {
        const char byte = words_.get()[i];
        if (!markTable[static_cast<unsigned char>(byte)]) {
            continue;
        }
        found.push_back({static_cast<signed char>(byte), static_cast<std::int64_t>(len_ - i)});
        const auto marks = static_cast<std::int64_t>(found.size());
        theseRunningWords_.store(marks, std::memory_order_relaxed);
        if (marks % marksBetweenUpdates == 0) {
            postUpdate(marks);
            if (isCancelled()) {
                break;
            }
        }
    }
    if (const auto record = puncRec()) {
        record->appendPuncTokens(std::move(found));
    }
}

void slibTextPuncOperation::pipup() {
    const std::int64_t marks = ++theseRunningWords_;
    if (marks % marksBetweenUpdates == 0) {
        postUpdate(marks);
    }
}

void slibTextPuncOperation::postUpdate(std::int64_t marks) {
    host_.notificationCenter.post({parseUpdate, platform::Number(marks), nullptr});
}
