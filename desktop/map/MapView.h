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
    /// The resource "world.map"; without it the map is all sea.
    QString baseMap;
    /// Shared with other maps; null for a map without tiles.
    std::shared_ptr<TileLoader> tiles;
};

/// The map of the logic: shipped outlines, tiles over them as far as they come, graticule, stations
/// as dots, the selected one's marker, scale bar and credit.
///
/// Dragging moves it, wheel, pinch and double click zoom around the pointer, arrows, plus and minus
/// do the same by key, and Home comes back to the region that the logic has set. The flyover turns
/// and tilts when dragged, and moves with Shift held.
class MapView final : public QWidget, public platform::MapView {
public:
    explicit MapView(MapSetup setup, QWidget* parent = nullptr);

    /// Main thread only, like everything here.
    std::function<void(std::size_t station)> stationClicked;
    std::function<void(const std::string& page)> creditClicked;

    /// The dots, known to `stationClicked` by their number. Any number of them may be given.
    void setStations(std::vector<map::Station> stations);
    /// The selected station; nothing for none.
    void setMarker(std::optional<map::Station> station);

    /// What the view shows, as it would lie there when flat.
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
    /// Takes note of what the view shows now, and asks for the tiles that it needs.
    void viewChanged();
    void zoomBy(double factor, const QPointF& fixed);
    /// As the user does: the region that the logic has set no longer holds.
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

    /// The region that the logic has set, before it was fitted.
    std::optional<platform::Region> set_;
    /// Whether the user has left it since.
    bool moved_ = false;
    mutable std::optional<Fit> fit_;

    std::optional<QPointF> pressed_;
    QPointF last_;
    bool dragging_ = false;
};

} // namespace desktop
