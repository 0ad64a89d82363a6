// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/Guarded.h"
#include "platform/host/Host.h"
#include "platform/host/OperationQueue.h"

#include <atomic>
#include <cstdint>
#include <memory>

class slibTextPuncRecord;

/// A punctuation mark and where it stands.
struct slibPuncToken {
    signed char mark = 0;
    /// Bytes from the mark to the end of its text, the mark included: counted from the end.
    /// Kept: other programs store it so. The mark's index is the length of the text minus this.
    std::int64_t position = 0;

    friend bool operator==(const slibPuncToken&, const slibPuncToken&) = default;
};

/// Finds the punctuation marks of a text and appends them to a record. A mark is one of the twelve
/// bytes carriage return ! " ( ) , . : ; ? { }.
/// Kept: other programs compare counts of long ago. Neither line feed nor apostrophe nor hyphen is
/// one.
///
/// At every 1,576th mark it posts the notification `parseUpdate` with the number of marks found so
/// far, on the thread that scans, and looks whether it was cancelled: nowhere else does it do so.
class slibTextPuncOperation : public platform::Operation {
public:
    static constexpr const char* parseUpdate = "innerslibTextPuncParseUpdate";
    static constexpr std::int64_t marksBetweenUpdates = 1576;

    /// `len` bytes from `words` on, shared with whoever else holds them and not written meanwhile.
    [[nodiscard]] static std::shared_ptr<slibTextPuncOperation>
    initWithPtr_andLen(platform::Host& host, std::shared_ptr<const char> words, std::uint64_t len);

    /// The marks found so far. Any thread.
    [[nodiscard]] std::int64_t theseRunningWords() const { return theseRunningWords_; }
    void setTheseRunningWords(std::int64_t words) { theseRunningWords_ = words; }
    /// The record to fill, which the operation keeps until it has filled it. Any thread.
    [[nodiscard]] std::shared_ptr<slibTextPuncRecord> puncRec() const { return puncRec_.load(); }
    void setPuncRec(std::shared_ptr<slibTextPuncRecord> record);

    /// Parses and lets go of the record; does nothing without a record or without bytes.
    void main() override;
    /// Counts from 0 and appends what was found at the end, or where it was cancelled; without a
    /// record it only counts and tells.
    void doFullParse();
    /// Counts one more mark, and tells as the scan does.
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
