// SPDX-License-Identifier: MIT
#include "desktop/host/DesktopNotices.h"
#include "desktop/host/MainQueue.h"
#include "tests/support/FakeHost.h"
#include "tests/support/NoticesContract.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QTest>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace {

/// A bus of the test's own, which the environment names while this lives.
class SessionBus {
public:
    SessionBus() {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe(ends.data()), 0);
        // Not by QProcess: its child shares this process's memory for a while, after which
        // ThreadSanitizer no longer sees this thread's locks.
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        std::string place = "--address=unix:dir=" + folder_.path().string();
        std::string words[] = {"dbus-daemon", "--session", "--nofork", "--print-address"};
        char* arguments[] = {words[0].data(), words[1].data(), words[2].data(),
                             words[3].data(), place.data(),    nullptr};
        EXPECT_EQ(::posix_spawnp(&daemon_, arguments[0], &actions, nullptr, arguments, environ), 0)
            << "dbus-daemon does not run; is it installed?";
        ::posix_spawn_file_actions_destroy(&actions);
        ::close(ends[1]);
        for (char letter = 0; ::read(ends[0], &letter, 1) == 1 && letter != '\n';) {
            address += QLatin1Char(letter);
        }
        ::close(ends[0]);
        qputenv(variable, address.toLatin1());
    }
    ~SessionBus() {
        before_.isEmpty() ? qunsetenv(variable) : qputenv(variable, before_);
        ::kill(daemon_, SIGKILL);
        ::waitpid(daemon_, nullptr, 0);
    }

    QString address;

private:
    static constexpr const char* variable = "DBUS_SESSION_BUS_ADDRESS";
    support::TemporaryFolder folder_;
    QByteArray before_ = qgetenv(variable);
    pid_t daemon_ = 0;
};

/// A small notification service, which keeps what it is sent.
class BusService final : public QDBusVirtualObject {
public:
    BusService(const QString& address, QStringList capabilities)
        : capabilities_(std::move(capabilities)),
          bus_(QDBusConnection::connectToBus(address, QStringLiteral("notification service"))) {
        EXPECT_TRUE(bus_.registerVirtualObject(path, this));
    }
    ~BusService() override { QDBusConnection::disconnectFromBus(bus_.name()); }

    void setThere(bool isThere) {
        isThere ? bus_.registerService(name) : bus_.unregisterService(name);
    }
    void choose(std::size_t number) {
        for (const auto& id : {uint{999}, static_cast<uint>(number + 1)}) {
            QDBusMessage signal =
                QDBusMessage::createSignal(path, name, QStringLiteral("ActionInvoked"));
            signal << id << QStringLiteral("default");
            EXPECT_TRUE(bus_.send(signal));
        }
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override {
        if (call.member() == QLatin1String("GetCapabilities")) {
            return bus.send(call.createReply(capabilities_));
        }
        calls.push_back(call.arguments());
        return bus.send(call.createReply(static_cast<uint>(calls.size())));
    }

    std::vector<QVariantList> calls;

private:
    static inline const QString name = QStringLiteral("org.freedesktop.Notifications");
    static inline const QString path = QStringLiteral("/org/freedesktop/Notifications");
    QStringList capabilities_;
    QDBusConnection bus_;
};

struct DesktopStage {
    explicit DesktopStage(const QStringList& capabilities = {QStringLiteral("body"),
                                                             QStringLiteral("actions"),
                                                             QStringLiteral("body-markup")})
        : service(bus.address, capabilities) {}

