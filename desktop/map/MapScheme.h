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
    /// Of names of countries and lines, and what surrounds their letters.
    QColor name;
    QColor nameHalo;
    QColor dot;
    QColor dotRim;
    /// Of the selected station.
    QColor marker{};
    /// Behind labels, scale bar and credit, and the text on it.
    QColor plate{};
    QColor plateText{};
    QColor focus{};
};

/// By day or by night, as the palette is. Pictures of the earth are dark either way, and so is what
/// stands in for them.
[[nodiscard]] MapScheme mapScheme(const QPalette& palette, bool onImagery);

} // namespace desktop
