// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

#include <algorithm>
#include <array>
#include <cmath>

/// Colours that can be told apart in any palette the user may have. Contrast is as in WCAG 2.1:
/// from 1 (no difference) to 21 (black on white). Colours are treated as opaque.
namespace desktop {

/// The least contrast of letters with their ground, and of any other shape with what is beside it.
inline constexpr double contrastOfText = 4.5;
inline constexpr double contrastOfShapes = 3;

/// Relative luminance, from 0 for black to 1 for white.
[[nodiscard]] inline double luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    const QColor rgb = color.toRgb();
    return 0.2126 * linear(rgb.redF()) + 0.7152 * linear(rgb.greenF()) +
           0.0722 * linear(rgb.blueF());
}

[[nodiscard]] inline double contrast(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

/// Black or white, whichever contrasts more with a colour; the contrast is always above 4.5.
[[nodiscard]] inline QColor oppositeOf(const QColor& color) {
    return contrast(color, Qt::black) > contrast(color, Qt::white) ? Qt::black : Qt::white;
}

/// `share`, from 0 to 1, is that of the second colour.
[[nodiscard]] inline QColor mixed(const QColor& one, const QColor& other, double share) {
    const auto part = [share](int first, int second) {
        return static_cast<int>(std::lround(first + share * (second - first)));
    };
    return {part(one.red(), other.red()), part(one.green(), other.green()),
            part(one.blue(), other.blue())};
}

/// The colour, darkened or lightened just enough to have at least the contrast `least` with `from`.
[[nodiscard]] inline QColor standingOut(const QColor& color, const QColor& from, double least) {
    constexpr int steps = 64;
    for (int step = 0; step < steps; ++step) {
        const QColor tried = mixed(color, oppositeOf(from), double{1} * step / steps);
        if (contrast(tried, from) >= least) {
            return tried;
        }
    }
    return oppositeOf(from);
}

/// Colours of a filled shape with letters on it.
struct Filling {
    QColor ground;
    QColor letters;
};

/// The ground, darkened or lightened just enough to stand out from what is around it, and its
/// letters from it. Letters for which no ground does become black or white.
[[nodiscard]] inline Filling legible(const QColor& ground, const QColor& letters,
                                     const QColor& around) {
    constexpr int steps = 64;
    const QColor farthest = oppositeOf(around);
    const QColor plain = farthest == Qt::white ? Qt::black : Qt::white;
    for (const QColor& written : std::array<QColor, 2>{letters, plain}) {
        for (int step = 0; step < steps; ++step) {
            const QColor tried = mixed(ground, oppositeOf(written), double{1} * step / steps);
            if (contrast(tried, written) >= contrastOfText &&
                contrast(tried, around) >= contrastOfShapes) {
                return {tried, written};
            }
        }
    }
    return {farthest, plain};
}

} // namespace desktop
