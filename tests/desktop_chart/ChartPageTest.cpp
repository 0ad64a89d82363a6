// SPDX-License-Identifier: MIT
#include "browser/SCWebView.h"
#include "desktop/host/UserEvents.h"
#include "tests/desktop_chart/ChartStage.h"

#include <QApplication>
#include <QMouseEvent>

#include <csignal>
#include <fstream>
#include <set>

namespace {

using Opened = std::vector<std::string>;

class ChartPage : public support::ChartStage {
protected:
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
        {"a redirect from here to another site", "<a href='/away?port=" + port + "'>x", {}},
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
        "<iframe src='/away?port=" + port + "'></iframe>",
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

    load("/away?port=" + port);
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
