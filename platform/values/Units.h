// SPDX-License-Identifier: MIT
#pragma once

#include <numbers>

/// Factors between units.
namespace platform {

inline constexpr double radiansPerDegree = std::numbers::pi / 180;
/// Of a statute mile.
inline constexpr double metresPerMile = 1609.344;

} // namespace platform
