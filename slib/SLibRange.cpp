// SPDX-License-Identifier: MIT
#include "slib/SLibRange.h"

#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "slib/Random.h"

#include <random>

namespace {

constexpr const char* startKey = "start";
constexpr const char* endKey = "end";
constexpr const char* spanKey = "span";
constexpr const char* rangeNameKey = "name";
constexpr const char* rangeDescriptionKey = "desc";

} // namespace

SLibRange::SLibRange(std::uint64_t first, std::uint64_t last, std::uint64_t count)
    : start(first), end(last), span(count) {}

SLibRange::SLibRange(platform::KeyedUnarchiver& coder)
    : SLibObject(GRACompare{unitTypeOf("GRLS")}, coder.decodeText(rangeNameKey),
                 coder.decodeText(rangeDescriptionKey)),
      start(static_cast<std::uint64_t>(coder.decodeInteger(startKey))),
      end(static_cast<std::uint64_t>(coder.decodeInteger(endKey))),
      span(static_cast<std::uint64_t>(coder.decodeInteger(spanKey))) {}

std::shared_ptr<SLibRange> SLibRange::initWithValues_rangeEnd_startSpan(std::uint64_t start,
                                                                        std::uint64_t end,
                                                                        std::uint64_t span) {
    return std::shared_ptr<SLibRange>(new SLibRange(start, end, span));
}

std::shared_ptr<SLibRange> SLibRange::initWithCoder(platform::KeyedUnarchiver& coder) {
    return std::shared_ptr<SLibRange>(new SLibRange(coder));
}

void SLibRange::setRange_end(std::uint64_t newStart, std::uint64_t newEnd) {
    start = newStart;
    end = newEnd;
}

void SLibRange::setRangeAndSpan_end_span(std::uint64_t newStart, std::uint64_t newEnd,
                                         std::uint64_t newSpan) {
    setRange_end(newStart, newEnd);
    span = newSpan;
}

std::shared_ptr<SLibRange> SLibRange::copy() const {
    return initWithValues_rangeEnd_startSpan(start, end, span);
}

std::uint64_t SLibRange::getRandomRangeVal() const {
    const auto width = static_cast<std::uint16_t>(span);
    if (width == 0) {
        return start;
    }
    std::uniform_int_distribution<std::uint16_t> offset(0, static_cast<std::uint16_t>(width - 1));
    return start + offset(slib::randomGenerator());
}

const platform::ClassNames& SLibRange::archivedClass() const {
    static const platform::ClassNames names{"SLibRange", "SLibObject", "NSObject"};
    return names;
}

void SLibRange::encodeWithCoder(platform::KeyedArchiver& coder) const {
    coder.encodeInteger(static_cast<std::int64_t>(start), startKey);
    coder.encodeInteger(static_cast<std::int64_t>(end), endKey);
    coder.encodeInteger(static_cast<std::int64_t>(span), spanKey);
    coder.encodeText(name(), rangeNameKey);
    coder.encodeText(description(), rangeDescriptionKey);
}
