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
    /// Of pictures in memory; more only while one view alone needs it.
    qsizetype kibibytes = 32 << 10;
    qint64 diskBytes = 128 << 20;
    /// How long a server that cannot be reached, or is busy, and a tile that is no good are left
    /// alone.
    std::chrono::milliseconds serverPause{30'000};
    std::chrono::milliseconds tilePause{600'000};
};

/// Fetches the tiles that a view shows, and no others: from memory, from a cache on the disk that
/// keeps them as long as the server's headers say (seven days where they say nothing), or from the
/// server, a few at a time. What cannot be had is left out without a word.
class TileLoader final : public QObject {
public:
    /// Without a folder nothing is kept on the disk. `arrived` is called when the answer of
    /// `image` may have changed, and when a server may be asked again.
    TileLoader(std::vector<map::TileServer> servers, QByteArray userAgent, QString cacheFolder,
               TileLimits limits, std::function<void()> arrived);
    ~TileLoader() override;

    [[nodiscard]] const std::vector<map::TileServer>& servers() const { return servers_; }

    /// Replaces what is wanted; the first is fetched first.
    void want(std::size_t server, const std::vector<map::Tile>& tiles);
    /// Whether tiles are under way.
    [[nodiscard]] bool isBusy() const { return !underWay_.isEmpty(); }
    /// Null when it is not here; valid until the event loop runs.
    [[nodiscard]] const QImage* image(std::size_t server, const map::Tile& tile) const;

private:
    /// A server's tile, in one number.
    using Key = quint64;
    struct Wish {
        std::size_t server;
        Key key;
        map::Tile tile;
    };

    [[nodiscard]] static Key keyOf(std::size_t server, const map::Tile& tile);
    [[nodiscard]] bool mayAsk(const Wish& wish) const;
    void start();
    void request(const Wish& wish);
    void finished(QNetworkReply& reply, const Wish& wish, bool late);
    void pause(std::size_t server);

    const std::vector<map::TileServer> servers_;
    const QByteArray userAgent_;
    const QString cacheFolder_;
    const TileLimits limits_;
    const std::function<void()> arrived_;

    /// Made with the first request.
    std::unique_ptr<QNetworkAccessManager> network_;
    mutable QCache<Key, QImage> images_;
    std::vector<Wish> wishes_;
    QSet<Key> underWay_;
    QHash<Key, QDeadlineTimer> pausedTiles_;
    std::vector<QDeadlineTimer> pausedServers_;
    QTimer retry_;
};

} // namespace desktop
