// SPDX-License-Identifier: MIT
#include "desktop/map/TileLoader.h"
#include "tests/support/LoopbackTiles.h"
#include "tests/support/TemporaryFolder.h"

#include <QNetworkDiskCache>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace {

using namespace std::chrono_literals;
using desktop::TileLimits;
using desktop::TileLoader;
using desktop::TileWishes;
using map::Tile;
using support::LoopbackTiles;
using support::settle;

/// How long to wait for anything that must happen, in milliseconds.
constexpr int patience = 20'000;

const std::vector<Tile> someTiles{{3, 1, 2}, {3, 2, 2}, {3, 3, 2}, {3, 4, 2},
                                  {3, 1, 3}, {3, 2, 3}, {3, 3, 3}, {3, 4, 3}};

class TileLoaderTest : public testing::Test {
protected:
    std::shared_ptr<TileLoader> loader(TileLimits limits = {}) {
        auto loader = std::make_shared<TileLoader>(
            desktop::TileSources{{tiles_.server(map::Imagery::standard, 19)},
                                 "Nosig/1.0",
                                 QString::fromStdString((folder_ / "tiles").string()),
                                 limits});
        wishes_ = std::make_unique<TileWishes>(loader, [this] { ++arrivals_; });
        return loader;
    }

    support::TemporaryFolder folder_;
    LoopbackTiles tiles_;
    int arrivals_ = 0;
    /// The wishes of the loader made last.
    std::unique_ptr<TileWishes> wishes_;
};

TEST_F(TileLoaderTest, RequestsVisibleTilesOnceAndNamesTheProgram) {
    const auto loader = this->loader();
    wishes_->want(0, someTiles);
    wishes_->want(0, someTiles);
    ASSERT_TRUE(settle(*loader));
    wishes_->want(0, someTiles);
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

TEST_F(TileLoaderTest, ForgetsTilesNoLongerVisible) {
    tiles_.answer = [this](QTcpSocket& socket, const LoopbackTiles::Request& request) {
        if (request.path.startsWith("/standard/3/")) {
            wishes_->want(0, {{5, 9, 9}});
        }
        socket.write(LoopbackTiles::reply(LoopbackTiles::picture(request.path)));
    };
    const auto loader = this->loader();
    // A tile wanted only for a moment is not requested at all.
    wishes_->want(0, {{4, 1, 1}});
    wishes_->want(0, someTiles);
    ASSERT_TRUE(settle(*loader));
    std::set<QByteArray> paths;
    for (const auto& request : tiles_.requests) {
        paths.insert(request.path);
    }
    // The four already under way, and the new one.
    EXPECT_EQ(paths.size(), 5U);
    EXPECT_TRUE(paths.contains("/standard/5/9/9"));
}

TEST_F(TileLoaderTest, DiskCacheObeysTheServersHeaders) {
    const struct {
        const char* header;
        bool askedAgain;
    } rows[] = {
        {"", false},
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
            wishes_->want(0, tile);
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
    // Sends for as long as the client reads.
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
        {"missing", plain(LoopbackTiles::reply("none", {}, "404 Not Found"))},
        {"other format", plain(LoopbackTiles::reply(
                             "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"))},
        {"too wide", plain(LoopbackTiles::reply(wide))},
        {"cut off",
         [&](QTcpSocket& socket) {
             socket.write(LoopbackTiles::reply(picture).chopped(20));
             socket.disconnectFromHost();
         }},
        {"endless", flood},
        {"redirected for ever",
         plain(LoopbackTiles::reply({}, "Location: /again/0\r\n", "302 Found"))},
        {"redirected to another scheme",
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
            wishes_->want(0, {{4, 5, 0}});
            ASSERT_TRUE(settle(*loader));
            EXPECT_FALSE(loader->image(0, {4, 5, 0}));
            asked = frame == 0 ? tiles_.requests.size() : asked;
        }
        // It is not requested again, and no more was sent than fits in a few buffers.
        EXPECT_EQ(tiles_.requests.size(), asked);
        EXPECT_LE(asked, 5U);
        EXPECT_LT(sent, 16 << 20);
    }
}

TEST_F(TileLoaderTest, TilesThatNeverCompleteAreGivenUp) {
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
        wishes_->want(0, someTiles);
        ASSERT_TRUE(settle(*loader));
        EXPECT_EQ(arrivals_, 0);
        // A server that does not answer the first requests gets no more.
        EXPECT_EQ(tiles_.requests.size(), 4U);
    }
}

