// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/MapState.h"

namespace desktop {

/// What stays in place while the map moves: the scale bar, the tiles' credit, the focus frame, in
/// the flyover an arrow to the north, and with weather a legend. All of it keeps clear of the
/// view's middle, where a station that has been selected is marked: the credit is cut short, the
/// legend takes another shape, and what still does not fit is left out.
class FurnitureLayer {
public:
    explicit FurnitureLayer(const MapState& state) : state_(state) {}

    void paint(QPainter& painter) const;

    /// The rectangle of the credit; empty if there is none.
    [[nodiscard]] QRectF creditPlace() const { return credit().place; }
    /// The whole credit if there is no room for all of it; otherwise empty.
    [[nodiscard]] QString elidedCredit() const;
    /// The rectangles of everything but the focus frame.
    [[nodiscard]] std::vector<QRectF> places() const;
    /// The view's middle with the marker and the label of a station there.
    [[nodiscard]] QRectF middle() const;

private:
    struct Credit {
        QRectF place;
        QString text;
    };
    struct Legend {
        QRectF place;
        int columns = 1;
        QSizeF cell;
        bool hasWords = true;
    };

    [[nodiscard]] QFont smallFont() const;
    [[nodiscard]] QString wholeCredit() const;
    [[nodiscard]] Credit credit() const;
    [[nodiscard]] QRectF scaleBarPlace() const;
    [[nodiscard]] QRectF northArrowPlace() const;
    /// Its place is empty if there is none.
    [[nodiscard]] Legend legend() const;
    void drawScaleBar(QPainter& painter) const;
    void drawCredit(QPainter& painter) const;
    void drawNorthArrow(QPainter& painter) const;
    void drawLegend(QPainter& painter) const;

    const MapState& state_;
};

} // namespace desktop
