// SPDX-License-Identifier: MIT
#include "desktop/map/TileLoader.h"
#include "tests/support/LoopbackTiles.h"
#include "tests/support/TemporaryFolder.h"

#include <QElapsedTimer>
#include <QNetworkDiskCache>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <set>

namespace {

using namespace std::chrono_literals;
using desktop::TileLimits;
using desktop::TileLoader;
using map::Tile;
using support::LoopbackTiles;

/// Long enough for anything that happens at all.
constexpr int patience = 20'000;

const std::vector<Tile> someTiles{{3, 1, 2}, {3, 2, 2}, {3, 3, 2}, {3, 4, 2},
                                  {3, 1, 3}, {3, 2, 3}, {3, 3, 3}, {3, 4, 3}};

class TileLoaderTest : public testing::Test {
protected:
    std::unique_ptr<TileLoader> loader(TileLimits limits = {}) {
        return std::make_unique<TileLoader>(
            std::vector{tiles_.server(map::Imagery::standard, 19)}, "Nosig/1.0",
            QString::fromStdString((folder_ / "tiles").string()), limits, [this] { ++arrivals_; });
    }
    /// Whether all that was asked for is answered, one way or the other.
    bool settle(const TileLoader& loader) {
        return QTest::qWaitFor([&] { return !loader.isBusy(); }, patience);
    }

    support::TemporaryFolder folder_;
    LoopbackTiles tiles_;
    int arrivals_ = 0;
};

TEST_F(TileLoaderTest, AsksOnceForWhatIsSeenAndSaysWhoAsks) {
    const auto loader = this->loader();
    loader->want(0, someTiles);
    loader->want(0, someTiles);
    ASSERT_TRUE(settle(*loader));
    loader->want(0, someTiles);
    ASSERT_TRUE(settle(*loader));

    EXPECT_EQ(tiles_.requests.size(), someTiles.size());
    EXPECT_EQ(arrivals_, static_cast<int>(someTiles.size()));
    EXPECT_EQ(tiles_.requests.front().path, "/standard/3/1/2");
    for (const auto& request : tiles_.requests) {
        EXPECT_TRUE(request.head.contains("\r\nUser-Agent: Nosig/1.0\r\n"));
        EXPECT_FALSE(request.head.contains("\r\nCookie:"));
    }
    for (const Tile& tile : someTiles) {
        const QImage* image = loader->image(0, tile);
        ASSERT_TRUE(image);
        EXPECT_EQ(image->size(), QSize(256, 256));
        EXPECT_EQ(loader->image(0, {3, tile.x + 8, tile.y}), image);
    }
    EXPECT_FALSE(loader->image(0, {3, 7, 7}));
}

TEST_F(TileLoaderTest, ForgetsWhatIsNoLongerSeen) {
    const auto loader = this->loader();
    loader->want(0, someTiles);
    loader->want(0, {{5, 9, 9}});
    ASSERT_TRUE(settle(*loader));
    std::set<QByteArray> paths;
    for (const auto& request : tiles_.requests) {
        paths.insert(request.path);
    }
    // The four that were under way, and the new one.
    EXPECT_EQ(paths.size(), 5U);
    EXPECT_TRUE(paths.contains("/standard/5/9/9"));
}

TEST_F(TileLoaderTest, DiskCacheKeepsToTheServersWord) {
    const struct {
        const char* header;
        bool askedAgain;
    } rows[] = {
        {"", false},
        {"Cache-Control: max-age=3600\r\n", false},
        {"Cache-Control: no-store\r\n", true},
        {"Expires: Thu, 01 Jan 1998 00:00:00 GMT\r\n", true},
    };
    int number = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.header);
        tiles_.answer = [&](QTcpSocket& socket, const LoopbackTiles::Request& request) {
            socket.write(LoopbackTiles::reply(LoopbackTiles::picture(request.path), row.header));
        };
        const std::vector<Tile> tile{{10, ++number, 5}};
        for (int run = 0; run < 2; ++run) {
            const auto loader = this->loader();
            loader->want(0, tile);
            ASSERT_TRUE(settle(*loader));
            EXPECT_TRUE(loader->image(0, tile.front()));
        }
        EXPECT_EQ(tiles_.requests.size(), row.askedAgain ? 2U : 1U);
        tiles_.requests.clear();
    }

    QNetworkDiskCache cache;
    cache.setCacheDirectory(QString::fromStdString((folder_ / "tiles").string()));
    const QUrl url(QString::fromStdString(
        map::tileAddress(tiles_.server(map::Imagery::standard, 19).address, {10, 1, 5})));
    const QDateTime end = cache.metaData(url).expirationDate();
    EXPECT_NEAR(static_cast<double>(QDateTime::currentDateTimeUtc().secsTo(end)), 7 * 86'400, 600);
}

