// SPDX-License-Identifier: MIT
#include "browser/SCWebView.h"
#include "desktop/chart/ChartView.h"
#include "desktop/host/UserEvents.h"
#include "tests/support/FakeHost.h"
#include "tests/support/WeatherServer.h"

#include <QApplication>
#include <QEventLoop>
#include <QMouseEvent>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <set>

namespace {

using Opened = std::vector<std::string>;

/// A chart view as the program makes it, with a server on loopback as its site. Like the program,
/// the tests do not link the browser engine: they look at the page through the toolkit's
/// properties.
class ChartPage : public ::testing::Test {
protected:
    ChartPage() {
        view.resize(400, 300);
        view.setHidden(false);
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
    }

    /// Whether the condition came true in time. The engine works in many small steps, so the event
    /// loop must run without pauses.
    template <typename Condition>
    static bool wait(Condition condition) {
        QEventLoop loop;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
            if (condition()) {
                loop.quit();
            }
        });
        poll.start(5);
        QTimer::singleShot(support::patience, &loop, [&loop] { loop.exit(1); });
        return loop.exec() == 0;
    }
    /// An object of that class that the engine has made inside the view, or null.
    template <typename T = QObject>
    [[nodiscard]] T* made(const char* className) const {
        for (T* object : view.findChildren<T*>()) {
            if (object->inherits(className)) {
                return object;
            }
        }
        return nullptr;
    }
    [[nodiscard]] QUrl shown() const { return made("QWebEnginePage")->property("url").toUrl(); }
    /// The widget that receives the page's input.
    [[nodiscard]] QWidget* input() const { return made<QWidget>("QWebEngineView")->focusProxy(); }
    [[nodiscard]] bool wasAsked(const std::string& request) const {
        const std::scoped_lock lock(mutex_);
        return std::ranges::find(requests_, request) != requests_.end();
    }
    /// The first request that begins with this; empty if there is none.
    [[nodiscard]] std::string askedFor(const std::string& beginning) const {
        const std::scoped_lock lock(mutex_);
        const auto found = std::ranges::find_if(
            requests_, [&](const std::string& request) { return request.starts_with(beginning); });
        return found == requests_.end() ? "" : *found;
    }
    void forgetRequests() {
        const std::scoped_lock lock(mutex_);
        requests_.clear();
    }
    /// What is in the test program's home folder, except the store of the user's certificates,
    /// which the engine reads and creates if it does not exist.
    [[nodiscard]] static std::set<std::string> leftAtHome() {
        std::set<std::string> names;
        for (const auto& entry :
             std::filesystem::directory_iterator(qgetenv("HOME").toStdString())) {
            names.insert(entry.path().filename());
        }
        names.erase(".pki");
        return names;
    }
    void load(const std::string& path) { view.loadRequest({site + path}); }
    /// Shows a page with this body, and waits until it is painted and completely loaded.
    void show(const std::string& body) {
        {
            const std::scoped_lock lock(mutex_);
            body_ = body;
            requests_.clear();
        }
        load("/page");
        EXPECT_TRUE(wait([this] { return wasAsked(here + "/painted"); }));
        EXPECT_TRUE(wait([this] { return !made("QWebEnginePage")->property("loading").toBool(); }));
    }
    /// Shows a page that requests /stayed half a second after a click, if it is still open then.
    void showLinked(const std::string& body) {
        show(body + "<script>addEventListener('click', () => setTimeout(() => fetch('/stayed'), "
                    "500), true)</script>");
    }
    static std::string page(const char* name) {
        std::ifstream file(std::filesystem::path(NOSIG_SOURCE_DIR "/tests/data/chart") / name);
        EXPECT_TRUE(file.good()) << name;
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void click() { QTest::mouseClick(input(), Qt::LeftButton); }
    void release(quint64 milliseconds) {
        const QPointF place(200, 150);
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, place, input()->mapToGlobal(place), Qt::LeftButton,
                              type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, {});
            event.setTimestamp(milliseconds);
            QApplication::sendEvent(input(), &event);
        }
    }

    mutable std::mutex mutex_;
    std::vector<std::string> requests_;
    std::string body_;
    support::FakeHost fake;
    support::WeatherServer server{
        [this](const auto& request, auto& response) { answer(request, response); }};
    /// The same server is reached under two names, `here` and `there`.
    const std::string here = server.authority();
    const std::string there = "127.0.0.1" + here.substr(here.find(':'));
    const std::string site = "https://" + here;
    const std::string elsewhere = "https://" + there;
    desktop::ChartView view{fake.host, {.site = QString::fromStdString(here)}};

