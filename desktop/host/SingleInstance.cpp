// SPDX-License-Identifier: MIT
#include "desktop/host/SingleInstance.h"

#include "desktop/Text.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>

namespace desktop {

namespace {

using namespace std::chrono_literals;

constexpr auto firstMayStartFor = 5s;
/// By which a Wayland compositor lets one window give the front to another.
constexpr const char* activationToken = "XDG_ACTIVATION_TOKEN";
constexpr qint64 longestToken = 1000;

QString runtimePath() {
    const QString files = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QByteArray hash =
        QCryptographicHash::hash(files.toUtf8(), QCryptographicHash::Sha256).toHex().left(16);
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
           QStringLiteral("/nosig-") + QString::fromLatin1(hash);
}

} // namespace

SingleInstance::SingleInstance(platform::Log& log)
    : log_(log), path_(runtimePath()), lock_(path_ + QStringLiteral(".lock")) {
    // However long it runs, it is not stale while its process lives.
    lock_.setStaleLockTime(0);
}

bool SingleInstance::isFirst() {
    if (lock_.tryLock()) {
        listen();
        return true;
    }
    if (lock_.error() != QLockFile::LockFailedError) {
        log_.line("No lock " + filePath(path_) + ".lock: other instances are not noticed");
        return true;
    }
    if (!callFirst()) {
        log_.line("Nosig runs already, and does not answer");
    }
    return false;
}

void SingleInstance::listen() {
    QObject::connect(&server_, &QLocalServer::newConnection, &server_, [this] {
        while (QLocalSocket* later = server_.nextPendingConnection()) {
            QObject::connect(later, &QLocalSocket::disconnected, later, [this, later] {
                if (const QByteArray token = later->read(longestToken); !token.isEmpty()) {
                    qputenv(activationToken, token);
                }
                later->deleteLater();
                if (laterStarted) {
                    laterStarted();
                }
            });
        }
    });
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    // Left behind by an instance that was killed.
    QLocalServer::removeServer(path_);
    if (!server_.listen(path_)) {
        log_.line("No socket " + filePath(path_) + ": " + server_.errorString().toStdString());
    }
}

bool SingleInstance::callFirst() const {
    QDeadlineTimer deadline(firstMayStartFor);
    while (!deadline.hasExpired()) {
        QLocalSocket first;
        first.connectToServer(path_, QIODevice::WriteOnly);
        if (first.waitForConnected(static_cast<int>(deadline.remainingTime()))) {
            first.write(qgetenv(activationToken).left(longestToken));
            first.disconnectFromServer();
            return first.state() == QLocalSocket::UnconnectedState ||
                   first.waitForDisconnected(static_cast<int>(deadline.remainingTime()));
        }
        // It has its lock, but does not listen yet.
        QThread::msleep(20);
    }
    return false;
}

} // namespace desktop
