// SPDX-License-Identifier: MIT
#include "desktop/map/TileLoader.h"
#include "tests/support/LoopbackTiles.h"
#include "tests/support/TemporaryFolder.h"

#include <QNetworkDiskCache>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <map>

namespace {

using namespace std::chrono_literals;
using desktop::TileLimits;
using desktop::TileWishes;
using map::Tile;
using support::LoopbackTiles;

/// How long to wait for anything that must happen, in milliseconds.
constexpr int patience = 20'000;

const std::vector<Tile> someTiles{{3, 1, 2}, {3, 2, 2}, {3, 3, 2}, {3, 4, 2},
                                  {3, 1, 3}, {3, 2, 3}, {3, 3, 3}, {3, 4, 3}};

QByteArray pictureWith(const QByteArray& header = {}, const QSize& size = {256, 256}) {
    return LoopbackTiles::reply(LoopbackTiles::picture({}, size), header);
}

class TileLoaderTest : public testing::Test {
protected:
    /// Begins with a new loader and no requests.
    void begin(TileLimits limits = {}) {
        wishes_.reset();
        loader_ = std::make_shared<desktop::TileLoader>(
            desktop::TileSources{{tiles_.server(map::Imagery::standard, 19)},
                                 "Nosig/1.0",
                                 QString::fromStdString(cache_),
                                 limits});
        wishes_ = std::make_unique<TileWishes>(loader_, [this] { ++arrivals_; });
        tiles_.requests.clear();
    }
    /// Wants these tiles, and waits until the loader has seen to that.
    void fetch(const std::vector<Tile>& tiles) {
        wishes_->want(0, tiles);
        EXPECT_TRUE(support::settle(*loader_));
    }
    [[nodiscard]] bool has(const Tile& tile) const { return loader_->image(0, tile) != nullptr; }
    /// The numbers of the requested tiles, without repetitions.
    [[nodiscard]] QSet<QByteArray> asked() const {
        QSet<QByteArray> paths;
        for (const auto& request : tiles_.requests) {
            paths.insert(request.path.mid(QByteArray("/standard/").size()));
        }
        return paths;
    }

    support::TemporaryFolder folder_;
    const std::string cache_ = folder_ / "tiles";
    LoopbackTiles tiles_;
    std::shared_ptr<desktop::TileLoader> loader_;
    std::unique_ptr<TileWishes> wishes_;
    int arrivals_ = 0;
};

TEST_F(TileLoaderTest, RequestsVisibleTilesOnceAndNamesTheProgram) {
    begin();
    wishes_->want(0, someTiles);
    fetch(someTiles);
    fetch(someTiles);
    EXPECT_EQ(tiles_.requests.size(), someTiles.size());
    EXPECT_EQ(arrivals_, static_cast<int>(someTiles.size()));
    EXPECT_EQ(tiles_.requests.front().path, "/standard/3/1/2");
    for (const auto& request : tiles_.requests) {
        EXPECT_TRUE(request.head.contains("\r\nUser-Agent: Nosig/1.0\r\n"));
        EXPECT_FALSE(request.head.contains("\r\nCookie:"));
    }
    for (const Tile& tile : someTiles) {
        const QImage* image = loader_->image(0, tile);
        ASSERT_TRUE(image);
        EXPECT_EQ(image->size(), QSize(256, 256));
        EXPECT_EQ(loader_->image(0, {3, tile.x + 8, tile.y}), image);
    }
    EXPECT_FALSE(has({3, 7, 7}));
}

TEST_F(TileLoaderTest, ForgetsTilesNoLongerVisible) {
    tiles_.answer = [this](QTcpSocket& socket, const LoopbackTiles::Request& request) {
        if (request.path.startsWith("/standard/3/")) {
            wishes_->want(0, {{5, 9, 9}});
        }
        socket.write(pictureWith());
    };
    begin();
    // A tile wanted only for a moment is not requested at all.
    wishes_->want(0, {{4, 1, 1}});
    fetch(someTiles);
    // The four already under way, and the new one.
    EXPECT_EQ(asked(), (QSet<QByteArray>{"3/1/2", "3/2/2", "3/3/2", "3/4/2", "5/9/9"}));
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
        tiles_.answerWith(pictureWith(row.header));
        const Tile tile{10, ++number, 5};
        begin();
        fetch({tile});
        begin();
        fetch({tile});
        EXPECT_TRUE(has(tile));
        EXPECT_EQ(tiles_.requests.size(), row.askedAgain ? 1U : 0U);
    }

