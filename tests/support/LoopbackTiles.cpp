// SPDX-License-Identifier: MIT
#include "tests/support/LoopbackTiles.h"

#include <QBuffer>
#include <QHostAddress>
#include <QImage>
#include <QNetworkReply>
#include <QTest>
#include <QTimer>

namespace support {

LoopbackTiles::LoopbackTiles() {
    answer = [](QTcpSocket& socket, const Request& request) {
        socket.write(reply(picture(request.path), "Cache-Control: max-age=3600\r\n"));
    };
    listen(QHostAddress::LocalHost);
    connect(this, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = nextPendingConnection()) {
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { serve(*socket); });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
}

void LoopbackTiles::serve(QTcpSocket& socket) {
    QByteArray waiting = socket.property("waiting").toByteArray() + socket.readAll();
    for (auto end = waiting.indexOf("\r\n\r\n"); end >= 0; end = waiting.indexOf("\r\n\r\n")) {
        const QByteArray head = waiting.left(end + 2);
        waiting.remove(0, end + 4);
        requests.push_back({head.split(' ').value(1), head});
        answer(socket, Request(requests.back()));
    }
    socket.setProperty("waiting", waiting);
}

map::TileServer LoopbackTiles::server(map::Imagery imagery, int highestZoom) const {
    const std::string kind = imagery == map::Imagery::standard ? "standard" : "satellite";
    return {imagery,
            "http://127.0.0.1:" + std::to_string(serverPort()) + "/" + kind + "/{z}/{x}/{y}",
            highestZoom,
            "© " + kind + " tiles of this machine",
            "https://example.org/" + kind,
            {}};
}

QByteArray LoopbackTiles::reply(const QByteArray& body, const QByteArray& header,
                                const QByteArray& status) {
    return "HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) +
           "\r\n" + header + "\r\n" + body;
}

QByteArray LoopbackTiles::picture(const QByteArray& path, const QSize& size) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(path.contains("satellite") ? QColor(40, 70, 50) : QColor(235, 230, 205));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    return bytes;
}

bool isIdle(const QObject& loader) {
    return loader.findChildren<QNetworkReply*>().isEmpty();
}

bool settle(const QObject& loader) {
    // A loader looks at what is wanted when its timer runs out, which is before this one does.
    QTimer later;
    later.setSingleShot(true);
    later.setTimerType(Qt::PreciseTimer);
    later.start(0);
    return QTest::qWaitFor([&] { return !later.isActive() && isIdle(loader); }, 20'000);
}

} // namespace support
