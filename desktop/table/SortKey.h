// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <cstdint>
#include <string>
#include <utility>

namespace desktop {

/// The value of a cell for sorting: a number or a text, and among texts the number is 0.
struct SortKey {
    /// In either direction, cells with a value come before those whose value is not known, and
    /// these before empty ones.
    enum class Kind : std::uint8_t { value, unknown, empty };

    Kind kind = Kind::empty;
    double number = 0;
    /// Compared byte by byte.
    std::string text;

    /// Empty for a value that cannot be compared.
    [[nodiscard]] static SortKey of(double number) {
        return std::isnan(number) ? SortKey() : SortKey{Kind::value, number, {}};
    }
    [[nodiscard]] static SortKey of(std::string text) {
        return text.empty() ? SortKey() : SortKey{Kind::value, 0, std::move(text)};
    }
};

enum class SortOrder : std::uint8_t { ascending, descending };

} // namespace desktop
