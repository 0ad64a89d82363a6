// SPDX-License-Identifier: MIT
#pragma once

#include "map/Tiles.h"

#include <QByteArray>
#include <QSize>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>
#include <string>
#include <vector>

namespace support {

/// A tile server on loopback, on the test's own event loop.
class LoopbackTiles final : public QTcpServer {
public:
    struct Request {
        QByteArray path;
        /// The whole head, as it came.
        QByteArray head;
    };

    LoopbackTiles();

    /// A server for the whole world whose tiles come from here.
    [[nodiscard]] map::TileServer server(map::Imagery imagery, int highestZoom) const;

    /// A reply with a head of its own, such as "Cache-Control: no-store".
    [[nodiscard]] static QByteArray reply(const QByteArray& body, const QByteArray& header = {},
                                          const QByteArray& status = "200 OK");
    /// A picture of one colour, which tells the kinds of tiles apart.
    [[nodiscard]] static QByteArray picture(const QByteArray& path, const QSize& size = {256, 256});

    /// Answers one request; a picture that may be kept for an hour unless a test says otherwise.
    std::function<void(QTcpSocket& socket, const Request& request)> answer;
    std::vector<Request> requests;

private:
    void serve(QTcpSocket& socket);
};

} // namespace support
