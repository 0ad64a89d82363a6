// SPDX-License-Identifier: MIT
#include "desktop/host/DesktopNotices.h"
#include "desktop/host/MainQueue.h"
#include "tests/support/FakeHost.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QTest>
#include <gtest/gtest.h>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <utility>

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
        end();
    }
    /// The environment goes on naming it.
    void end() {
        if (const pid_t daemon = std::exchange(daemon_, 0); daemon > 0) {
            ::kill(daemon, SIGKILL);
            ::waitpid(daemon, nullptr, 0);
        }
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
          bus_(QDBusConnection::connectToBus(address, "notification service")) {
        EXPECT_TRUE(bus_.registerVirtualObject(path, this));
    }
    ~BusService() override { QDBusConnection::disconnectFromBus(bus_.name()); }

    void setThere(bool isThere) {
        isThere ? bus_.registerService(name) : bus_.unregisterService(name);
    }
    void choose(std::size_t number) {
        for (const auto& id : {uint{999}, static_cast<uint>(number + 1)}) {
            QDBusMessage signal = QDBusMessage::createSignal(path, name, "ActionInvoked");
            signal << id << "default";
            EXPECT_TRUE(bus_.send(signal));
        }
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override {
        if (call.member() == "GetCapabilities") {
            return bus.send(call.createReply(capabilities_));
        }
        calls.push_back(call.arguments());
        return bus.send(call.createReply(static_cast<uint>(calls.size())));
    }

    std::vector<QVariantList> calls;

private:
    static inline const QString name = "org.freedesktop.Notifications";
    static inline const QString path = "/org/freedesktop/Notifications";
    QStringList capabilities_;
    QDBusConnection bus_;
};

/// Whether a condition comes about, for which it may take messages on the bus.
template <typename Condition>
bool comes(Condition hasCome) {
    return QTest::qWaitFor(hasCome, 20'000);
}

struct CountedChanges {
    platform::NotificationCenter center;
    int changes = 0;
    platform::NotificationCenter::Token token = center.addObserver(
        platform::Notices::didChange, [this](const platform::Notification&) { ++changes; });
};

struct DesktopStage : CountedChanges {
    explicit DesktopStage(const QStringList& capabilities = {"body", "actions", "body-markup"})
        : service(bus.address, capabilities) {}

    std::vector<std::string> shown() {
        std::vector<std::string> texts;
        for (const QVariantList& call : service.calls) {
            QString body = call.at(4).toString();
            body.replace("&lt;", "<").replace("&gt;", ">").replace("&amp;", "&");
            texts.push_back((call.at(3).toString() + u'\n' + body).toStdString());
        }
        return texts;
    }
    [[nodiscard]] bool hasLost(const std::string& title) const {
        return std::ranges::any_of(log.lines(), [&](const std::string& line) {
            return line.starts_with("Not shown: " + title + ";");
        });
    }

    SessionBus bus;
    BusService service;
    support::FakeLog log;
    desktop::MainQueue queue;
    desktop::DesktopNotices notices{center, queue, log};
};

struct FakeStage : CountedChanges {
    std::vector<std::string> shown() {
        std::vector<std::string> texts;
        for (const auto& notice : notices.shown) {
            texts.push_back(notice.title + "\n" + notice.lines.at(0) + "\n" + notice.lines.at(1));
        }
        return texts;
    }
    [[nodiscard]] static bool hasLost(const std::string& /*title*/) { return true; }

    support::FakeNotices notices{center};
    support::FakeNotices& service = notices;
};

/// What the logic relies on in every service for notices. The real one and the fake run the same
/// tests. A stage has `notices`; their `service`, which comes and goes and lets the user choose a
/// notice; `shown`, which tells what the user sees of each, the title and the lines as one text;
/// `hasLost`, whether a notice with that title will never be shown; and `changes`, the number of
/// posts.
template <typename Stage>
struct NoticesContract : testing::Test {
    Stage stage;
    std::vector<std::string> chosen;

    void show(const std::string& title) {
        stage.notices.show({title, {"QNH < 1013 & \"more\"", "<b>second</b>"}, [this, title] {
                                chosen.push_back(title);
                            }});
    }
};

using Stages = testing::Types<DesktopStage, FakeStage>;
TYPED_TEST_SUITE(NoticesContract, Stages);

TYPED_TEST(NoticesContract, ShowsPlainTextAndTellsWhichNoticeWasChosenOnce) {
    auto& seen = this->stage;
    EXPECT_EQ(seen.notices.canShow(), std::nullopt);
    seen.service.setThere(true);
    this->show("A & <i>B</i>");
    this->show("C");
    ASSERT_TRUE(comes([&] { return seen.shown().size() == 2; }));
    EXPECT_EQ(seen.notices.canShow(), true);
    EXPECT_EQ(seen.shown()[0], "A & <i>B</i>\nQNH < 1013 & \"more\"\n<b>second</b>");
    seen.service.choose(1);
    EXPECT_TRUE(comes([&] { return !this->chosen.empty(); }));
    seen.service.choose(1);
    seen.service.choose(0);
    EXPECT_TRUE(comes([&] { return this->chosen.size() > 1; }));
    EXPECT_EQ(this->chosen, (std::vector<std::string>{"C", "A & <i>B</i>"}));
}

TYPED_TEST(NoticesContract, TheServiceMayBeMissingAndMayComeAndGo) {
    auto& seen = this->stage;
    const auto settles = [&](bool canShow, int changes) {
        return comes([&] { return seen.notices.canShow() == canShow && seen.changes == changes; });
    };
    seen.service.setThere(false);
    seen.notices.prepare();
    EXPECT_TRUE(settles(false, 1));
    this->show("lost");
    EXPECT_TRUE(comes([&] { return seen.hasLost("lost"); }));
    seen.service.setThere(true);
    EXPECT_TRUE(settles(true, 2));
    this->show("seen");
    EXPECT_TRUE(comes([&] { return seen.shown().size() == 1; }));
    EXPECT_TRUE(seen.shown().at(0).starts_with("seen"));
    seen.service.setThere(false);
    EXPECT_TRUE(settles(false, 3));
    this->show("lost as well");
    EXPECT_TRUE(comes([&] { return seen.hasLost("lost as well"); }));
    seen.service.setThere(true);
    EXPECT_TRUE(settles(true, 4));
    EXPECT_EQ(seen.shown().size(), 1U);
}

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
        stage.service.setThere(true);
        stage.notices.show({"A & B", {"x < y & \"z\"", "2nd\u202e"}, {}});
        ASSERT_TRUE(comes([&] { return !stage.service.calls.empty(); }));
        const QVariantList& sent = stage.service.calls.front();
        EXPECT_EQ(sent.at(3).toString(), one.title);
        EXPECT_EQ(sent.at(4).toString(), one.body);
        EXPECT_EQ(sent.at(5).toStringList().size(), one.actions);
    }
}

TEST(DesktopNotices, WithoutABusSayWhatIsNotShownAndTryAgain) {
    SessionBus ended;
    ended.end();
    support::FakeLog log;
    platform::NotificationCenter center;
    desktop::MainQueue queue;
    desktop::DesktopNotices notices(center, queue, log);
    notices.show({"First", {"line"}, {}});
    EXPECT_EQ(notices.canShow(), std::nullopt) << "it must not have waited";
    EXPECT_TRUE(comes([&] { return notices.canShow() == false; }));
    ASSERT_EQ(log.lines().size(), 2U);
    EXPECT_TRUE(log.lines()[0].starts_with("Notifications cannot be shown: "));
    EXPECT_EQ(log.lines()[1], "Not shown: First; line");
    const SessionBus bus;
    BusService service(bus.address, {"body"});
    service.setThere(true);
    notices.show({"Second", {}, {}});
    EXPECT_TRUE(comes([&] { return service.calls.size() == 1; }));
}

} // namespace
