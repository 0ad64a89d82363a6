// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/chart/ChartView.h"
#include "tests/support/FakeHost.h"
#include "tests/support/WeatherServer.h"

#include <QEventLoop>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

namespace support {

/// A chart view as the program makes it, with a server on loopback as its site. Like the program,
/// the tests do not link the browser engine: they look at the page through the toolkit's
/// properties.
class ChartStage : public ::testing::Test {
    mutable std::mutex mutex_;
    std::vector<std::string> requests_;
    std::string body_;

protected:
    ChartStage() {
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
        QTimer::singleShot(patience, &loop, [&loop] { loop.exit(1); });
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

    FakeHost fake;
    WeatherServer server{
        [this](const auto& request, auto& response) { answer(request, response); }};
    /// The same server is reached under two names, `here` and `there`.
    const std::string port = server.authority().substr(server.authority().find(':'));
    const std::string here = server.authority();
    const std::string there = "127.0.0.1" + port;
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
            response.set_redirect("https://127.0.0.1" + request.get_param_value("port") + "/lost");
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

} // namespace support
