// SPDX-License-Identifier: MIT
#pragma once

#include "map/Tiles.h"

#include <QByteArray>
#include <QCache>
#include <QDeadlineTimer>
#include <QHash>
#include <QImage>
#include <QObject>
#include <QSet>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

class QNetworkAccessManager;
class QNetworkReply;

namespace desktop {

/// What one tile, and all of them together, may cost.
struct TileLimits {
    qint64 bytes = 2 << 20;
    /// Of a picture's width and height.
    int pixels = 1024;
    /// Of a whole transfer.
    std::chrono::milliseconds time{20'000};
    int requests = 4;
    /// Of pictures in memory; more only while the views together need it.
    qsizetype kibibytes = 32 << 10;
    qint64 diskBytes = 128 << 20;
    /// How long a server that cannot be reached, or has refused once, and a tile that is no good
    /// are left alone.
    std::chrono::milliseconds serverPause{30'000};
    std::chrono::milliseconds tilePause{600'000};
    /// What the pause of a server that goes on refusing grows to, doubling.
    std::chrono::milliseconds longestPause = std::chrono::hours(1);
};

/// Where tiles come from, and who asks for them.
struct TileSources {
    std::vector<map::TileServer> servers;
    /// Of the program.
    QByteArray userAgent = "Nosig";
    /// Empty to keep none on the disk.
    QString cacheFolder = {};
    TileLimits limits = {};
};

class TileWishes;

/// Fetches the tiles that views show, and no others: from memory, from a cache on the disk that
/// keeps them as long as the server's headers say (seven days where they say nothing), or from the
/// server, a few at a time for all views together, each in its turn. What cannot be had is left out
/// without a word.
///
/// A server that refuses (any status from 400 on but 404 and 410, which concern the tile alone) is
/// left alone for a while that doubles with each refusal until it gives a tile again, and at least
/// as long as its Retry-After says, up to a day. What the disk has of it shows meanwhile, however
/// old.
class TileLoader final : public QObject {
public:
    explicit TileLoader(TileSources sources);
    ~TileLoader() override;

    [[nodiscard]] const std::vector<map::TileServer>& servers() const { return servers_; }
    /// Whether tiles are under way, or wishes not yet looked at.
    [[nodiscard]] bool isBusy() const { return !underWay_.isEmpty() || gathering_.isActive(); }
    /// Null when it is not here; valid until the event loop runs.
    [[nodiscard]] const QImage* image(std::size_t server, const map::Tile& tile) const;
    /// For how long a server is not asked, whatever is wanted.
    [[nodiscard]] std::chrono::milliseconds leftAloneFor(std::size_t server) const;

private:
    friend class TileWishes;

    /// A server's tile, in one number.
    using Key = quint64;
    struct Wish {
        std::size_t server;
        Key key;
        map::Tile tile;
    };
    struct Standing {
        QDeadlineTimer leftAlone;
        /// Of the last refusal; none since a tile came.
        std::chrono::milliseconds pause{0};
    };

    [[nodiscard]] static Key keyOf(std::size_t server, const map::Tile& tile);
    [[nodiscard]] bool mayAsk(const Wish& wish) const;
    [[nodiscard]] const Wish* nextOf(const TileWishes& view) const;
    void start();
    void makeRoom();
    void request(const Wish& wish);
    void finished(QNetworkReply& reply, const Wish& wish, bool isFromDisk, bool late);
    void pauseTile(const Wish& wish, const QDeadlineTimer& end);
    void came(const Wish& wish, QImage image);
    void refused(std::size_t server, std::chrono::milliseconds retryAfter);
    void leaveAlone(std::size_t server, std::chrono::milliseconds time);
    void planRetry();

    const std::vector<map::TileServer> servers_;
    const QByteArray userAgent_;
    const QString cacheFolder_;
    const TileLimits limits_;

    /// Made with the first request.
    std::unique_ptr<QNetworkAccessManager> network_;
    mutable QCache<Key, QImage> images_;
    /// The one served longest ago first.
    std::vector<TileWishes*> views_;
    QSet<Key> underWay_;
    QHash<Key, QDeadlineTimer> pausedTiles_;
    std::vector<Standing> standings_;
    /// Until the event loop runs: of what a view wants meanwhile only the last counts.
    QTimer gathering_;
    QTimer retry_;
};

/// What one view wants of the loader that it shares with others; taken back when it goes.
class TileWishes {
public:
    /// `arrived` is called when a tile that is wanted has come.
    TileWishes(std::shared_ptr<TileLoader> loader, std::function<void()> arrived);
    ~TileWishes();
    TileWishes(const TileWishes&) = delete;
    TileWishes& operator=(const TileWishes&) = delete;

    /// Replaces what is wanted; the first is fetched first, as soon as the event loop runs.
    void want(std::size_t server, const std::vector<map::Tile>& tiles);

private:
    friend class TileLoader;

    const std::shared_ptr<TileLoader> loader_;
    const std::function<void()> arrived_;
    std::vector<TileLoader::Wish> wishes_;
};

} // namespace desktop
