// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Value.h"

#include <cstdint>

namespace catalogue {

inline constexpr double milesPerMetre = 0.000621371;

/// The distances of this program: whole statute miles, truncated both before the conversion and
/// after it.
[[nodiscard]] inline std::int64_t statuteMiles(double metres) {
    return platform::wholeNumber(static_cast<double>(platform::wholeNumber(metres)) *
                                 milesPerMetre);
}

} // namespace catalogue
