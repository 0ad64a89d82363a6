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

/// A tile server on loopback that runs on the test's own event loop.
class LoopbackTiles final : public QTcpServer {
public:
    struct Request {
        QByteArray path;
        /// The request line and all headers, as received.
        QByteArray head;
    };

    LoopbackTiles();

    /// Describes this server, as one that has tiles of the whole world.
    [[nodiscard]] map::TileServer server(map::Imagery imagery, int highestZoom) const;

    /// A reply with header lines of its own, such as "Cache-Control: no-store\r\n".
    [[nodiscard]] static QByteArray reply(const QByteArray& body, const QByteArray& header = {},
                                          const QByteArray& status = "200 OK");
    /// A picture of one colour, which shows what kind of tile `path` asks for.
    [[nodiscard]] static QByteArray picture(const QByteArray& path, const QSize& size = {256, 256});

    /// Answers one request. Sends a picture that may be cached for an hour unless a test replaces
    /// it.
    std::function<void(QTcpSocket& socket, const Request& request)> answer;
    std::vector<Request> requests;

private:
    void serve(QTcpSocket& socket);
};

/// Whether a loader of tiles has no request under way, seen by its replies, which are children of
/// it.
[[nodiscard]] bool isIdle(const QObject& loader);

/// Waits until a loader has seen to what is wanted by now. False if some request has neither been
/// answered nor given up in time.
[[nodiscard]] bool settle(const QObject& loader);

} // namespace support
