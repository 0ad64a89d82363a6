// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/MapView.h"

#include <QImage>
#include <QTest>

#include <gtest/gtest.h>

namespace support {

/// Credits without a server behind them: nobody listens on the discard port. Without the path of
/// the base map the map is all sea.
inline desktop::MapSetup offlineMap(const char* baseMap = "") {
    desktop::MapSetup setup;
    setup.baseMap = QString::fromUtf8(baseMap);
    desktop::TileSources sources{map::worldTileServers()};
    for (map::TileServer& server : sources.servers) {
        server.address = "http://127.0.0.1:9/{z}/{x}/{y}";
    }
    setup.tiles = std::make_shared<desktop::TileLoader>(sources);
    return setup;
}

/// A map of 600 by 400 points.
class MapStage : public testing::Test {
protected:
    explicit MapStage(const desktop::MapSetup& setup = offlineMap()) : view_(setup) {
        view_.resize(600, 400);
        view_.show();
    }

    void showAround(const platform::Location& centre, double metres = 2000) {
        view_.setCenterCoordinate(centre);
        view_.setRegion(view_.regionThatFits(map::regionWithDistance(centre, metres, metres)));
    }
    /// The pixel that has a place in it.
    [[nodiscard]] QPoint pointOf(const platform::Location& location) const {
        const auto point = view_.state().view.toScreen(map::project(location)).value();
        return {static_cast<int>(point.x), static_cast<int>(point.y)};
    }
    QImage picture() { return view_.grab().toImage(); }
    QColor colorAt(const QPoint& at) { return picture().pixelColor(at); }

    desktop::MapView view_;
};

} // namespace support