TEST_F(TileLoaderTest, ServersThatRefuseGetOnlyWhatIsUnderWay) {
    const struct {
        const char* status;
        std::size_t requests;
    } rows[] = {
        {"500 Internal Server Error", 4},
        {"403 Forbidden", 4},
        {"429 Too Many Requests", 4},
        {"404 Not Found", 8},
        {"410 Gone", 8},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.status);
        tiles_.answer = [&](QTcpSocket& socket, const LoopbackTiles::Request&) {
            socket.write(LoopbackTiles::reply({}, "Retry-After: 120\r\n", row.status));
        };
        tiles_.requests.clear();
        const auto loader = this->loader({.serverPause = 1ms});
        wishes_->want(0, someTiles);
        ASSERT_TRUE(settle(*loader));
        wishes_->want(0, someTiles);
        ASSERT_TRUE(settle(*loader));
        EXPECT_EQ(tiles_.requests.size(), row.requests);
    }
    // After the pause it is asked again.
    tiles_.answer = [](QTcpSocket& socket, const LoopbackTiles::Request&) {
        socket.write(LoopbackTiles::reply({}, {}, "403 Forbidden"));
    };
    tiles_.requests.clear();
    const auto loader = this->loader({.serverPause = 1ms});
    wishes_->want(0, someTiles);
    EXPECT_TRUE(QTest::qWaitFor([&] { return tiles_.requests.size() >= 8; }, patience));
}

TEST(ServerPause, DoublesWithEachRefusalAndLastsAsLongAsTheServerSays) {
    desktop::ServerPause pause(30s, 100s);
    auto now = desktop::ServerPause::Time{} + 1h;
    EXPECT_LT(pause.end(), now);
    pause.notReached(now);
    EXPECT_EQ(pause.end() - now, 30s);
    for (const auto length : {30s, 60s, 100s, 100s}) {
        now = pause.end();
        pause.refused(now, 0s);
        // A request that was under way at the same time.
        pause.refused(now + 1s, 0s);
        EXPECT_EQ(pause.end() - now, length + 1s);
    }
    now = pause.end();
    pause.refused(now, 500s);
    EXPECT_EQ(pause.end() - now, 500s);
    now = pause.end();
    pause.served();
    pause.refused(now, 5s);
    EXPECT_EQ(pause.end() - now, 30s);
}

