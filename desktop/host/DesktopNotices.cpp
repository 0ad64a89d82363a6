// SPDX-License-Identifier: MIT
#include "desktop/host/DesktopNotices.h"

#include "desktop/text/Text.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusReply>
#include <QFile>
#include <QStandardPaths>
#include <QStringList>

#include <atomic>
#include <functional>
#include <map>
#include <utility>

namespace desktop {

namespace {

const QString serviceName = QStringLiteral("org.freedesktop.Notifications");
const QString objectPath = QStringLiteral("/org/freedesktop/Notifications");
/// The key of the action that a click on the notification itself stands for.
const QString defaultAction = QStringLiteral("default");
/// The variable whose token lets a Wayland compositor bring a window to the front.
constexpr const char* activationToken = "XDG_ACTIVATION_TOKEN";

/// Empty if there is no bus. The library's own search would start one.
QString busAddress() {
    const QString named = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    const QString usual =
        QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) + QStringLiteral("/bus");
    return !named.isEmpty()       ? named
           : QFile::exists(usual) ? QStringLiteral("unix:path=") + usual
                                  : QString();
}

QString escaped(QString text) {
    return text.replace(u'&', QStringLiteral("&amp;"))
        .replace(u'<', QStringLiteral("&lt;"))
        .replace(u'>', QStringLiteral("&gt;"));
}

} // namespace

/// The notification service on one connection to the bus. Lives on the main thread; only `open`
/// runs elsewhere.
class DesktopNotices::Service final : public QObject {
    Q_OBJECT

public:
    explicit Service(DesktopNotices& owner)
        : owner_(owner), name_(QStringLiteral("nosig-notices-%1").arg(++connections)) {}
    ~Service() override { QDBusConnection::disconnectFromBus(name_); }

    /// Waits for the bus. What it does must have been seen by the main thread before that uses the
    /// service.
    void open() {
        const QString address = busAddress();
        if (address.isEmpty()) {
            return;
        }
        QDBusConnection bus = QDBusConnection::connectToBus(address, name_);
        if (bus.isConnected()) {
            listen(bus, "ActionInvoked", SLOT(choose(uint, QString)));
            listen(bus, "ActivationToken", SLOT(keepToken(uint, QString)));
            listen(bus, "NotificationClosed", SLOT(forget(uint, uint)));
            bus.connect(
                QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameOwnerChanged"),
                {serviceName}, QString(), this, SLOT(changeOwner(QString, QString, QString)));
        }
    }

    [[nodiscard]] bool isOpen() const { return QDBusConnection(name_).isConnected(); }

    void askWhatItCan() {
        call("GetCapabilities", {}, [this](const QDBusMessage& reply) {
            if (reply.type() == QDBusMessage::ReplyMessage) {
                capabilities_ = QDBusReply<QStringList>(reply).value();
                owner_.settle(true, {});
            } else {
                owner_.settle(false, reply.errorMessage().toStdString());
            }
        });
    }

