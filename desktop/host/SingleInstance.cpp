// SPDX-License-Identifier: MIT
#include "desktop/host/SingleInstance.h"

#include "desktop/text/Text.h"
#include "platform/host/Files.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <system_error>
#include <utility>

namespace desktop {

namespace {

using namespace std::chrono_literals;

/// How long a later instance waits: with its start-up it ends within two seconds.
constexpr auto patience = 1500ms;
/// The variable whose token lets a Wayland compositor bring another window to the front.
constexpr const char* activationToken = "XDG_ACTIVATION_TOKEN";
constexpr qint64 longestToken = 1000;

QString socketPath(const std::string& folder) {
    const QByteArray hash =
        QCryptographicHash::hash(QByteArray::fromStdString(folder), QCryptographicHash::Sha256);
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
           QStringLiteral("/nosig-") + QString::fromLatin1(hash.toHex().left(16));
}

std::string lastError() {
    return std::generic_category().message(errno);
}

} // namespace

SingleInstance::SingleInstance(std::string folder, platform::Log& log)
    : folder_(std::move(folder)), lockPath_(folder_ + "/lock"), log_(log) {}

SingleInstance::~SingleInstance() {
    if (lock_ >= 0) {
        ::close(lock_);
    }
}

bool SingleInstance::isFirst() {
    if (platform::createDirectory(folder_, true)) {
        // Already logged where the parent folder could not be created.
        return true;
    }
    lock_ = ::open(lockPath_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (lock_ >= 0 && ::flock(lock_, LOCK_EX | LOCK_NB) == 0) {
        listen();
        return true;
    }
    if (lock_ < 0 || errno != EWOULDBLOCK) {
        log_.line("Cannot lock " + lockPath_ + ": " + lastError() +
                  "; other instances will not be noticed");
        return true;
    }
    if (!callFirst()) {
        log_.line("Nosig is already running on the files in " + folder_ +
                  ", and cannot be brought to the front");
    }
    return false;
}

void SingleInstance::listen() {
    QObject::connect(&server_, &QLocalServer::newConnection, &server_, [this] {
        while (QLocalSocket* later = server_.nextPendingConnection()) {
            QObject::connect(later, &QLocalSocket::disconnected, later, &QObject::deleteLater);
            QObject::connect(later, &QLocalSocket::readyRead, later,
                             [this, later] { answer(*later); });
        }
    });
    const QString path = socketPath(folder_);
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    // Left behind if an earlier instance was killed.
    QLocalServer::removeServer(path);
    if (!server_.listen(path)) {
        log_.line("Cannot listen on the socket " + filePath(path) + ": " +
                  server_.errorString().toStdString());
        return;
    }
    const std::string name = filePath(path);
    if (::ftruncate(lock_, 0) != 0 ||
        ::pwrite(lock_, name.data(), name.size(), 0) != static_cast<ssize_t>(name.size())) {
        log_.line("Cannot write " + lockPath_ + ": " + lastError());
    }
}

void SingleInstance::answer(QLocalSocket& later) {
    if (later.bytesAvailable() <= longestToken && !later.canReadLine()) {
        return;
    }
    if (const QByteArray token = later.read(longestToken).trimmed(); !token.isEmpty()) {
        qputenv(activationToken, token);
    }
    if (laterStarted) {
        laterStarted();
    }
    later.write("\n");
    later.disconnectFromServer();
}

bool SingleInstance::callFirst() const {
    const QDeadlineTimer deadline(patience);
    const auto left = [&deadline] { return static_cast<int>(deadline.remainingTime()); };
    for (; !deadline.hasExpired(); QThread::msleep(20)) {
        // The first instance may not be listening yet.
        std::array<char, 4096> name{};
        const ssize_t length = ::pread(lock_, name.data(), name.size() - 1, 0);
        if (length <= 0) {
            continue;
        }
        QLocalSocket first;
        first.connectToServer(QFile::decodeName(name.data()));
        if (first.waitForConnected(left())) {
            first.write(qgetenv(activationToken).left(longestToken) + '\n');
            return first.waitForReadyRead(left());
        }
    }
    return false;
}

} // namespace desktop