    QNetworkDiskCache cache;
    cache.setCacheDirectory(QString::fromStdString(cache_));
    const QUrl url(
        QString::fromStdString(map::tileAddress(loader_->servers()[0].address, {10, 1, 5})));
    const QDateTime end = cache.metaData(url).expirationDate();
    EXPECT_NEAR(static_cast<double>(QDateTime::currentDateTimeUtc().secsTo(end)), 7 * 86'400, 600);
}

TEST_F(TileLoaderTest, BadTilesAreLeftOutAtABoundedCost) {
    enum Then { waits, ends, goesOn };
    const auto redirection = [](const QByteArray& to) {
        return LoopbackTiles::reply({}, "Location: " + to + "\r\n", "302 Found");
    };
    const struct {
        const char* what;
        QByteArray reply;
        Then then = waits;
    } rows[] = {
        {"missing", LoopbackTiles::reply("none", {}, "404 Not Found")},
        {"other format",
         LoopbackTiles::reply("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>")},
        {"too wide", pictureWith({}, {1025, 8})},
        {"cut off", pictureWith().chopped(20), ends},
        {"endless", "HTTP/1.1 200 OK\r\n\r\n", goesOn},
        {"redirected for ever", redirection("/again")},
        {"redirected to another scheme", redirection("file:///etc/passwd")},
    };
    qint64 sent = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        sent = 0;
        tiles_.answer = [&](QTcpSocket& socket, const LoopbackTiles::Request& /*request*/) {
            if (row.then == goesOn) {
                // For as long as the client reads.
                QObject::connect(&socket, &QIODevice::bytesWritten, &socket, [&](qint64 bytes) {
                    sent += bytes;
                    socket.write(QByteArray(64 << 10, 'x'));
                });
            }
            socket.write(row.reply);
            if (row.then == ends) {
                socket.disconnectFromHost();
            }
        };
        begin({.bytes = 1 << 20});
        const Tile tile{4, 5, 0};
        fetch({tile});
        EXPECT_FALSE(has(tile));
        // It is not requested again, and no more was sent than fits in a few buffers.
        const std::size_t requests = tiles_.requests.size();
        EXPECT_LE(requests, 5U);
        fetch({tile});
        fetch({tile});
        EXPECT_EQ(tiles_.requests.size(), requests);
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
        begin({.time = 100ms, .serverPause = 1h});
        fetch(someTiles);
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
        tiles_.answerWith(LoopbackTiles::reply({}, "Retry-After: 120\r\n", row.status));
        begin({.serverPause = 1ms});
        fetch(someTiles);
        fetch(someTiles);
        EXPECT_EQ(tiles_.requests.size(), row.requests);
    }
    // After the pause it is asked again.
    tiles_.answerWith(LoopbackTiles::reply({}, {}, "403 Forbidden"));
    begin({.serverPause = 1ms});
    wishes_->want(0, someTiles);
    EXPECT_TRUE(QTest::qWaitFor([&] { return tiles_.requests.size() >= 8; }, patience));
}

TEST_F(TileLoaderTest, TilesOnDiskAreShownWhileTheServerIsLeftAlone) {
    const Tile kept{10, 1, 5};
    begin();
    fetch({kept});
    tiles_.answerWith(LoopbackTiles::reply({}, "Retry-After: 600\r\n", "403 Forbidden"));
    begin();
    fetch({{10, 2, 5}});
    fetch({someTiles.front(), kept});
    EXPECT_TRUE(has(kept));
    EXPECT_FALSE(has(someTiles.front()));
    EXPECT_EQ(tiles_.requests.size(), 1U);
}

TEST_F(TileLoaderTest, ViewsShareOneLoaderInTurns) {
    std::vector<std::function<void()>> replies;
    tiles_.answer = [&](QTcpSocket& socket, const LoopbackTiles::Request&) {
        replies.emplace_back([&socket] { socket.write(pictureWith()); });
        EXPECT_LE(replies.size(), 4U);
    };
    begin();
    std::map<char, int> arrivals;
    const auto view = [&](char name, const std::vector<Tile>& tiles) {
        auto wishes =
            std::make_unique<TileWishes>(loader_, [&arrivals, name] { ++arrivals[name]; });
        wishes->want(0, tiles);
        return wishes;
    };
    const auto first = view('1', someTiles);
    const auto second = view('2', {{5, 9, 9}, someTiles[0]});
    auto third = view('3', {{6, 1, 1}, {6, 1, 2}});
    ASSERT_TRUE(QTest::qWaitFor([&] { return replies.size() == 4; }, patience));
    EXPECT_EQ(asked(), (QSet<QByteArray>{"3/1/2", "5/9/9", "6/1/1", "3/2/2"}));
    // Tiles not yet requested when their view is destroyed are not requested any more.
    third.reset();
    const auto isOver = [&] {
        for (const auto& reply : std::exchange(replies, {})) {
            reply();
        }
        return support::isIdle(*loader_);
    };
    ASSERT_TRUE(QTest::qWaitFor(isOver, patience));
    EXPECT_EQ(tiles_.requests.size(), someTiles.size() + 2);
    EXPECT_EQ(arrivals, (std::map<char, int>{{'1', 8}, {'2', 2}}));
}

TEST_F(TileLoaderTest, MemoryHoldsTheTilesOfAllViews) {
    tiles_.answerWith(pictureWith("Cache-Control: no-store\r\n", {512, 512}));
    begin({.kibibytes = 1});
    const auto here = [&] {
        return std::ranges::count_if(someTiles, [&](const Tile& tile) { return has(tile); });
    };
    auto other = std::make_unique<TileWishes>(loader_, [] {});
    other->want(0, {someTiles.begin() + 4, someTiles.end()});
    fetch({someTiles.begin(), someTiles.begin() + 4});
    EXPECT_EQ(tiles_.requests.size(), 8U);
    EXPECT_EQ(here(), 8);
    other.reset();
    fetch({});
    EXPECT_EQ(here(), 0);
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

} // namespace