    void show(const Notice& notice) {
        QString title = shownText(notice.title);
        QStringList lines;
        for (const std::string& line : notice.lines) {
            const QString shown = shownText(line);
            lines << (capabilities_.contains(QStringLiteral("body-markup")) ? escaped(shown)
                                                                            : shown);
        }
        if (!capabilities_.contains(QStringLiteral("body")) && !lines.isEmpty()) {
            title += QStringLiteral(": ") + lines.join(QStringLiteral("; "));
            lines.clear();
        }
        QStringList actions;
        if (capabilities_.contains(QStringLiteral("actions"))) {
            actions = QStringList{defaultAction, QStringLiteral("Show")};
        }
        constexpr int asLongAsTheServiceLikes = -1;
        call("Notify",
             {QStringLiteral("Nosig"), uint{0}, QStringLiteral("nosig"), title, lines.join(u'\n'),
              actions, QVariantMap{{QStringLiteral("desktop-entry"), QStringLiteral("nosig")}},
              asLongAsTheServiceLikes},
             [this, notice](const QDBusMessage& reply) {
                 const QDBusReply<uint> number(reply);
                 if (number.isValid()) {
                     chosen_[number.value()] = notice.chosen;
                 } else {
                     owner_.waiting_.push_back(notice);
                     owner_.settle(false, reply.errorMessage().toStdString());
                 }
             });
    }

public slots: // NOLINT(readability-redundant-access-specifiers)
    void choose(uint number, const QString& action) {
        const auto found = chosen_.find(number);
        if (found != chosen_.end() && action == defaultAction) {
            if (const auto chosen = std::exchange(found->second, {})) {
                chosen();
            }
        }
    }
    void keepToken(uint number, const QString& token) {
        if (chosen_.contains(number)) {
            qputenv(activationToken, token.toUtf8());
        }
    }
    void forget(uint number, uint /*reason*/) { chosen_.erase(number); }
    void changeOwner(const QString& /*name*/, const QString& /*before*/, const QString& now) {
        chosen_.clear();
        if (now.isEmpty()) {
            owner_.settle(false, "it has ended");
        } else {
            owner_.isPreparing_ = true;
            askWhatItCan();
        }
    }

private:
    void listen(QDBusConnection& bus, const char* signal, const char* slot) {
        // With the service's name, the toolkit would wait for its owner.
        bus.connect(QString(), objectPath, serviceName, QString::fromLatin1(signal), this, slot);
    }

    void call(const char* method, const QVariantList& arguments,
              const std::function<void(const QDBusMessage&)>& then) {
        QDBusMessage message = QDBusMessage::createMethodCall(serviceName, objectPath, serviceName,
                                                              QString::fromLatin1(method));
        message.setArguments(arguments);
        const QDBusConnection bus(name_);
        if (!bus.isConnected()) {
            // The toolkit would never tell of the end of such a call.
            const QDBusMessage error = QDBusMessage::createError(
                QDBusError::Disconnected, QStringLiteral("there is no session bus"));
            QMetaObject::invokeMethod(
                this, [then, error] { then(error); }, Qt::QueuedConnection);
            return;
        }
        auto* call = new QDBusPendingCallWatcher(bus.asyncCall(message), this);
        connect(call, &QDBusPendingCallWatcher::finished, this, [call, then] {
            call->deleteLater();
            then(call->reply());
        });
    }

    static inline std::atomic<int> connections = 0;

    DesktopNotices& owner_;
    QString name_;
    QStringList capabilities_;
    /// What to call, by the service's numbers.
    std::map<uint, std::function<void()>> chosen_;
};

DesktopNotices::DesktopNotices(platform::NotificationCenter& center,
                               platform::MainThread& mainThread, platform::Log& log)
    : center_(center), mainThread_(mainThread), log_(log) {}

DesktopNotices::~DesktopNotices() = default;

void DesktopNotices::prepare() {
    if (!isPreparing_ && canShow_ != true) {
        isPreparing_ = true;
        connect();
    }
}

void DesktopNotices::connect() {
    if (service_ && service_->isOpen()) {
        service_->askWhatItCan();
        return;
    }
    service_ = std::make_shared<Service>(*this);
    queue_.addWork(
        [service = service_.get(), &main = mainThread_, alive = std::weak_ptr(service_)] {
            service->open();
            main.perform(alive, [service] { service->askWhatItCan(); });
        });
}

void DesktopNotices::settle(bool canShow, const std::string& why) {
    isPreparing_ = false;
    if (!canShow && canShow_ != false) {
        log_.line("Notifications cannot be shown: " + why);
    }
    for (const Notice& notice : std::exchange(waiting_, {})) {
        if (canShow) {
            service_->show(notice);
            continue;
        }
        std::string line = "Not shown: " + notice.title;
        for (const std::string& one : notice.lines) {
            line += "; " + one;
        }
        log_.line(line);
    }
    if (std::exchange(canShow_, canShow) != canShow) {
        center_.post({didChange, {}, nullptr});
    }
}

void DesktopNotices::show(const Notice& notice) {
    if (canShow_ == true) {
        service_->show(notice);
    } else {
        waiting_.push_back(notice);
        prepare();
    }
}

} // namespace desktop

#include "DesktopNotices.moc"
