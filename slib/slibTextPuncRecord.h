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
/// operation may be used on any thread, its base class on one thread at a time. None of its own
/// state is archived.
///
/// Two notifications of the host's centre, both posted on the scanning thread, report on a fill.
/// The host must outlive the fill, even if the record is released first: `queue()` can be held and
/// waited for.
class slibTextPuncRecord : public SLibObject,
                           public std::enable_shared_from_this<slibTextPuncRecord> {
public:
    /// Its object is the number of marks found so far; see `slibTextPuncOperation`.
    static constexpr const char* parseUpdate = slibTextPuncOperation::parseUpdate;
    /// Has no object. The marks are in the record by then.
    static constexpr const char* parseCompleted = "innerslibTextPuncParseCompleted";

    /// Named "slib Punctuation record", without marks.
    [[nodiscard]] static std::shared_ptr<slibTextPuncRecord> init(platform::Host& host);
    [[nodiscard]] static std::shared_ptr<slibTextPuncRecord>
    initWithCoder(platform::Host& host, platform::KeyedUnarchiver& coder);

    /// Starts a scan of the text's bytes up to the first NUL and returns at once; the text is kept
    /// alive until the scan ends. The marks are appended together at the end, to whatever the
    /// record holds by then. Every fill has its own queue and operation, so several may run at the
    /// same time. Absent text is scanned as empty text: the fill only completes.
    void fillPuncRecordNSString(std::optional<std::string> text);

    [[nodiscard]] std::int64_t count() const;
    /// Keeps the first `count` marks; does nothing if it is negative or exceeds their number.
    void setCount(std::int64_t count);
    /// A copy of all marks.
    [[nodiscard]] std::vector<slibPuncToken> puncTokens() const;
    void setPuncTokens(std::vector<slibPuncToken> tokens);
    void appendPuncTokens(std::vector<slibPuncToken> tokens);

    /// Those of the last fill; null before the first. Cancelling the operation ends the scan early;
    /// the fill still completes, with the marks found by then.
    [[nodiscard]] std::shared_ptr<platform::OperationQueue> queue() const;
    [[nodiscard]] std::shared_ptr<slibTextPuncOperation> op() const;
    /// While this is null, a fill ends without its notification.
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
