// SPDX-License-Identifier: MIT
#pragma once

#include "slib/SLibObject.h"

#include <cstdint>
#include <memory>

/// A range of whole numbers with a random pick. The three figures are kept as they are given; none
/// is made to agree with the others. Its archive holds them, the name and the description, and
/// nothing else of the base.
class SLibRange : public SLibObject {
public:
    [[nodiscard]] static std::shared_ptr<SLibRange>
    initWithValues_rangeEnd_startSpan(std::uint64_t start, std::uint64_t end, std::uint64_t span);
    /// Kept: other programs tell by it which ranges were archived. The unit type becomes "GRLS",
    /// and a range that never was has none.
    [[nodiscard]] static std::shared_ptr<SLibRange> initWithCoder(platform::KeyedUnarchiver& coder);

    std::uint64_t start = 0;
    std::uint64_t end = 0;
    /// How many numbers from `start` on a random pick may give.
    std::uint64_t span = 0;

    void setRange_end(std::uint64_t newStart, std::uint64_t newEnd);
    void setRangeAndSpan_end_span(std::uint64_t newStart, std::uint64_t newEnd,
                                  std::uint64_t newSpan);
    /// Another range of the same figures, with an identity, name and description of its own.
    [[nodiscard]] std::shared_ptr<SLibRange> copy() const;
    /// Any of `span` numbers from `start` on, each as likely.
    /// Kept: other programs count on the reach. Only the low 16 bits of the span count; where they
    /// are 0 it is `start`.
    [[nodiscard]] std::uint64_t getRandomRangeVal() const;

    [[nodiscard]] const platform::ClassNames& archivedClass() const override;
    void encodeWithCoder(platform::KeyedArchiver& coder) const override;

protected:
    SLibRange(std::uint64_t start, std::uint64_t end, std::uint64_t span);
    explicit SLibRange(platform::KeyedUnarchiver& coder);
};
