// SPDX-License-Identifier: MIT
#include "desktop/map/WeatherLayer.h"

#include "desktop/map/Lettering.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace desktop {

namespace {

/// In points; of stations with the same category in the same square of this side one is shown.
constexpr double leastApart = 2;
/// The least zoom level with barbs.
constexpr double barbZoom = 4;
constexpr double barbWidth = 1.4;
/// Of the rim around a barb's lines.
constexpr double haloWidth = 3.6;

double dotSize(double zoom) {
    return std::clamp(4 + zoom / 2, 5.0, 9.0);
}

double rimWidth(double zoom) {
    return std::clamp(zoom / 4 - 0.25, 0.25, 1.0);
}

/// Rank in the order of drawing.
std::size_t layerOf(const StationWeather& weather) {
    return weather.category ? 1 + static_cast<std::size_t>(*weather.category) : 0;
}

} // namespace

void WeatherLayer::renew() {
    thinnedFor_ = 0;
    windy_.clear();
    for (std::size_t layer = 0; layer < layers_.size(); ++layer) {
        layers_[layer] = map::StationIndex(state_.stations, [&](std::size_t station) {
            return state_.showsWeather && layerOf(state_.weather[station]) == layer;
        });
    }
    for (std::size_t i = 0; i < state_.weather.size(); ++i) {
        const auto& barb = state_.weather[i].barb;
        const platform::Location& location = state_.stations[i].location;
        if (barb && location.isValid()) {
            const QRectF place =
                grown(barbPath(*barb).boundingRect(), haloWidth / 2, haloWidth / 2);
            windy_.push_back(
                {{static_cast<std::uint32_t>(i), map::project(location)}, *barb, place});
        }
    }
    std::ranges::stable_sort(windy_, [](const Windy& one, const Windy& other) {
        return one.barb.fives > other.barb.fives;
    });
}

void WeatherLayer::drawDots(QPainter& painter, std::vector<map::PlacedStation>& shown) {
    const map::Camera& view = state_.view;
    const double size = dotSize(view.zoom());
    const double rim = rimWidth(view.zoom());
    const double whole = std::ceil(size + 2 * rim + 2);
    const double ratio = std::ceil(state_.pixelsPerPoint);
    const QPointF middle(whole / 2, whole / 2);
    const QRectF frame = grown(state_.frame(), whole, whole);
    const DotColors colors{state_.scheme.land, state_.scheme.dotRim, state_.scheme.name};
    for (const map::StationIndex& layer : layers_) {
        std::array<QPixmap, 2> pictures;
        const auto pictureOf = [&](const StationWeather& weather) -> const QPixmap& {
            QPixmap& picture = pictures[weather.isOld];
            if (picture.isNull()) {
                picture = QPixmap((QSizeF(whole, whole) * ratio).toSize());
                picture.setDevicePixelRatio(ratio);
                picture.fill(Qt::transparent);
                QPainter inside(&picture);
                drawWeatherDot(inside, middle, size, rim, weather, colors);
            }
            return picture;
        };
        const auto first = static_cast<std::ptrdiff_t>(shown.size());
        layer.add(view.seen(), leastApart / view.scale(), shown);
        for (auto station = shown.begin() + first; station != shown.end(); ++station) {
            const auto point = view.toScreen(station->point);
            if (point && frame.contains(point->x, point->y)) {
                painter.drawPixmap(QPointF(point->x, point->y) - middle,
                                   pictureOf(state_.weather[station->number]));
            }
        }
    }
}

std::vector<WeatherLayer::Windy> WeatherLayer::withoutOverlaps(const std::vector<Windy>& windy,
                                                               double scale) {
    double reach = 1;
    for (const Windy& one : windy) {
        reach = std::max(
            {reach, -one.place.left(), -one.place.top(), one.place.right(), one.place.bottom()});
    }
    // The world in squares so large that a barb meets only those of its own and the eight around.
    const auto squares = static_cast<std::int64_t>(std::max(1.0, std::floor(scale / (2 * reach))));
    const auto number = [&](std::int64_t column, std::int64_t row) {
        return row * squares + (column + squares) % squares;
    };
    std::unordered_map<std::int64_t, std::vector<const Windy*>> taken;
    std::vector<Windy> result;
    result.reserve(windy.size());
    for (const Windy& one : windy) {
        const map::WorldPoint& at = one.station.point;
        const auto meets = [&](const Windy* other) {
            const double across = other->station.point.x - at.x;
            const double along = other->station.point.y - at.y;
            return one.place.intersects(
                other->place.translated((across - std::round(across)) * scale, along * scale));
        };
        const auto column = static_cast<std::int64_t>(at.x * static_cast<double>(squares));
        const auto row = static_cast<std::int64_t>(at.y * static_cast<double>(squares));
        bool isFree = true;
        for (std::int64_t i = 0; i < 9 && isFree; ++i) {
            const auto square = taken.find(number(column + i % 3 - 1, row + i / 3 - 1));
            isFree = square == taken.end() || std::ranges::none_of(square->second, meets);
        }
        if (isFree) {
            taken[number(column, row)].push_back(&one);
            result.push_back(one);
        }
    }
    return result;
}

std::vector<WeatherLayer::PlacedBarb> WeatherLayer::barbs() {
    const map::Camera& view = state_.view;
    std::vector<PlacedBarb> result;
    if (windy_.empty() || view.zoom() < barbZoom || state_.isTilted()) {
        return result;
    }
    if (thinnedFor_ != view.scale()) {
        thinned_ = withoutOverlaps(windy_, view.scale());
        thinnedFor_ = view.scale();
    }
    const QRectF frame = state_.frame();
    for (const Windy& windy : thinned_) {
        if (const auto point = view.toScreen(windy.station.point)) {
            const QPointF at(point->x, point->y);
            const QRectF place = windy.place.translated(at);
            if (frame.intersects(place)) {
                result.push_back({windy.station.number, windy.barb, place});
            }
        }
    }
    return result;
}

const QPixmap& WeatherLayer::picture(const PlacedBarb& placed) {
    const double ratio = std::ceil(state_.pixelsPerPoint);
    if (picturesRatio_ != ratio || picturesColor_ != state_.scheme.name.rgba()) {
        pictures_.clear();
        picturesRatio_ = ratio;
        picturesColor_ = state_.scheme.name.rgba();
    }
    const WindBarb& barb = placed.barb;
    const int key = ((barb.fives * 512) + barb.direction) * 2 + (barb.isSouthern ? 1 : 0);
    QPixmap& picture = pictures_[key];
    if (picture.isNull()) {
        picture = QPixmap((placed.place.size() * ratio).toSize() + QSize(1, 1));
        picture.setDevicePixelRatio(ratio);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        const QPainterPath path = barbPath(barb);
        painter.translate(QPointF(haloWidth / 2, haloWidth / 2) - path.boundingRect().topLeft());
        painter.strokePath(path, QPen(state_.scheme.nameHalo, haloWidth));
        painter.strokePath(path, QPen(state_.scheme.name, barbWidth));
        if (barb.fives > 0) {
            painter.fillPath(path, state_.scheme.name);
        }
    }
    return picture;
}

void WeatherLayer::drawBarbs(QPainter& painter, const std::vector<QRectF>& taken) {
    for (const PlacedBarb& barb : barbs()) {
        const bool isFree = std::ranges::none_of(
            taken, [&](const QRectF& place) { return place.intersects(barb.place); });
        if (isFree) {
            painter.drawPixmap(barb.place.topLeft(), picture(barb));
        }
    }
}

} // namespace desktop