private:
    void answer(const httplib::Request& request, httplib::Response& response) {
        const std::scoped_lock lock(mutex_);
        requests_.push_back(request.get_header_value("Host") + request.target);
        if (request.path == "/page") {
            response.set_content(
                "<!doctype html><meta charset=utf-8><style>a,button{position:fixed;"
                "inset:0;display:block}</style>" +
                    body_ +
                    "<script>requestAnimationFrame(() => "
                    "requestAnimationFrame(() => fetch('/painted')))</script>",
                "text/html");
        } else if (request.path == "/away") {
            response.set_redirect(elsewhere + "/lost");
        } else if (request.path == "/file") {
            response.set_header("Content-Disposition", "attachment; filename=file.bin");
            response.set_content("bytes", "application/octet-stream");
        } else if (request.path == "/secret") {
            response.status = 401;
            response.set_header("WWW-Authenticate", "Basic realm=\"x\"");
        } else {
            response.set_content("<!doctype html>there", "text/html");
        }
    }
};

TEST_F(ChartPage, AClickedLinkStaysOnTheSiteOrOpensInTheBrowser) {
    const struct {
        const char* what;
        std::string body;
        Opened opened;
        /// The path of the page that is shown afterwards.
        const char* path = "/page";
    } rows[] = {
        {"the same site", "<a href='/target'>x", {}, "/target"},
        {"another site", "<a href='" + elsewhere + "/x?a=b%20c'>x", {elsewhere + "/x?a=b%20c"}},
        {"the same site, not secure",
         "<a href='http://" + here + "/x'>x",
         {"http://" + here + "/x"}},
        {"mail", "<a href='mailto:a@example.org'>x", {"mailto:a@example.org"}},
        {"a file", "<a href='file:///etc/hostname'>x", {}},
        {"some other program", "<a href='tel:123'>x", {}},
        {"a new window", "<a target=_blank href='/x'>x", {site + "/x"}},
        {"a new window with a script's text", "<a target=_blank href='javascript:1'>x", {}},
        {"two windows by one click",
         "<a href='#' onclick='window.open(`/x`); window.open(`/y`)'>x",
         {site + "/x"}},
        {"a redirect from here to another site", "<a href='/away'>x", {}},
        {"a form for another site",
         "<form action='" + elsewhere + "/x'><button>x</button></form>",
         {}},
        {"a download", "<a download href='/file'>x", {}},
        {"a download that shows itself only in the reply", "<a href='/file'>x", {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        fake.workspace.opened.clear();
        showLinked(row.body);
        click();
        EXPECT_TRUE(wait([&] { return wasAsked(here + "/stayed") || shown().path() != "/page"; }));
        EXPECT_EQ(fake.workspace.opened, row.opened);
        EXPECT_EQ(shown().path().toStdString(), row.path);
        EXPECT_EQ(askedFor(there), "");
    }
    EXPECT_EQ(QApplication::topLevelWidgets().size(), 1);
    EXPECT_EQ(leftAtHome(), std::set<std::string>());
}

TEST_F(ChartPage, WithoutAClickNothingLeavesThePage) {
    const support::WeatherServer notSecure([](const auto&, auto&) {}, support::WeatherServer::http);
    // A page that navigates before it has loaded stops loading, even if that is refused.
    const auto later = [](const std::string& script) {
        return "<script>setTimeout(() => {" + script + "}, 100)</script>";
    };
    const std::string rows[] = {
        later("location = '" + elsewhere + "/x'"),
        later("window.open('/x'); window.open('" + elsewhere + "/x')"),
        "<a href='" + elsewhere + "/x'>x</a>" + later("document.links[0].click()"),
        "<a target=_blank href='/x'>x</a>" + later("document.links[0].click()"),
        "<meta http-equiv=refresh content='0;url=" + elsewhere + "/x'>",
        "<iframe src='" + elsewhere + "/x'></iframe>",
        "<iframe src='/away'></iframe>",
        "<iframe src='file:///etc/hostname'></iframe>",
        "<img src='http://" + notSecure.authority() + "/x'>",
    };
    for (const std::string& body : rows) {
        SCOPED_TRACE(body);
        show(body + "<script>setTimeout(() => fetch('/stayed'), 500)</script>");
        EXPECT_TRUE(wait([&] { return wasAsked(here + "/stayed"); }));
        EXPECT_EQ(fake.workspace.opened, Opened());
        EXPECT_EQ(shown().path().toStdString(), "/page");
        EXPECT_EQ(askedFor(there), "");
    }
    EXPECT_TRUE(notSecure.targets().empty());
    EXPECT_EQ(leftAtHome(), std::set<std::string>());

    show("<iframe src='/inside'></iframe><img src='" + elsewhere + "/tile'>");
    EXPECT_TRUE(wait([this] { return wasAsked(here + "/inside") && wasAsked(there + "/tile"); }));

    load("/away");
    view.loadRequest({"http://" + notSecure.authority() + "/x"});
    view.loadRequest({elsewhere + "/x"});
    view.loadRequest({"file:///etc/hostname"});
    view.loadRequest({"no address"});
    load("/last");
    EXPECT_TRUE(wait([this] { return shown().path() == "/last"; }));
    EXPECT_EQ(askedFor(there + "/x"), "");
    EXPECT_TRUE(notSecure.targets().empty());
}

TEST_F(ChartPage, IsGrantedNothing) {
    show(page("asks.html"));
    click();
    EXPECT_TRUE(wait([this] { return !askedFor(here + "/said").empty(); }));
    EXPECT_EQ(askedFor(here + "/said"),
              here + "/said?place=1&notice=denied&camera=NotAllowedError&sound=NotAllowedError"
                     "&screen=NotAllowedError&clip=NotAllowedError&full=TypeError"
                     "&lock=SecurityError&file=AbortError&alert=undefined&confirm=false"
                     "&prompt=null&secret=TypeError");
    EXPECT_EQ(QApplication::topLevelWidgets().size(), 1);
}

TEST_F(ChartPage, ForgetsEverything) {
    show(page("keeps.html"));
    EXPECT_TRUE(wait([this] { return wasAsked(here + "/had?,"); }));
    show(page("keeps.html"));
    EXPECT_TRUE(wait([this] { return wasAsked(here + "/had?a=b,kept"); })) << "while it is there";

    forgetRequests();
    desktop::ChartView another(fake.host, {.site = QString::fromStdString(here)});
    another.setHidden(false);
    another.loadRequest({site + "/page"});
    EXPECT_TRUE(wait([this] { return !askedFor(here + "/had").empty(); }));
    EXPECT_EQ(askedFor(here + "/had"), here + "/had?,");
    EXPECT_EQ(leftAtHome(), std::set<std::string>());
}

TEST_F(ChartPage, GoesOnWhenAPageHoldsTheUserBackOrItsProcessDies) {
    showLinked("<script>addEventListener('beforeunload', event => { event.preventDefault(); "
               "event.returnValue = 'stay' })</script>text");
    click();
    EXPECT_TRUE(wait([this] { return wasAsked(here + "/stayed"); }));
    load("/next");
    EXPECT_TRUE(wait([this] { return shown().path() == "/next"; }));

    auto* page = made("QWebEnginePage");
    const auto process = [page] { return page->property("renderProcessPid").toInt(); };
    const int before = process();
    ASSERT_GT(before, 0);
    ASSERT_EQ(::kill(before, SIGKILL), 0);
    EXPECT_TRUE(wait([&] { return process() != before; }));
    showLinked("<a href='/target'>x");
    click();
    EXPECT_TRUE(wait([this] { return shown().path() == "/target"; }));
    EXPECT_EQ(fake.log.lines(), Opened());
}

TEST_F(ChartPage, ADoubleClickOpensTheLargerChart) {
    desktop::UserEvents events;
    platform::Host host = fake.hostWith(fake.urlSessions, events);
    SCWebView chart(host, view);
    chart.awakeFromNib();
    chart.feedingURLString = "https://charts.example/larger";
    const auto interval = static_cast<quint64>(QApplication::doubleClickInterval());

    show("chart");
    QTest::mouseMove(input(), {100, 100});
    release(1'000'000);
    release(1'000'000 + 2 * interval);
    EXPECT_EQ(fake.workspace.opened, Opened());
    release(1'000'000 + 2 * interval + interval / 2);
    EXPECT_EQ(fake.workspace.opened, Opened{"https://charts.example/larger"});
    EXPECT_EQ(shown().path(), "/page");
}

} // namespace