TEST_F(TileLoaderTest, BadTilesAreLeftOutAtABoundedCost) {
    qint64 sent = 0;
    const QByteArray picture = LoopbackTiles::picture("x");
    const QByteArray wide = LoopbackTiles::picture("x", {1025, 8});
    // Sends as much as is taken.
    const auto flood = [&](QTcpSocket& socket) {
        QObject::connect(&socket, &QIODevice::bytesWritten, &socket, [&](qint64 bytes) {
            sent += bytes;
            socket.write(QByteArray(64 << 10, 'x'));
        });
        socket.write("HTTP/1.1 200 OK\r\n\r\n");
    };
    using Answer = std::function<void(QTcpSocket&)>;
    const auto plain = [](const QByteArray& reply) -> Answer {
        return [reply](QTcpSocket& socket) { socket.write(reply); };
    };
    const struct {
        const char* what;
        Answer answer;
    } rows[] = {
        {"not there", plain(LoopbackTiles::reply("none", {}, "404 Not Found"))},
        {"empty", plain(LoopbackTiles::reply({}))},
        {"other format", plain(LoopbackTiles::reply(
                             "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"))},
        {"cut", plain(LoopbackTiles::reply(picture.left(60)))},
        {"too wide", plain(LoopbackTiles::reply(wide))},
        {"cut off",
         [&](QTcpSocket& socket) {
             socket.write(LoopbackTiles::reply(picture).chopped(20));
             socket.disconnectFromHost();
         }},
        {"endless", flood},
        {"elsewhere for ever",
         plain(LoopbackTiles::reply({}, "Location: /again/0\r\n", "302 Found"))},
        {"to another scheme",
         plain(LoopbackTiles::reply({}, "Location: file:///etc/passwd\r\n", "302 Found"))},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        tiles_.requests.clear();
        sent = 0;
        tiles_.answer = [&](QTcpSocket& socket, const LoopbackTiles::Request& request) {
            if (request.path.endsWith("/0")) {
                row.answer(socket);
            } else {
                socket.write(LoopbackTiles::reply(picture));
            }
        };
        const auto loader = this->loader({.bytes = 1 << 20});
        std::size_t asked = 0;
        for (int frame = 0; frame < 3; ++frame) {
            loader->want(0, {{4, 5, 0}});
            ASSERT_TRUE(settle(*loader));
            EXPECT_FALSE(loader->image(0, {4, 5, 0}));
            asked = frame == 0 ? tiles_.requests.size() : asked;
        }
        // Not asked for again and again, and what was sent for it fits in a few buffers.
        EXPECT_EQ(tiles_.requests.size(), asked);
        EXPECT_LE(asked, 5U);
        EXPECT_LT(sent, 16 << 20);
    }
}

TEST_F(TileLoaderTest, TilesThatNeverEndAreGivenUp) {
    for (const bool drips : {false, true}) {
        SCOPED_TRACE(drips);
        QTimer timer;
        tiles_.answer = [&](QTcpSocket& socket, const LoopbackTiles::Request&) {
            if (drips) {
                socket.write("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n");
                QObject::connect(&timer, &QTimer::timeout, &socket, [&] { socket.write("x"); });
            }
        };
        timer.start(5);
        const auto loader = this->loader({.time = 100ms, .serverPause = 1h});
        tiles_.requests.clear();
        loader->want(0, someTiles);
        ASSERT_TRUE(settle(*loader));
        EXPECT_EQ(arrivals_, 0);
        // A server that keeps the first ones waiting is not asked for the rest.
        EXPECT_EQ(tiles_.requests.size(), 4U);
    }
}

TEST_F(TileLoaderTest, UnreachableServersAreAskedAgainLater) {
    const quint16 port = tiles_.serverPort();
    const auto loader = this->loader({.serverPause = 20ms});
    tiles_.close();
    loader->want(0, someTiles);
    ASSERT_TRUE(QTest::qWaitFor([&] { return arrivals_ > 0; }, patience));
    EXPECT_FALSE(loader->image(0, someTiles.front()));

    ASSERT_TRUE(tiles_.listen(QHostAddress::LocalHost, port));
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            loader->want(0, someTiles);
            return loader->image(0, someTiles.front()) != nullptr;
        },
        patience));
}

TEST_F(TileLoaderTest, EndsWithTilesUnderWay) {
    tiles_.answer = [](QTcpSocket&, const LoopbackTiles::Request&) {};
    auto loader = this->loader();
    loader->want(0, someTiles);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !tiles_.requests.empty(); }, patience));
    loader.reset();
    EXPECT_EQ(arrivals_, 0);
}

} // namespace
