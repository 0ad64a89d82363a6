// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Guarded.h"
#include "platform/host/Host.h"
#include "platform/host/OperationQueue.h"

#include <atomic>
#include <cstdint>
#include <memory>

class slibTextPuncRecord;

/// A punctuation mark and its position.
struct slibPuncToken {
    signed char mark = 0;
    /// The number of bytes from the mark to the end of its text, including the mark: it counts from
    /// the end.
    /// Kept: other programs store it this way. The mark's index is the length of the text minus
    /// this.
    std::int64_t position = 0;

    friend bool operator==(const slibPuncToken&, const slibPuncToken&) = default;
};

/// Finds the punctuation marks of a text and appends them to a record. A mark is one of the twelve
/// bytes carriage return ! " ( ) , . : ; ? { }.
/// Kept: other programs compare the counts with old ones. Line feed, apostrophe and hyphen are not
/// marks.
///
/// At every 1,576th mark it posts the notification `parseUpdate` with the number of marks found so
/// far, on the scanning thread, and checks whether it was cancelled. It checks nowhere else.
class slibTextPuncOperation : public platform::Operation {
public:
    static constexpr const char* parseUpdate = "innerslibTextPuncParseUpdate";
    static constexpr std::int64_t marksBetweenUpdates = 1576;

    /// Scans `len` bytes from `words` on, which are shared with their other owners and must not be
    /// written to meanwhile.
    [[nodiscard]] static std::shared_ptr<slibTextPuncOperation>
    initWithPtr_andLen(platform::Host& host, std::shared_ptr<const char> words, std::uint64_t len);

    /// The marks found so far. Any thread.
    [[nodiscard]] std::int64_t theseRunningWords() const { return theseRunningWords_; }
    void setTheseRunningWords(std::int64_t words) { theseRunningWords_ = words; }
    /// The record to fill, which the operation holds until it has filled it. Any thread.
    [[nodiscard]] std::shared_ptr<slibTextPuncRecord> puncRec() const { return puncRec_.load(); }
    void setPuncRec(std::shared_ptr<slibTextPuncRecord> record);

    /// Scans if there are a record and bytes to scan; releases the record in any case.
    void main() override;
    /// Counts from 0 and appends what was found once it ends or is cancelled; without a record it
    /// only counts and posts.
    void doFullParse();
    /// Counts one more mark, and posts as the scan does.
    void pipup();

protected:
    slibTextPuncOperation(platform::Host& host, std::shared_ptr<const char> words,
                          std::uint64_t len);

private:
    void postUpdate(std::int64_t marks);

    platform::Host& host_;
    std::shared_ptr<const char> words_;
    std::uint64_t len_;
    std::atomic<std::int64_t> theseRunningWords_ = 0;
    platform::Guarded<std::shared_ptr<slibTextPuncRecord>> puncRec_;
};
