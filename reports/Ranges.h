// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Value.h"

/// What the values of a report can be, in the units of Report.h: no weather is beyond, only
/// misprints and damage.
namespace reports {

template <typename T>
struct Range {
    T least;
    T most;

    /// False for what is not a number.
    [[nodiscard]] constexpr bool holds(T value) const { return value >= least && value <= most; }
};

inline constexpr Range<int> windDirections{0, 360};
inline constexpr Range<int> windSpeeds{0, 400};
inline constexpr Range<int> heights{0, 100'000};
inline constexpr Range<int> probabilities{1, 99};
inline constexpr Range<double> visibilities{0, 1000};
inline constexpr Range<double> temperatures{-100, 70};
inline constexpr Range<double> dewPoints{-120, 50};
inline constexpr Range<double> altimeters{20, 35};
/// 9999 stands for an unknown one.
inline constexpr Range<double> elevations{-500, 9998};
inline constexpr Range<platform::Date> dates{
    platform::Date(), std::chrono::sys_days(std::chrono::year(9999) / 12 / 31)};

} // namespace reports