    desktop::DesktopNotices& notices() { return real; }
    void setThere(bool isThere) { service.setThere(isThere); }
    template <typename Condition>
    static bool settle(Condition hasCome) {
        return QTest::qWaitFor(hasCome, 20'000);
    }
    std::vector<std::string> shown() {
        std::vector<std::string> texts;
        for (const QVariantList& call : service.calls) {
            QString body = call.at(4).toString();
            body.replace(QStringLiteral("&lt;"), QStringLiteral("<"))
                .replace(QStringLiteral("&gt;"), QStringLiteral(">"))
                .replace(QStringLiteral("&amp;"), QStringLiteral("&"));
            texts.push_back((call.at(3).toString() + u'\n' + body).toStdString());
        }
        return texts;
    }
    void choose(std::size_t number) { service.choose(number); }
    [[nodiscard]] bool hasLost(const std::string& title) const {
        return std::ranges::any_of(log.lines(), [&](const std::string& line) {
            return line.starts_with("Not shown: " + title + ";");
        });
    }
    [[nodiscard]] int changes() const { return changes_; }

    SessionBus bus;
    BusService service;
    support::FakeLog log;
    platform::NotificationCenter center;
    desktop::MainQueue queue;
    desktop::DesktopNotices real{center, queue, log};

private:
    int changes_ = 0;
    platform::NotificationCenter::Token token_ = center.addObserver(
        platform::Notices::didChange, [this](const platform::Notification&) { ++changes_; });
};

struct FakeStage {
    support::FakeNotices& notices() { return fake; }
    void setThere(bool isThere) { fake.setThere(isThere); }
    template <typename Condition>
    static bool settle(Condition hasCome) {
        return hasCome();
    }
    std::vector<std::string> shown() {
        std::vector<std::string> texts;
        for (const auto& notice : fake.shown) {
            texts.push_back(notice.title + "\n" + notice.lines.at(0) + "\n" + notice.lines.at(1));
        }
        return texts;
    }
    void choose(std::size_t number) { fake.choose(number); }
    [[nodiscard]] static bool hasLost(const std::string& /*title*/) { return true; }
    [[nodiscard]] int changes() const { return changes_; }

    platform::NotificationCenter center;
    support::FakeNotices fake{center};

private:
    int changes_ = 0;
    platform::NotificationCenter::Token token_ = center.addObserver(
        platform::Notices::didChange, [this](const platform::Notification&) { ++changes_; });
};

} // namespace

namespace support {
INSTANTIATE_TYPED_TEST_SUITE_P(Desktop, NoticesContract, DesktopStage);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, NoticesContract, FakeStage);
} // namespace support

namespace {

TEST(DesktopNotices, SendsWhatTheServiceCanShow) {
    const struct {
        QStringList capabilities;
        const char* title;
        const char* body;
        qsizetype actions;
    } cases[] = {
        {{"body", "body-markup", "actions"}, "A & B", "x &lt; y &amp; \"z\"\n2nd", 2},
        {{"body"}, "A & B", "x < y & \"z\"\n2nd", 0},
        {{}, "A & B: x < y & \"z\"; 2nd", "", 0},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.capabilities.join(u' ').toStdString());
        DesktopStage stage(one.capabilities);
        stage.setThere(true);
        stage.real.show({"A & B", {"x < y & \"z\"", "2nd\u202e"}, {}});
        ASSERT_TRUE(DesktopStage::settle([&] { return !stage.service.calls.empty(); }));
        const QVariantList& sent = stage.service.calls.front();
        EXPECT_EQ(sent.at(3).toString(), QString::fromUtf8(one.title));
        EXPECT_EQ(sent.at(4).toString(), QString::fromUtf8(one.body));
        EXPECT_EQ(sent.at(5).toStringList().size(), one.actions);
    }
}

TEST(DesktopNotices, WithoutABusSayWhatIsNotShownAndTryAgain) {
    QString dead;
    {
        const SessionBus ended;
        dead = ended.address;
    }
    const QByteArray before = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("DBUS_SESSION_BUS_ADDRESS", dead.toLatin1());
    support::FakeLog log;
    platform::NotificationCenter center;
    desktop::MainQueue queue;
    desktop::DesktopNotices notices(center, queue, log);
    notices.show({"First", {"line"}, {}});
    EXPECT_EQ(notices.canShow(), std::nullopt) << "it must not have waited";
    EXPECT_TRUE(DesktopStage::settle([&] { return notices.canShow() == false; }));
    ASSERT_EQ(log.lines().size(), 2U);
    EXPECT_TRUE(log.lines()[0].starts_with("Notifications cannot be shown: "));
    EXPECT_EQ(log.lines()[1], "Not shown: First; line");
    before.isEmpty() ? qunsetenv("DBUS_SESSION_BUS_ADDRESS")
                     : qputenv("DBUS_SESSION_BUS_ADDRESS", before);
    const SessionBus bus;
    BusService service(bus.address, {QStringLiteral("body")});
    service.setThere(true);
    notices.show({"Second", {}, {}});
    EXPECT_TRUE(DesktopStage::settle([&] { return service.calls.size() == 1; }));
}

} // namespace
