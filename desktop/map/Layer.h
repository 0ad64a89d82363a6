// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/MapState.h"

#include <QGraphicsItem>

namespace desktop {

/// One of the map's layers: fills the view and draws what the state says.
class Layer : public QGraphicsItem {
public:
    [[nodiscard]] QRectF boundingRect() const override { return bounds_; }

    /// To be called when the view has another size.
    void fit() {
        prepareGeometryChange();
        bounds_ = state_.frame();
    }

protected:
    explicit Layer(const MapState& state) : state_(state) {}

    [[nodiscard]] const MapState& state() const { return state_; }

private:
    const MapState& state_;
    QRectF bounds_;
};

} // namespace desktop
