// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/MapState.h"

#include <QPixmap>

#include <array>
#include <unordered_map>

namespace desktop {

/// The stations' weather: dots with the colour and shape of their category, the worst on top, and
/// wind barbs.
class WeatherLayer {
public:
    explicit WeatherLayer(const MapState& state) : state_(state) {}

    /// To be called when the stations or their weather have changed.
    void renew();

    /// Adds the stations that have been drawn to `shown`.
    void drawDots(QPainter& painter, std::vector<map::PlacedStation>& shown);
    /// Leaves out barbs that would touch one of the places.
    void drawBarbs(QPainter& painter, const std::vector<QRectF>& taken);

    struct PlacedBarb {
        std::uint32_t station = 0;
        WindBarb barb;
        /// All that it covers.
        QRectF place;
    };
    /// The barbs in the view: so many that none touches another. The strongest winds come first,
    /// and which are shown depends on the scale alone, so that moving the map changes nothing. None
    /// if the view shows too much, or is tilted.
    [[nodiscard]] std::vector<PlacedBarb> barbs();

private:
    struct Windy {
        map::PlacedStation station;
        WindBarb barb;
        /// All that the barb covers, relative to the station.
        QRectF place;
    };

    [[nodiscard]] static std::vector<Windy> withoutOverlaps(const std::vector<Windy>& windy,
                                                            double scale);
    [[nodiscard]] const QPixmap& picture(const PlacedBarb& placed);

    const MapState& state_;
    /// Without a report, then from the unknown category to the worst.
    std::array<map::StationIndex, 6> layers_;
    /// The strongest first.
    std::vector<Windy> windy_;
    /// Those of them that are shown at a scale.
    std::vector<Windy> thinned_;
    double thinnedFor_ = 0;

    std::unordered_map<int, QPixmap> pictures_;
    double picturesRatio_ = 0;
    QRgb picturesColor_ = 0;
};

} // namespace desktop
