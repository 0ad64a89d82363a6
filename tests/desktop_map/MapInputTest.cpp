// SPDX-License-Identifier: MIT
#include "tests/desktop_map/MapStage.h"

#include <QNativeGestureEvent>
#include <QPointingDevice>
#include <QWheelEvent>

#include <cmath>

namespace {

using platform::Location;

constexpr Location airport{48.35, 11.79};

/// Shows 2000 metres around `airport`.
class MapInputTest : public support::MapStage {
protected:
    MapInputTest() { showAround(airport); }

    [[nodiscard]] const map::Camera& shown() const { return view_.state().view; }
    /// How far the middle of the view has moved, in points.
    [[nodiscard]] QPointF moved() const {
        const map::WorldPoint before = map::project(airport);
        return QPointF(shown().centre().x - before.x, shown().centre().y - before.y) *
               shown().scale();
    }
    void drag(const QPoint& from, const QPoint& to, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mousePress(&view_, Qt::LeftButton, modifiers, from);
        for (const QPoint& at : {(2 * from + to) / 3, (from + 2 * to) / 3, to}) {
            QMouseEvent move(QEvent::MouseMove, at, view_.mapToGlobal(at), Qt::NoButton,
                             Qt::LeftButton, modifiers);
            QCoreApplication::sendEvent(&view_, &move);
        }
        QTest::mouseRelease(&view_, Qt::LeftButton, modifiers, to);
    }
};

TEST_F(MapInputTest, DraggingMovesTheMapWithThePointer) {
    drag({300, 200}, {420, 110});
    EXPECT_NEAR(moved().x(), -120, 0.1);
    EXPECT_NEAR(moved().y(), 90, 0.1);
    // After that the user's region stays: a larger view shows more, not the old region.
    view_.resize(700, 500);
    EXPECT_NEAR(moved().x(), -120, 0.1);
}

TEST_F(MapInputTest, KeysMoveAndZoom) {
    const double zoom = shown().zoom();
    const struct {
        Qt::Key key;
        double x, y, zoom;
    } rows[] = {
        {Qt::Key_Left, -120, 0, 0}, {Qt::Key_Right, 120, 0, 0}, {Qt::Key_Up, 0, -80, 0},
        {Qt::Key_Down, 0, 80, 0},   {Qt::Key_Equal, 0, 0, 1},   {Qt::Key_Minus, 0, 0, -1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.key);
        QTest::keyClick(&view_, row.key);
        EXPECT_NEAR(moved().x(), row.x, 0.1);
        EXPECT_NEAR(moved().y(), row.y, 0.1);
        EXPECT_NEAR(shown().zoom() - zoom, row.zoom, 1e-6);
        QTest::keyClick(&view_, Qt::Key_Home);
        EXPECT_NEAR(shown().zoom(), zoom, 1e-9);
    }
}

TEST_F(MapInputTest, WheelPinchAndDoubleClickZoomAroundThePointer) {
    const QPointF at(450, 120);
    const auto zoomed = [&](double by, auto act) {
        view_.setRegion(map::regionWithDistance(airport, 2000, 2000));
        const double before = shown().zoom();
        const map::WorldPoint under = shown().toWorld({at.x(), at.y()});
        act();
        const auto there = shown().toScreen(under).value();
        EXPECT_NEAR(shown().zoom() - before, by, 1e-6);
        EXPECT_NEAR(there.x, at.x(), 0.01);
        EXPECT_NEAR(there.y, at.y(), 0.01);
    };
    zoomed(-1, [&] {
        QWheelEvent wheel(at, view_.mapToGlobal(at), {}, {0, -240}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&view_, &wheel);
    });
    zoomed(1, [&] { QTest::mouseDClick(&view_, Qt::LeftButton, {}, at.toPoint()); });
    zoomed(std::log2(1.25), [&] {
        QNativeGestureEvent pinch(Qt::ZoomNativeGesture, QPointingDevice::primaryPointingDevice(),
                                  2, at, at, view_.mapToGlobal(at), 0.25, {});
        QCoreApplication::sendEvent(&view_, &pinch);
    });
}

TEST_F(MapInputTest, DotsShowTheirNamesAndAreChosenByClicking) {
    const Location other{48.353, 11.795};
    view_.setStations({{"ETSI", {48.9, 11.5}}, {"EDDM", airport}, {"EDMX", other}});
    std::vector<std::size_t> clicked;
    view_.stationClicked = [&](std::size_t station) { clicked.push_back(station); };
    for (const int type : {0, 1, 2, 3}) {
        SCOPED_TRACE(type);
        clicked.clear();
        view_.setMapType(type);
        const QImage before = picture();
        const QPoint at = pointOf(other);
        QTest::mouseMove(&view_, at + QPoint(3, 3));
        EXPECT_EQ(view_.state().pointed, 2U);
        EXPECT_NE(picture(), before);
        QTest::mouseClick(&view_, Qt::LeftButton, {}, at + QPoint(3, -3));
        QTest::mouseClick(&view_, Qt::LeftButton, {}, pointOf(airport));
        QTest::mouseClick(&view_, Qt::LeftButton, {}, {40, 200});
        EXPECT_EQ(clicked, (std::vector<std::size_t>{2, 1}));
        QTest::mouseMove(&view_, {40, 200});
        EXPECT_FALSE(view_.state().pointed);
    }
    // A drag that begins on a dot is not a click, and the pointer forgets stations that are gone.
    clicked.clear();
    view_.setMapType(0);
    drag(pointOf(airport), pointOf(airport) + QPoint(50, 0));
    EXPECT_TRUE(clicked.empty());
    QTest::mouseMove(&view_, pointOf(airport));
    ASSERT_TRUE(view_.state().pointed);
    view_.setStations({});
    view_.grab();
    EXPECT_FALSE(view_.state().pointed);
}

TEST_F(MapInputTest, FlyoverTurnsWhenDragged) {
    view_.setMapType(3);
    EXPECT_EQ(shown().tilt(), 45);
    drag({300, 200}, {200, 200});
    EXPECT_NEAR(shown().heading(), 30, 0.1);
    EXPECT_NEAR(moved().manhattanLength(), 0, 0.1);
    drag({300, 200}, {300, 300});
    EXPECT_LT(shown().tilt(), 45);
    drag({300, 200}, {330, 200}, Qt::ShiftModifier);
    EXPECT_GT(moved().manhattanLength(), 20);
    QTest::keyClick(&view_, Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_NEAR(shown().heading(), 15, 0.1);
    view_.setMapType(2);
    EXPECT_EQ(shown().tilt(), 0);
    EXPECT_EQ(shown().heading(), 0);
}

TEST_F(MapInputTest, ClickingTheCreditOpensItsPage) {
    std::string page;
    view_.creditClicked = [&](const std::string& address) { page = address; };
    QTest::mouseClick(&view_, Qt::LeftButton, {}, {590, 388});
    EXPECT_EQ(page, view_.state().loader->servers().front().creditPage);
    EXPECT_FALSE(page.empty());
}

} // namespace
