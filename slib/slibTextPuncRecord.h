// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host/OperationQueue.h"
#include "slib/SLibObject.h"
#include "slib/slibTextPuncOperation.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

/// The punctuation marks of texts, in order, filled in the background. Its marks, queue and
/// operation may be used from any thread; what it is as a library object belongs to one thread. Of
/// its own state nothing is archived.
///
/// Two notifications of the host's centre, both posted on the thread that scans, tell how a fill
/// goes. The host outlives the fill, also when the record is let go before its end: `queue()` can
/// be held and waited for.
class slibTextPuncRecord : public SLibObject,
                           public std::enable_shared_from_this<slibTextPuncRecord> {
public:
    /// The number of marks found so far is its object; see `slibTextPuncOperation`.
    static constexpr const char* parseUpdate = slibTextPuncOperation::parseUpdate;
    /// Without an object. The marks stand in the record by then.
    static constexpr const char* parseCompleted = "innerslibTextPuncParseCompleted";

    /// Named "slib Punctuation record", without marks.
    [[nodiscard]] static std::shared_ptr<slibTextPuncRecord> init(platform::Host& host);
    [[nodiscard]] static std::shared_ptr<slibTextPuncRecord>
    initWithCoder(platform::Host& host, platform::KeyedUnarchiver& coder);

    /// Starts a scan of the text's bytes up to the first NUL and returns at once; the text is kept
    /// as long as it takes. The marks found are appended together at the end, to whatever the
    /// record holds by then. Every fill has a queue and an operation of its own, so that several
    /// may run side by side. An absent text is scanned as an empty one: it only completes.
    void fillPuncRecordNSString(std::optional<std::string> text);

    [[nodiscard]] std::int64_t count() const;
    /// Keeps the first so many marks; a count below 0 or above what there is changes nothing.
    void setCount(std::int64_t count);
    /// A copy of all marks.
    [[nodiscard]] std::vector<slibPuncToken> puncTokens() const;
    void setPuncTokens(std::vector<slibPuncToken> tokens);
    void appendPuncTokens(std::vector<slibPuncToken> tokens);

    /// Those of the last fill, null before the first. Cancelling the operation ends the scan early;
    /// it completes all the same, with the marks found by then.
    [[nodiscard]] std::shared_ptr<platform::OperationQueue> queue() const;
    [[nodiscard]] std::shared_ptr<slibTextPuncOperation> op() const;
    /// While there is none, a fill that ends does so without its notification.
    void setOp(std::shared_ptr<slibTextPuncOperation> operation);

    [[nodiscard]] const platform::ClassNames& archivedClass() const override;

protected:
    explicit slibTextPuncRecord(platform::Host& host);
    slibTextPuncRecord(platform::Host& host, platform::KeyedUnarchiver& coder);

private:
    platform::Host& host_;
    mutable std::mutex mutex_;
    std::vector<slibPuncToken> puncTokens_;
    std::shared_ptr<platform::OperationQueue> queue_;
    std::shared_ptr<slibTextPuncOperation> op_;
};
