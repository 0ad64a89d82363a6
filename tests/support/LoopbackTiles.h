// SPDX-License-Identifier: MIT
#pragma once

#include "map/Tiles.h"

#include <QBuffer>
#include <QHostAddress>
#include <QImage>
#include <QNetworkReply>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

#include <functional>
#include <string>
#include <vector>

namespace support {

/// A tile server on loopback that runs on the test's own event loop.
class LoopbackTiles final : public QTcpServer {
public:
    struct Request {
        QByteArray path;
        /// The request line and all headers, as received.
        QByteArray head;
    };

    LoopbackTiles() {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* socket = nextPendingConnection()) {
                connect(socket, &QTcpSocket::readyRead, this, [this, socket] { serve(*socket); });
                connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            }
        });
    }

    /// Describes this server, as one that has tiles of the whole world.
    [[nodiscard]] map::TileServer server(map::Imagery imagery, int highestZoom) const {
        const std::string kind = imagery == map::Imagery::standard ? "standard" : "satellite";
        return {imagery,
                "http://127.0.0.1:" + std::to_string(serverPort()) + "/" + kind + "/{z}/{x}/{y}",
                highestZoom,
                "© " + kind + " tiles of this machine",
                "https://example.org/" + kind,
                {}};
    }
    /// A reply with header lines of its own, such as "Cache-Control: no-store\r\n".
    [[nodiscard]] static QByteArray reply(const QByteArray& body, const QByteArray& header = {},
                                          const QByteArray& status = "200 OK") {
        return "HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) +
               "\r\n" + header + "\r\n" + body;
    }
    /// A picture of one colour, which shows what kind of tile `path` asks for.
    [[nodiscard]] static QByteArray picture(const QByteArray& path,
                                            const QSize& size = {256, 256}) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(path.contains("satellite") ? QColor(40, 70, 50) : QColor(235, 230, 205));
        QByteArray bytes;
        QBuffer buffer(&bytes);
        image.save(&buffer, "PNG");
        return bytes;
    }
    /// From now on answers every request with that reply.
    void answerWith(const QByteArray& reply) {
        answer = [reply](QTcpSocket& socket, const Request& /*request*/) { socket.write(reply); };
    }

    /// Answers one request. Sends a picture that may be cached for an hour unless a test replaces
    /// it.
    std::function<void(QTcpSocket& socket, const Request& request)> answer =
        [](QTcpSocket& socket, const Request& request) {
            socket.write(reply(picture(request.path), "Cache-Control: max-age=3600\r\n"));
        };
    std::vector<Request> requests;

private:
    void serve(QTcpSocket& socket) {
        constexpr qint64 longest = 64 << 10;
        for (qsizetype end = 0; (end = socket.peek(longest).indexOf("\r\n\r\n")) >= 0;) {
            const QByteArray head = socket.read(end + 4);
            requests.push_back({head.split(' ').value(1), head});
            answer(socket, Request(requests.back()));
        }
    }
};

/// Whether a loader of tiles has no request under way, seen by its replies, which are children of
/// it.
[[nodiscard]] inline bool isIdle(const QObject& loader) {
    return loader.findChildren<QNetworkReply*>().isEmpty();
}

/// Waits until a loader has seen to what is wanted by now. False if some request has neither been
/// answered nor given up in time.
[[nodiscard]] inline bool settle(const QObject& loader) {
    // A loader looks at what is wanted when its timer runs out, which is before this one does.
    QTimer later;
    later.setSingleShot(true);
    later.setTimerType(Qt::PreciseTimer);
    later.start(0);
    return QTest::qWaitFor([&] { return !later.isActive() && isIdle(loader); }, 20'000);
}

} // namespace support
