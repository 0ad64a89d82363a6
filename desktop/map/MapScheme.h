// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

class QPalette;

namespace desktop {

/// The colours of the map.
struct MapScheme {
    QColor sea;
    QColor land;
    QColor coast;
    QColor border;
    QColor graticule;
    /// The names of countries and graticule lines, and the rim around their letters.
    QColor name;
    QColor nameHalo;
    QColor dot;
    QColor dotRim;
    /// Marks the selected station.
    QColor marker{};
    /// The plate behind labels, scale bar and credit, and the text on it.
    QColor plate{};
    QColor plateText{};
    QColor focus{};
};

/// Light or dark, to suit the palette. Imagery is dark either way, and so is what stands in for it.
[[nodiscard]] MapScheme mapScheme(const QPalette& palette, bool onImagery);

} // namespace desktop
