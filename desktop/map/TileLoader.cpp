// SPDX-License-Identifier: MIT
#include "desktop/map/TileLoader.h"

#include <QBuffer>
#include <QImageReader>
#include <QNetworkAccessManager>
#include <QNetworkDiskCache>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <utility>

namespace desktop {

namespace {

using namespace std::chrono_literals;

/// Of tiles whose server does not say how long they last.
constexpr int daysKept = 7;
constexpr qsizetype mostPausedTiles = 4096;

/// The toolkit's cache, which keeps to the servers' headers.
class TileCache final : public QNetworkDiskCache {
public:
    using QNetworkDiskCache::QNetworkDiskCache;

    QIODevice* prepare(const QNetworkCacheMetaData& metaData) override {
        return QNetworkDiskCache::prepare(dated(metaData));
    }
    void updateMetaData(const QNetworkCacheMetaData& metaData) override {
        QNetworkDiskCache::updateMetaData(dated(metaData));
    }

private:
    [[nodiscard]] static QNetworkCacheMetaData dated(QNetworkCacheMetaData metaData) {
        const auto headers = metaData.rawHeaders();
        const bool saysNothing =
            std::none_of(headers.begin(), headers.end(), [](const auto& header) {
                const QByteArray name = header.first.toLower();
                return name == "cache-control" || name == "expires" || name == "pragma";
            });
        if (saysNothing) {
            metaData.setExpirationDate(QDateTime::currentDateTimeUtc().addDays(daysKept));
        }
        return metaData;
    }
};

/// Null unless the bytes are a picture of a usual format and size.
QImage decoded(const QByteArray& bytes, int mostPixels) {
    // Told by their first bytes alone: other formats' decoders never see what a server sends.
    const char* format = bytes.startsWith("\x89PNG")        ? "png"
                         : bytes.startsWith("\xFF\xD8\xFF") ? "jpeg"
                                                            : nullptr;
    if (!format) {
        return {};
    }
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    const QSize size = reader.size();
    if (!size.isValid() || size.width() > mostPixels || size.height() > mostPixels) {
        return {};
    }
    QImage image = reader.read();
    return image.isNull()
               ? image
               : std::move(image).convertToFormat(image.hasAlphaChannel()
                                                      ? QImage::Format_ARGB32_Premultiplied
                                                      : QImage::Format_RGB32);
}

/// Whether a failure tells about the server rather than about one tile.
bool blamesServer(QNetworkReply::NetworkError error) {
    return error < QNetworkReply::ContentAccessDenied ||
           error == QNetworkReply::ServiceUnavailableError;
}

constexpr int tooManyRequests = 429;

} // namespace

TileLoader::TileLoader(std::vector<map::TileServer> servers, QByteArray userAgent,
                       QString cacheFolder, TileLimits limits, std::function<void()> arrived)
    : servers_(std::move(servers)),
      userAgent_(std::move(userAgent)),
      cacheFolder_(std::move(cacheFolder)),
      limits_(limits),
      arrived_(std::move(arrived)),
      images_(limits.kibibytes),
      pausedServers_(servers_.size()) {
    retry_.setSingleShot(true);
    connect(&retry_, &QTimer::timeout, this, arrived_);
}

TileLoader::~TileLoader() {
    // Replies end with their manager, and must not report here any more.
    for (QNetworkReply* reply :
         network_ ? network_->findChildren<QNetworkReply*>() : QList<QNetworkReply*>()) {
        reply->disconnect(this);
    }
}

TileLoader::Key TileLoader::keyOf(std::size_t server, const map::Tile& tile) {
    const map::Tile first = tile.onFirstTurn();
    return Key{server} << 56 | static_cast<Key>(first.zoom) << 48 |
           static_cast<Key>(first.x) << 24 | static_cast<Key>(first.y);
}

const QImage* TileLoader::image(std::size_t server, const map::Tile& tile) const {
    return images_.object(keyOf(server, tile));
}

void TileLoader::want(std::size_t server, const std::vector<map::Tile>& tiles) {
    wishes_.clear();
    if (server >= servers_.size()) {
        return;
    }
    qsizetype needed = 0;
    for (const map::Tile& tile : tiles) {
        const Key key = keyOf(server, tile);
        const QImage* here = images_.object(key);
        needed += (here ? here->sizeInBytes() : qsizetype{4} * 256 * 256) >> 10;
        if (!here) {
            wishes_.push_back({server, key, tile.onFirstTurn()});
        }
    }
    images_.setMaxCost(std::max(limits_.kibibytes, needed + needed / 4));
    start();
}

bool TileLoader::mayAsk(const Wish& wish) const {
    const auto paused = pausedTiles_.constFind(wish.key);
    return pausedServers_[wish.server].hasExpired() && !images_.contains(wish.key) &&
           !underWay_.contains(wish.key) &&
           (paused == pausedTiles_.constEnd() || paused->hasExpired());
}

void TileLoader::start() {
    while (underWay_.size() < limits_.requests && !wishes_.empty()) {
        const Wish wish = wishes_.front();
        wishes_.erase(wishes_.begin());
        if (mayAsk(wish)) {
            request(wish);
        }
    }
}

void TileLoader::request(const Wish& wish) {
    const QUrl url(
        QString::fromStdString(map::tileAddress(servers_[wish.server].address, wish.tile)),
        QUrl::StrictMode);
    if (url.scheme() != QLatin1String("https") && url.scheme() != QLatin1String("http")) {
        return;
    }
    if (!network_) {
        network_ = std::make_unique<QNetworkAccessManager>();
        if (!cacheFolder_.isEmpty()) {
            auto* cache = new TileCache(network_.get());
            cache->setCacheDirectory(cacheFolder_);
            cache->setMaximumCacheSize(limits_.diskBytes);
            network_->setCache(cache);
        }
    }
    QNetworkRequest request(url);
    request.setRawHeader("User-Agent", userAgent_);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(3);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);

