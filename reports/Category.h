// SPDX-License-Identifier: MIT
#pragma once

#include "reports/Report.h"

#include <string_view>

namespace reports {

/// The lowest broken or overcast layer, or the vertical visibility.
struct Ceiling {
    enum class State : std::uint8_t {
        unknown, ///< it cannot be told whether there is one, or how high it is
        none,
        known,
    };

    State state = State::unknown;
    /// Above the ground, where it is known.
    int feet = 0;
    /// Where it is known, there may be a lower one whose height is missing.
    bool mayBeLower = false;

    friend bool operator==(const Ceiling&, const Ceiling&) = default;
};

[[nodiscard]] Ceiling ceilingOf(const Conditions& conditions);

/// The category that visibility and ceiling make, the worse of the two:
///
/// |      | ceiling in feet     | visibility in statute miles |
/// | ---- | ------------------- | --------------------------- |
/// | LIFR | below 500           | below 1                     |
/// | IFR  | 500 to below 1,000  | 1 to below 3                |
/// | MVFR | 1,000 to 3,000      | 3 to 5                      |
/// | VFR  | above 3,000 or none | above 5                     |
///
/// Unknown where what is missing might make a worse one.
[[nodiscard]] Category categoryOf(const Conditions& conditions);

/// "VFR", "MVFR", "IFR" or "LIFR"; empty for the unknown one.
[[nodiscard]] std::string_view nameOf(Category category);
/// The same for the eye, with "unknown" for the unknown one.
[[nodiscard]] std::string_view wordOf(Category category);
/// The other way round of `nameOf`; unknown for any other text.
[[nodiscard]] Category categoryNamed(std::string_view name);

} // namespace reports
