// SPDX-License-Identifier: MIT
#include "desktop/map/MapScheme.h"

#include "desktop/controls/Contrast.h"

#include <QPalette>

namespace desktop {

namespace {

QColor translucent(QColor color, int alpha) {
    color.setAlpha(alpha);
    return color;
}

} // namespace

MapScheme mapScheme(const QPalette& palette, bool onImagery) {
    const bool isDark = palette.color(QPalette::Window).lightness() < 128;
    MapScheme scheme;
    if (onImagery) {
        scheme = {.sea = QColor(18, 34, 54),
                  .land = QColor(58, 70, 56),
                  .coast = QColor(116, 132, 120),
                  .border = QColor(255, 236, 160, 200),
                  .graticule = QColor(255, 255, 255, 60),
                  .name = QColor(255, 255, 255),
                  .nameHalo = QColor(0, 0, 0, 170),
                  .dot = QColor(255, 214, 64),
                  .dotRim = QColor(40, 30, 0)};
    } else if (isDark) {
        scheme = {.sea = QColor(24, 32, 42),
                  .land = QColor(50, 57, 64),
                  .coast = QColor(98, 112, 126),
                  .border = QColor(122, 116, 106),
                  .graticule = QColor(255, 255, 255, 30),
                  .name = QColor(196, 202, 208),
                  .nameHalo = QColor(30, 36, 42, 200),
                  .dot = QColor(98, 180, 255),
                  .dotRim = QColor(12, 22, 34)};
    } else {
        scheme = {.sea = QColor(203, 221, 235),
                  .land = QColor(246, 243, 234),
                  .coast = QColor(132, 158, 178),
                  .border = QColor(178, 160, 138),
                  .graticule = QColor(40, 70, 100, 44),
                  .name = QColor(84, 84, 92),
                  .nameHalo = QColor(255, 255, 255, 200),
                  .dot = QColor(24, 96, 176),
                  .dotRim = QColor(255, 255, 255)};
    }
    scheme.marker = isDark || onImagery ? QColor(255, 96, 72) : QColor(208, 40, 24);
    scheme.plate = translucent(palette.color(QPalette::Window), 216);
    scheme.plateText = palette.color(QPalette::WindowText);
    scheme.focus =
        standingOut(standingOut(palette.color(QPalette::Highlight), scheme.sea, contrastOfShapes),
                    scheme.land, contrastOfShapes);
    return scheme;
}

} // namespace desktop
