// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/map/ServerPause.h"
#include "map/Tiles.h"

#include <QByteArray>
#include <QCache>
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

/// Limits on one tile, and on all of them together.
struct TileLimits {
    qint64 bytes = 2 << 20;
    /// Each of a picture's width and height.
    int pixels = 1024;
    /// For a whole transfer.
    std::chrono::milliseconds time{20'000};
    int requests = 4;
    /// For pictures in memory; exceeded only while the views together need more.
    qsizetype kibibytes = 32 << 10;
    qint64 diskBytes = 128 << 20;
    /// How long to leave alone a server that cannot be reached or has refused once, and a tile that
    /// cannot be used.
    std::chrono::milliseconds serverPause{30'000};
    std::chrono::milliseconds tilePause{600'000};
    /// The most that the pause of a server grows to, doubling while it keeps refusing.
    std::chrono::milliseconds longestPause = std::chrono::hours(1);
};

/// Where tiles come from, and who asks for them.
struct TileSources {
    std::vector<map::TileServer> servers;
    QByteArray userAgent = "Nosig";
    /// Empty to keep no tiles on disk.
    QString cacheFolder = {};
    TileLimits limits = {};
};

class TileWishes;

/// Fetches only the tiles that views show: from memory, from a disk cache that keeps them as long
/// as the server's headers say (seven days if they say nothing), or from the server, a few at a
/// time for all views together, which take turns. A tile that cannot be had is silently left out.
///
/// A server that refuses (any status from 400 up except 404 and 410, which concern the tile alone)
/// is left alone for a pause that doubles with each refusal until it sends a tile again, and that
/// lasts at least as long as its Retry-After says, up to a day. Meanwhile its tiles on disk are
/// shown, however old.
class TileLoader final : public QObject {
public:
    explicit TileLoader(TileSources sources);
    ~TileLoader() override;

    [[nodiscard]] const std::vector<map::TileServer>& servers() const { return servers_; }
    /// Null if it is not in memory; valid until the event loop runs.
    [[nodiscard]] const QImage* image(std::size_t server, const map::Tile& tile) const;

private:
    friend class TileWishes;

    /// A server and its tile, packed into one number.
    using Key = quint64;
    struct Wish {
        std::size_t server;
        Key key;
        map::Tile tile;
    };
    using Time = ServerPause::Time;

    [[nodiscard]] static Key keyOf(std::size_t server, const map::Tile& tile);
    [[nodiscard]] bool mayAsk(const Wish& wish) const;
    [[nodiscard]] const Wish* nextOf(const TileWishes& view) const;
    void start();
    void makeRoom();
    void request(const Wish& wish);
    void finished(QNetworkReply& reply, const Wish& wish, bool isFromDisk, bool late);
    void pauseTile(const Wish& wish, Time end);
    void came(const Wish& wish, QImage image);
    void planRetry();

    const std::vector<map::TileServer> servers_;
    const QByteArray userAgent_;
    const QString cacheFolder_;
    const TileLimits limits_;

    /// Created with the first request; owned as a child, like its replies.
    QNetworkAccessManager* network_ = nullptr;
    mutable QCache<Key, QImage> images_;
    /// The least recently served one first.
    std::vector<TileWishes*> views_;
    QSet<Key> underWay_;
    QHash<Key, Time> pausedTiles_;
    std::vector<ServerPause> pauses_;
    /// Until the event loop runs: of what a view wants meanwhile, only the last counts.
    QTimer gathering_;
    QTimer retry_;
};

/// What one view wants of the loader that it shares with others; withdrawn on destruction.
class TileWishes {
public:
    /// `arrived` is called when a wanted tile has arrived.
    TileWishes(std::shared_ptr<TileLoader> loader, std::function<void()> arrived);
    ~TileWishes();
    TileWishes(const TileWishes&) = delete;
    TileWishes& operator=(const TileWishes&) = delete;

    /// Replaces what is wanted, the most urgent first; fetched once the event loop runs.
    void want(std::size_t server, const std::vector<map::Tile>& tiles);

private:
    friend class TileLoader;

    const std::shared_ptr<TileLoader> loader_;
    const std::function<void()> arrived_;
    std::vector<TileLoader::Wish> wishes_;
};

} // namespace desktop
