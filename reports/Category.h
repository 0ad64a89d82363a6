// SPDX-License-Identifier: MIT
#pragma once

#include "reports/Report.h"

#include <string_view>

namespace reports {

/// The lowest broken or overcast layer, or the vertical visibility.
struct Ceiling {
    enum class State : std::uint8_t {
        unknown, ///< whether there is one, or how high it is, cannot be told
        none,
        known,
    };

    State state = State::unknown;
    /// Height above the ground, if the state is `known`.
    int feet = 0;
    /// With a known ceiling: a lower layer, whose height is missing, may be the ceiling instead.
    bool mayBeLower = false;

    friend bool operator==(const Ceiling&, const Ceiling&) = default;
};

[[nodiscard]] Ceiling ceilingOf(const Conditions& conditions);

/// The worse of the categories that the ceiling and the visibility give:
///
/// |      | ceiling in feet     | visibility in statute miles |
/// | ---- | ------------------- | --------------------------- |
/// | LIFR | below 500           | below 1                     |
/// | IFR  | 500 to below 1,000  | 1 to below 3                |
/// | MVFR | 1,000 to 3,000      | 3 to 5                      |
/// | VFR  | above 3,000 or none | above 5                     |
///
/// Unknown if a value that is missing could make it worse.
[[nodiscard]] Category categoryOf(const Conditions& conditions);

/// "VFR", "MVFR", "IFR" or "LIFR"; empty for an unknown category.
[[nodiscard]] std::string_view nameOf(Category category);
/// The same for people, with "unknown" for an unknown category.
[[nodiscard]] std::string_view wordOf(Category category);
/// The category with that name; unknown for any other text.
[[nodiscard]] Category categoryNamed(std::string_view name);

} // namespace reports