TEST(ServerPause, LastsAsLongAsTheHeadersSay) {
    const QDateTime now({2026, 11, 21}, {12, 0}, Qt::UTC);
    const struct {
        const char* retryAfter;
        const char* date;
        std::chrono::seconds length;
    } rows[] = {
        {"", "", 0s},
        {" 120 ", "", 120s},
        {"-5", "", 0s},
        {"99999999999999999999", "", 86'400s},
        {"Sat, 21 Nov 2026 13:00:00 GMT", "", 3600s},
        {"Sat, 21 Nov 2026 11:00:00 GMT", "", 0s},
        {"Sat, 21 Nov 2099 11:00:00 GMT", "soon", 86'400s},
        {"Sun, 06 Nov 1994 08:51:37 GMT", "Sun, 06 Nov 1994 08:49:37 GMT", 120s},
        {"soon", "Sun, 06 Nov 1994 08:49:37 GMT", 0s},
    };
    for (const auto& [retryAfter, date, length] : rows) {
        EXPECT_EQ(desktop::retryAfter(retryAfter, date, now), length) << retryAfter;
    }
}

TEST_F(TileLoaderTest, ViewsShareOneLoaderInTurns) {
    std::size_t held = 0;
    std::vector<std::function<void()>> replies;
    tiles_.answer = [&](QTcpSocket& socket, const LoopbackTiles::Request& request) {
        held = std::max(held, replies.size() + 1);
        replies.emplace_back([&socket, path = request.path] {
            socket.write(LoopbackTiles::reply(LoopbackTiles::picture(path)));
        });
    };
    const auto loader = this->loader();
    std::map<char, int> arrivals;
    const auto view = [&](char name, const std::vector<Tile>& tiles) {
        auto wishes = std::make_unique<TileWishes>(loader, [&arrivals, name] { ++arrivals[name]; });
        wishes->want(0, tiles);
        return wishes;
    };
    const auto first = view('1', someTiles);
    const auto second = view('2', {{5, 9, 9}, someTiles[0]});
    auto third = view('3', {{6, 1, 1}, {6, 1, 2}});
    ASSERT_TRUE(QTest::qWaitFor([&] { return replies.size() == 4; }, patience));
    QSet<QByteArray> paths;
    for (const auto& request : tiles_.requests) {
        paths.insert(request.path);
    }
    EXPECT_EQ(paths, (QSet<QByteArray>{"/standard/3/1/2", "/standard/5/9/9", "/standard/6/1/1",
                                       "/standard/3/2/2"}));
    // Tiles not yet requested when their view is destroyed are not requested any more.
    third.reset();
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            for (const auto& reply : std::exchange(replies, {})) {
                reply();
            }
            return support::isIdle(*loader);
        },
        patience));
    EXPECT_EQ(held, 4U);
    EXPECT_EQ(tiles_.requests.size(), someTiles.size() + 2);
    EXPECT_EQ(arrivals, (std::map<char, int>{{'1', 8}, {'2', 2}}));
}

TEST_F(TileLoaderTest, MemoryHoldsTheTilesOfAllViews) {
    tiles_.answer = [](QTcpSocket& socket, const LoopbackTiles::Request& request) {
        socket.write(LoopbackTiles::reply(LoopbackTiles::picture(request.path, {512, 512}),
                                          "Cache-Control: no-store\r\n"));
    };
    const auto loader = this->loader({.kibibytes = 1});
    wishes_->want(0, {someTiles.begin(), someTiles.begin() + 4});
    auto other = std::make_unique<TileWishes>(loader, [] {});
    other->want(0, {someTiles.begin() + 4, someTiles.end()});
    ASSERT_TRUE(settle(*loader));
    EXPECT_EQ(tiles_.requests.size(), 8U);
    const auto here = [&] {
        return std::ranges::count_if(someTiles,
                                     [&](const Tile& tile) { return loader->image(0, tile); });
    };
    EXPECT_EQ(here(), 8);
    other.reset();
    wishes_->want(0, {});
    ASSERT_TRUE(settle(*loader));
    EXPECT_EQ(here(), 0);
}

TEST_F(TileLoaderTest, TilesOnDiskAreShownWhileTheServerIsLeftAlone) {
    const std::vector<Tile> kept{{10, 1, 5}};
    {
        const auto loader = this->loader();
        wishes_->want(0, kept);
        ASSERT_TRUE(settle(*loader));
        wishes_.reset();
    }
    tiles_.answer = [](QTcpSocket& socket, const LoopbackTiles::Request& /*request*/) {
        socket.write(LoopbackTiles::reply({}, "Retry-After: 600\r\n", "403 Forbidden"));
    };
    const auto loader = this->loader();
    wishes_->want(0, {{10, 2, 5}});
    ASSERT_TRUE(settle(*loader));
    std::vector<Tile> wanted = someTiles;
    wanted.insert(wanted.end(), kept.begin(), kept.end());
    wishes_->want(0, wanted);
    ASSERT_TRUE(settle(*loader));
    EXPECT_TRUE(loader->image(0, kept.front()));
    EXPECT_FALSE(loader->image(0, someTiles.front()));
    EXPECT_EQ(tiles_.requests.size(), 2U);
}

} // namespace
