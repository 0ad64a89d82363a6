// SPDX-License-Identifier: MIT
#pragma once

#include "slib/SLibObject.h"

#include <cstdint>
#include <memory>

/// A range of whole numbers to pick from at random. Its three figures are stored as given; none is
/// adjusted to the others. Its archive holds them, the name and the description, and nothing else
/// of the base class.
class SLibRange : public SLibObject {
public:
    [[nodiscard]] static std::shared_ptr<SLibRange>
    initWithValues_rangeEnd_startSpan(std::uint64_t start, std::uint64_t end, std::uint64_t span);
    /// Kept: other programs recognise archived ranges by it. The unit type becomes "GRLS", while a
    /// range that was never archived has none.
    [[nodiscard]] static std::shared_ptr<SLibRange> initWithCoder(platform::KeyedUnarchiver& coder);

    std::uint64_t start = 0;
    std::uint64_t end = 0;
    /// How many numbers, from `start` on, a random pick may return.
    std::uint64_t span = 0;

    void setRange_end(std::uint64_t newStart, std::uint64_t newEnd);
    void setRangeAndSpan_end_span(std::uint64_t newStart, std::uint64_t newEnd,
                                  std::uint64_t newSpan);
    /// A new range of the same figures, with its own identity, name and description.
    [[nodiscard]] std::shared_ptr<SLibRange> copy() const;
    /// Any of the `span` numbers from `start` on, all equally likely.
    /// Kept: other programs rely on the reach. Only the low 16 bits of `span` count; if they are 0,
    /// the result is `start`.
    [[nodiscard]] std::uint64_t getRandomRangeVal() const;

    [[nodiscard]] const platform::ClassNames& archivedClass() const override;
    void encodeWithCoder(platform::KeyedArchiver& coder) const override;

protected:
    SLibRange(std::uint64_t start, std::uint64_t end, std::uint64_t span);
    explicit SLibRange(platform::KeyedUnarchiver& coder);
};
