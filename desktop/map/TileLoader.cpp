// SPDX-License-Identifier: MIT
#include "desktop/map/TileLoader.h"

#include <QBuffer>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QImageReader>
#include <QNetworkAccessManager>
#include <QNetworkDiskCache>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <algorithm>
#include <utility>

namespace desktop {

namespace {

using namespace std::chrono_literals;

/// For tiles whose server does not say how long they stay fresh.
constexpr int daysKept = 7;
constexpr qsizetype mostPausedTiles = 4096;

/// The toolkit's cache, which obeys the servers' headers.
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

QUrl addressOf(const map::TileServer& server, const map::Tile& tile) {
    return {QString::fromStdString(map::tileAddress(server.address, tile)), QUrl::StrictMode};
}

/// Null unless the bytes are a PNG or JPEG of at most `mostPixels` each way.
QImage decoded(const QByteArray& bytes, int mostPixels) {
    // Recognised by their first bytes alone: other decoders never see what a server sends.
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

ServerPause::Time now() {
    return std::chrono::steady_clock::now();
}

bool isRefusal(int status) {
    constexpr int notFound = 404;
    constexpr int gone = 410;
    return status >= 400 && status != notFound && status != gone;
}

} // namespace

TileLoader::TileLoader(TileSources sources)
    : servers_(std::move(sources.servers)),
      userAgent_(std::move(sources.userAgent)),
      cacheFolder_(std::move(sources.cacheFolder)),
      limits_(sources.limits),
      images_(limits_.kibibytes),
      pauses_(servers_.size(), ServerPause(limits_.serverPause, limits_.longestPause)) {
    for (std::size_t i = 0; i < servers_.size(); ++i) {
        const QString scheme = addressOf(servers_[i], {}).scheme();
        if (scheme != QLatin1String("https") && scheme != QLatin1String("http")) {
            pauses_[i].neverAsk();
        }
    }
    for (QTimer* timer : {&gathering_, &retry_}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
        connect(timer, &QTimer::timeout, this, &TileLoader::start);
    }
}

TileLoader::~TileLoader() {
    // Replies are destroyed with their manager, and must no longer report here.
    for (QNetworkReply* reply : findChildren<QNetworkReply*>()) {
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

bool TileLoader::mayAsk(const Wish& wish) const {
    const auto paused = pausedTiles_.constFind(wish.key);
    const Time end = pauses_[wish.server].end();
    const bool hasSource = end <= now() || (end != Time::max() && !cacheFolder_.isEmpty());
    return hasSource && !images_.contains(wish.key) && !underWay_.contains(wish.key) &&
           (paused == pausedTiles_.constEnd() || *paused <= now());
}

const TileLoader::Wish* TileLoader::nextOf(const TileWishes& view) const {
    const auto found =
        std::ranges::find_if(view.wishes_, [this](const Wish& wish) { return mayAsk(wish); });
    return found == view.wishes_.end() ? nullptr : &*found;
}

void TileLoader::start() {
    gathering_.stop();
    makeRoom();
    while (underWay_.size() < limits_.requests) {
        const auto view = std::ranges::find_if(
            views_, [this](const TileWishes* one) { return nextOf(*one) != nullptr; });
        if (view == views_.end()) {
            break;
        }
        request(*nextOf(**view));
        std::rotate(view, view + 1, views_.end());
    }
    planRetry();
}

void TileLoader::makeRoom() {
    qsizetype needed = 0;
    QSet<Key> counted;
    for (const TileWishes* view : views_) {
        for (const Wish& wish : view->wishes_) {
            if (!counted.contains(wish.key)) {
                counted.insert(wish.key);
                const QImage* here = images_.object(wish.key);
                needed += (here ? here->sizeInBytes() : qsizetype{4} * 256 * 256) >> 10;
            }
        }
    }
    images_.setMaxCost(std::max(limits_.kibibytes, needed + needed / 4));
}

void TileLoader::request(const Wish& wish) {
    if (!network_) {
        network_ = new QNetworkAccessManager(this);
        if (!cacheFolder_.isEmpty()) {
            auto* cache = new TileCache(network_);
            cache->setCacheDirectory(cacheFolder_);
            cache->setMaximumCacheSize(limits_.diskBytes);
            network_->setCache(cache);
        }
    }
    QNetworkRequest request(addressOf(servers_[wish.server], wish.tile));
    request.setRawHeader("User-Agent", userAgent_);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(3);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    const bool isFromDisk = pauses_[wish.server].end() > now();
    if (isFromDisk) {
        request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                             QNetworkRequest::AlwaysCache);
    }

    QNetworkReply* reply = network_->get(request);
    underWay_.insert(wish.key);
    // Never reads ahead more than this; one byte beyond the limit is too much.
    reply->setReadBufferSize(limits_.bytes + 1);
    connect(reply, &QNetworkReply::readyRead, this, [this, reply] {
        if (reply->bytesAvailable() > limits_.bytes) {
            reply->abort();
        }
    });
    connect(reply, &QNetworkReply::finished, this,
            [this, reply, wish, isFromDisk, deadline = QDeadlineTimer(limits_.time)] {
                finished(*reply, wish, isFromDisk, deadline.hasExpired());
            });
    auto* timer = new QTimer(reply);
    timer->setSingleShot(true);
    // Coarse timers may fire early, and then the reply would not count as late.
    timer->setTimerType(Qt::PreciseTimer);
    connect(timer, &QTimer::timeout, reply, &QNetworkReply::abort);
    timer->start(limits_.time);
}

void TileLoader::finished(QNetworkReply& reply, const Wish& wish, bool isFromDisk, bool late) {
    reply.deleteLater();
    underWay_.remove(wish.key);
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const auto error = reply.error();
    QImage image;
    if (error == QNetworkReply::NoError && reply.bytesAvailable() <= limits_.bytes) {
        image = decoded(reply.readAll(), limits_.pixels);
    }
    if (!image.isNull()) {
        if (!reply.attribute(QNetworkRequest::SourceIsFromCacheAttribute).toBool()) {
            pauses_[wish.server].served();
        }
        came(wish, std::move(image));
    } else if (isFromDisk) {
        pauseTile(wish, pauses_[wish.server].end());
    } else if (isRefusal(status)) {
        pauses_[wish.server].refused(now(), retryAfter(reply.rawHeader("Retry-After"),
                                                       reply.rawHeader("Date"),
                                                       QDateTime::currentDateTimeUtc()));
    } else if (late ||
               (error != QNetworkReply::NoError && error < QNetworkReply::ContentAccessDenied &&
                error != QNetworkReply::OperationCanceledError)) {
        pauses_[wish.server].notReached(now());
    } else {
        if (network_->cache()) {
            network_->cache()->remove(reply.url());
        }
        pauseTile(wish, now() + limits_.tilePause);
    }
    start();
}

void TileLoader::pauseTile(const Wish& wish, Time end) {
    if (pausedTiles_.size() >= mostPausedTiles) {
        pausedTiles_.clear();
    }
    pausedTiles_.insert(wish.key, end);
}

void TileLoader::came(const Wish& wish, QImage image) {
    const qsizetype cost = std::max<qsizetype>(image.sizeInBytes() >> 10, 1);
    // It may be larger than `makeRoom` assumed, and must not evict what views show.
    images_.setMaxCost(images_.maxCost() + cost);
    images_.insert(wish.key, new QImage(std::move(image)), cost);
    makeRoom();
    for (TileWishes* view : std::vector(views_)) {
        // The handler of one view may destroy another.
        if (std::ranges::find(views_, view) != views_.end() &&
            std::ranges::find(view->wishes_, wish.key, &Wish::key) != view->wishes_.end()) {
            view->arrived_();
        }
    }
}

void TileLoader::planRetry() {
    const Time time = now();
    Time next = Time::max();
    for (const ServerPause& pause : pauses_) {
        if (pause.end() > time) {
            next = std::min(next, pause.end());
        }
    }
    if (next != Time::max()) {
        retry_.start(std::chrono::ceil<std::chrono::milliseconds>(next - time));
    }
}

TileWishes::TileWishes(std::shared_ptr<TileLoader> loader, std::function<void()> arrived)
    : loader_(std::move(loader)), arrived_(std::move(arrived)) {
    loader_->views_.push_back(this);
}

TileWishes::~TileWishes() {
    std::erase(loader_->views_, this);
}

void TileWishes::want(std::size_t server, const std::vector<map::Tile>& tiles) {
    wishes_.clear();
    if (server < loader_->servers_.size()) {
        for (const map::Tile& tile : tiles) {
            wishes_.push_back({server, TileLoader::keyOf(server, tile), tile.onFirstTurn()});
        }
    }
    loader_->gathering_.start(0ms);
}

} // namespace desktop
