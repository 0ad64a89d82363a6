// SPDX-License-Identifier: MIT
#include "desktop/map/MapView.h"

#include "desktop/text/Text.h"
#include "platform/host/Files.h"
#include "reports/Description.h"

#include <QPainter>
#include <QResizeEvent>

#include <utility>

namespace desktop {

namespace {

constexpr std::uint64_t longestBaseMap = 16 << 20;
/// Far more than any screen can show.
constexpr std::size_t mostTiles = 1024;
constexpr double flyoverTilt = 45;

bool isSame(const platform::Region& one, const platform::Region& other) {
    return one.centre.latitude == other.centre.latitude &&
           one.centre.longitude == other.centre.longitude &&
           one.latitudeSpan == other.latitudeSpan && one.longitudeSpan == other.longitudeSpan;
}

} // namespace

MapView::MapView(const MapSetup& setup, QWidget* parent)
    : QWidget(parent),
      loader_(setup.tiles ? setup.tiles : std::make_shared<TileLoader>(TileSources())),
      wishes_(loader_, [this] { update(); }) {
    state_.loader = loader_.get();
    if (const auto bytes = platform::readFile(filePath(setup.baseMap), longestBaseMap)) {
        state_.base = map::BaseMap::read(*bytes);
    }
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    grabGesture(Qt::PinchGesture);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setMinimumSize(80, 60);
    setAccessibleName(QStringLiteral("Map"));
    restyle();
}

void MapView::setStations(std::vector<map::Station> stations) {
    state_.pointed.reset();
    state_.index = map::StationIndex(stations);
    state_.stations = std::move(stations);
    renewWeather();
}

void MapView::setWeather(MetarOf metarOf, reports::Date now) {
    metarOf_ = std::move(metarOf);
    now_ = now;
    renewWeather();
}

void MapView::renewMarkerWeather() {
    state_.markerWeather.reset();
    if (state_.showsWeather && state_.marker) {
        state_.markerWeather = stationWeather(metarOf_(state_.marker->identifier),
                                              state_.marker->location.latitude, now_);
    }
}

void MapView::renewWeather() {
    state_.showsWeather = metarOf_ != nullptr;
    state_.weather.clear();
    if (state_.showsWeather) {
        state_.weather.reserve(state_.stations.size());
        for (const map::Station& station : state_.stations) {
            state_.weather.push_back(
                stationWeather(metarOf_(station.identifier), station.location.latitude, now_));
        }
    }
    renewMarkerWeather();
    dots_.renew();
    update();
}

void MapView::setMarker(std::optional<map::Station> station) {
    state_.marker = std::move(station);
    if (state_.marker && !state_.marker->location.isValid()) {
        state_.marker.reset();
    }
    renewMarkerWeather();
    setAccessibleDescription(
        state_.marker ? QStringLiteral("Shows station %1").arg(shownText(state_.marker->identifier))
                      : QString());
    update();
}

QString MapView::helpAt(const QPointF& at) const {
    if (furniture_.creditPlace().contains(at)) {
        return furniture_.elidedCredit();
    }
    if (!state_.pointed || !metarOf_) {
        return {};
    }
    const std::string& identifier = state_.stations[*state_.pointed].identifier;
    const reports::Metar* metar = metarOf_(identifier);
    if (!metar) {
        return shownText(identifier) + QStringLiteral(": no report");
    }
    return QStringLiteral("%1, %2\n%3\n%4")
        .arg(shownText(identifier), shownText(reports::wordOf(metar->category)),
             shownText(metar->raw), shownText(reports::ageInWords(metar->observed, now_)));
}

bool MapView::isHidden() const {
    return QWidget::isHidden();
}

void MapView::setHidden(bool hidden) {
    setVisible(!hidden);
}

platform::Rect MapView::frame() const {
    return {static_cast<double>(x()), static_cast<double>(y()), static_cast<double>(width()),
            static_cast<double>(height())};
}

void MapView::setMapType(std::int64_t type) {
    const std::int64_t drawn = platform::drawnType(type);
    const bool isType = drawn >= platform::standardMap && drawn <= platform::flyoverMap;
    if (isType && drawn != state_.type) {
        state_.type = drawn;
        state_.view.setAttitude(0, state_.isTilted() ? flyoverTilt : 0);
        restyle();
    }
}

void MapView::setCenterCoordinate(const platform::Location& centre) {
    if (centre.isValid()) {
        state_.view.setCentre(centre);
        set_.reset();
        viewChanged();
    }
}

platform::Region MapView::regionThatFits(const platform::Region& region) const {
    fit_ = Fit{region, state_.view.fitted(region)};
    return fit_->fitted;
}

void MapView::setRegion(const platform::Region& region) {
    if (state_.view.show(region)) {
        // Remembers the region before fitting, since the view may change its shape.
        set_ = fit_ && isSame(region, fit_->fitted) ? fit_->asked : region;
        moved_ = false;
        viewChanged();
    }
}

void MapView::restyle() {
    state_.scheme = mapScheme(palette(), state_.type != platform::standardMap);
    state_.font = font();
    viewChanged();
}

void MapView::viewChanged() {
    // The window may have moved to another screen.
    state_.pixelsPerPoint = devicePixelRatioF();
    const bool isStandard = state_.type == platform::standardMap;
    state_.server =
        map::serverFor(loader_->servers(),
                       isStandard ? map::Imagery::standard : map::Imagery::satellite, state_.view);
    state_.tiles.clear();
    if (state_.server && isVisible()) {
        // Lettering is drawn for one pixel per point; imagery gains from every pixel.
        const int zoom = map::tileZoom(state_.view, loader_->servers()[*state_.server].highestZoom,
                                       isStandard ? 1 : state_.pixelsPerPoint);
        state_.tiles = map::tilesIn(state_.view, zoom, mostTiles);
    }
    wishes_.want(state_.server.value_or(0), state_.tiles);
    update();
}

void MapView::zoomBy(double factor, const QPointF& fixed) {
    moved_ = true;
    state_.view.zoomBy(factor, {fixed.x(), fixed.y()});
    viewChanged();
}

void MapView::moveBy(const QPointF& points) {
    moved_ = true;
    state_.view.move(points.x(), points.y());
    viewChanged();
}

void MapView::turnBy(double heading, double tilt) {
    state_.view.setAttitude(state_.view.heading() + heading, state_.view.tilt() + tilt);
    viewChanged();
}

void MapView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    // Each layer starts with the painter in its initial state.
    painter.save();
    ground_.paint(painter);
    painter.restore();
    painter.save();
    dots_.paint(painter, furniture_.places());
    painter.restore();
    painter.save();
    furniture_.paint(painter);
    painter.restore();
    dots_.paintTop(painter);
}

void MapView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange ||
        event->type() == QEvent::StyleChange) {
        restyle();
    }
}

void MapView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    state_.view.setSize({static_cast<double>(width()), static_cast<double>(height())});
    if (set_ && !moved_) {
        state_.view.show(*set_);
    }
    restyle();
}

void MapView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    restyle();
}

void MapView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    viewChanged();
}

} // namespace desktop