    QNetworkReply* reply = network_->get(request);
    underWay_.insert(wish.key);
    // No more than this is ever read ahead; one byte beyond it is too much.
    reply->setReadBufferSize(limits_.bytes + 1);
    connect(reply, &QNetworkReply::readyRead, this, [this, reply] {
        if (reply->bytesAvailable() > limits_.bytes) {
            reply->abort();
        }
    });
    connect(reply, &QNetworkReply::finished, this,
            [this, reply, wish, deadline = QDeadlineTimer(limits_.time)] {
                finished(*reply, wish, deadline.hasExpired());
            });
    auto* timer = new QTimer(reply);
    timer->setSingleShot(true);
    // Others may fire before their time, and then nobody would be late.
    timer->setTimerType(Qt::PreciseTimer);
    connect(timer, &QTimer::timeout, reply, &QNetworkReply::abort);
    timer->start(limits_.time);
}

void TileLoader::finished(QNetworkReply& reply, const Wish& wish, bool late) {
    reply.deleteLater();
    underWay_.remove(wish.key);
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const auto error = reply.error();
    QImage image;
    if (error == QNetworkReply::NoError && reply.bytesAvailable() <= limits_.bytes) {
        image = decoded(reply.readAll(), limits_.pixels);
    }
    if (!image.isNull()) {
        const qsizetype cost = std::max<qsizetype>(image.sizeInBytes() >> 10, 1);
        images_.insert(wish.key, new QImage(std::move(image)), cost);
        arrived_();
    } else if (status == tooManyRequests || late ||
               (error != QNetworkReply::OperationCanceledError && error != QNetworkReply::NoError &&
                blamesServer(error))) {
        pause(wish.server);
    } else {
        if (network_->cache()) {
            network_->cache()->remove(reply.url());
        }
        if (pausedTiles_.size() >= mostPausedTiles) {
            pausedTiles_.clear();
        }
        pausedTiles_.insert(wish.key, QDeadlineTimer(limits_.tilePause));
    }
    start();
}

void TileLoader::pause(std::size_t server) {
    if (pausedServers_[server].hasExpired()) {
        pausedServers_[server].setRemainingTime(limits_.serverPause);
        retry_.start(limits_.serverPause + 1ms);
    }
}

} // namespace desktop
