// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/FurnitureLayer.h"
#include "desktop/map/GroundLayer.h"
#include "desktop/map/MapState.h"
#include "desktop/map/StationLayer.h"
#include "platform/views/Views.h"

#include <QWidget>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace desktop {

/// What a map is made of.
struct MapSetup {
    /// The path of "world.map"; without that file the map is all sea.
    QString baseMap;
    /// Shared with other maps; null for a map without tiles.
    std::shared_ptr<TileLoader> tiles;
};

/// The logic's map: shipped outlines, tiles over them where they have arrived, graticule, stations
/// as dots, the selected station's marker, scale bar and credit.
///
/// Dragging moves it; wheel, pinch and double click zoom around the pointer. Arrow keys, plus and
/// minus do the same, and Home returns to the region that the logic set. The flyover turns and
/// tilts when dragged, and moves with Shift held; for the arrow keys it is the other way round.
class MapView final : public QWidget, public platform::MapView {
public:
    explicit MapView(const MapSetup& setup, QWidget* parent = nullptr);

    /// Called on the main thread, like everything here.
    std::function<void(std::size_t station)> stationClicked;
    std::function<void(const std::string& page)> creditClicked;

    /// Sets the dots, of which there may be any number; `stationClicked` is given an index into
    /// `stations`.
    void setStations(std::vector<map::Station> stations);
    /// Returns the latest METAR of the station with an identifier, or null. What it points to need
    /// only last until the next call.
    using MetarOf = std::function<const reports::Metar*(const std::string& identifier)>;
    /// Shows the stations' weather as it is at `now`, with a legend; an empty function ends that.
    /// The function is called for every station, at once and whenever the stations change, and for
    /// the station at the pointer. To be set again when there are new reports, and every minute,
    /// since reports grow old.
    void setWeather(MetarOf metarOf, reports::Date now);
    /// Marks the selected station; absent for none.
    void setMarker(std::optional<map::Station> station);

    /// The region that the view shows, or would show if it were flat.
    [[nodiscard]] platform::Region region() const { return state_.view.region(); }
    [[nodiscard]] const MapState& state() const { return state_; }

    [[nodiscard]] bool isHidden() const override;
    void setHidden(bool hidden) override;
    [[nodiscard]] platform::Rect frame() const override;
    void setMapType(std::int64_t type) override;
    void setCenterCoordinate(const platform::Location& centre) override;
    [[nodiscard]] platform::Region regionThatFits(const platform::Region& region) const override;
    void setRegion(const platform::Region& region) override;

protected:
    void changeEvent(QEvent* event) override;
    bool event(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    struct Fit {
        platform::Region asked;
        platform::Region fitted;
    };

    void restyle();
    void renewWeather();
    void renewMarkerWeather();
    /// What a tool tip says about a place; empty for nothing.
    [[nodiscard]] QString helpAt(const QPointF& at) const;
    /// Works out what the view now shows, and asks for the tiles that it needs.
    void viewChanged();
    /// Zooming and moving are the user's: the region that the logic set no longer holds.
    void zoomBy(double factor, const QPointF& fixed);
    void moveBy(const QPointF& points);
    void turnBy(double heading, double tilt);
    void point(const QPointF& at);
    void click(const QPointF& at);

    MapState state_;
    const std::shared_ptr<TileLoader> loader_;
    TileWishes wishes_;
    GroundLayer ground_{state_};
    StationLayer dots_{state_};
    FurnitureLayer furniture_{state_};

    /// The region that the logic set, before fitting.
    std::optional<platform::Region> set_;
    /// Whether the user has moved away from it since.
    bool moved_ = false;
    mutable std::optional<Fit> fit_;

    MetarOf metarOf_;
    reports::Date now_;

    std::optional<QPointF> pressed_;
    QPointF last_;
    bool dragging_ = false;
};

} // namespace desktop
