// SPDX-License-Identifier: MIT
#include "bench/MapStage.h"

#include "desktop/map/MapView.h"
#include "tests/support/LoopbackTiles.h"

#include <QApplication>
#include <QTest>

namespace bench {

namespace {

void startToolkit() {
    if (!QCoreApplication::instance()) {
        static int count = 1;
        static char name[] = "nosig";
        static char* arguments[] = {name, nullptr};
        qputenv("QT_QPA_PLATFORM", "offscreen");
        // Lives until the process ends.
        new QApplication(count, arguments);
    }
}

desktop::MapSetup setup(const support::LoopbackTiles& tiles, bool withTiles) {
    desktop::MapSetup setup;
    setup.baseMap = QStringLiteral(NOSIG_SOURCE_DIR "/resources/map/world.map");
    if (withTiles) {
        setup.tiles = std::make_shared<desktop::TileLoader>(desktop::TileSources{
            {tiles.server(map::Imagery::standard, 19), tiles.server(map::Imagery::satellite, 14)},
            "Nosig/test"});
    }
    return setup;
}

} // namespace

struct MapStage::Parts {
    explicit Parts(bool withTiles) : view(setup(tiles, withTiles)) {}

    support::LoopbackTiles tiles;
    desktop::MapView view;
};

MapStage::MapStage(int width, int height, const std::vector<map::Station>& stations,
                   bool withTiles) {
    startToolkit();
    parts_ = std::make_unique<Parts>(withTiles);
    parts_->view.resize(width, height);
    parts_->view.setStations(stations);
    parts_->view.show();
    if (!QTest::qWaitForWindowExposed(&parts_->view)) {
        qFatal("The map was not shown.");
    }
}

MapStage::~MapStage() = default;

desktop::MapView& MapStage::view() {
    return parts_->view;
}

void MapStage::show(std::int64_t mapType, const platform::Location& centre, double metres) {
    desktop::MapView& view = parts_->view;
    view.setMapType(mapType);
    view.setRegion(view.regionThatFits(map::regionWithDistance(centre, metres, metres)));
    const bool came = QTest::qWaitFor(
        [&] {
            const desktop::MapState& state = view.state();
            return std::ranges::all_of(state.tiles, [&](const map::Tile& tile) {
                return state.loader->image(*state.server, tile) != nullptr;
            });
        },
        30'000);
    if (!came) {
        qFatal("The tiles of the loopback server did not arrive.");
    }
}

void MapStage::paintMoved(double right) {
    platform::Region region = parts_->view.region();
    region.centre.longitude += right * region.longitudeSpan / parts_->view.width();
    parts_->view.setCenterCoordinate(region.centre);
    parts_->view.repaint();
}

} // namespace bench
