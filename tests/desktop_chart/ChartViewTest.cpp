// SPDX-License-Identifier: MIT
#include "desktop/chart/ChartView.h"
#include "browser/SCWebView.h"
#include "tests/support/RunningProgram.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QTest>
#include <gtest/gtest.h>

#include <fstream>

namespace {

/// Whether any part of the browser engine is loaded in this process.
bool isEngineLoaded() {
    std::ifstream maps("/proc/self/maps");
    const std::string text{std::istreambuf_iterator<char>(maps), {}};
    EXPECT_NE(text.find("libQt6Widgets"), std::string::npos);
    return text.find("WebEngine") != std::string::npos ||
           text.find("nosig_chart") != std::string::npos;
}

TEST(ChartView, TheWindowLoadsTheEngineWhenTheChartIsFirstShown) {
    support::RunningProgram program;
    program.fake.userDefaults.setObject(platform::Number(std::int64_t{4}), "curmaptype");
    program.start();
    const auto child = [](const char* name) {
        return &support::RunningProgram::child<QWidget>(name);
    };
    const auto choose = [&](const char* button) {
        QTest::mouseClick(child(button), Qt::LeftButton);
    };
    // The last run ended with the chart; a map is shown in its place.
    EXPECT_TRUE(static_cast<QAbstractButton*>(child("mapHybrid"))->isChecked());
    EXPECT_TRUE(child("mapV")->isVisible());
    choose("mapStandard");
    const auto openLarger = [&] {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_L, Qt::ControlModifier);
    };
    openLarger();
    EXPECT_TRUE(program.fake.workspace.opened.empty());
    EXPECT_FALSE(isEngineLoaded());

    const QRect place = child("mapV")->geometry();
    auto timers = program.fake.timers.runningIntervals();
    choose("mapChart");
    EXPECT_TRUE(isEngineLoaded());
    // The timer of the blinking hint has joined the others.
    using namespace std::chrono_literals;
    timers.push_back(1300ms);
    EXPECT_EQ(program.fake.timers.runningIntervals(), timers);
    EXPECT_TRUE(child("secView")->isVisible());
    EXPECT_FALSE(child("mapV")->isVisible());
    EXPECT_TRUE(child("dLcikWords")->isVisible());
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return child("secView")->geometry() ==
               place.adjusted(0, 0, 0, -child("dLcikWords")->height());
    }));
    // In the tab order the chart follows its button, and its shortcut opens the larger chart.
    QApplication::processEvents();
    QTest::keyClick(child("mapChart"), Qt::Key_Tab);
    EXPECT_TRUE(child("secView")->isAncestorOf(QApplication::focusWidget()))
        << QApplication::focusWidget()->objectName().toStdString();
    openLarger();
    EXPECT_EQ(program.fake.workspace.opened.size(), 1U);
    choose("mapChart");
    EXPECT_EQ(program.fake.timers.runningIntervals(), timers) << "chosen again";
    choose("mapSatellite");
    timers.pop_back();
    EXPECT_EQ(program.fake.timers.runningIntervals(), timers);
    openLarger();
    EXPECT_EQ(program.fake.workspace.opened.size(), 1U);
    EXPECT_TRUE(child("mapV")->isVisible());
    EXPECT_FALSE(child("secView")->isVisible());
    EXPECT_FALSE(child("dLcikWords")->isVisible());
    EXPECT_EQ(program.fake.log.lines(), std::vector<std::string>());
}

/// Expects a chart whose module cannot be used to show a notice instead, and a double click on that
/// to open the larger chart all the same.
void expectNotice(const std::string& module) {
    support::FakeHost fake;
    desktop::ChartView view(fake.host, {.module = QString::fromStdString(module)});
    view.loadRequest({"https://charts.example/"});
    EXPECT_TRUE(view.findChildren<QLabel*>().empty());
    for (const bool hidden : {false, true, false}) {
        view.setHidden(hidden);
    }
    view.loadRequest({"https://charts.example/"});
    auto* notice = view.findChild<QLabel*>();
    ASSERT_NE(notice, nullptr);
    EXPECT_TRUE(notice->isVisible());
    EXPECT_EQ(fake.log.lines().size(), 1U);

    SCWebView chart(fake.host, view);
    chart.awakeFromNib();
    chart.feedingURLString = "https://charts.example/larger";
    for (const double seconds : {10.0, 10.2}) {
        fake.events.event = {platform::Events::leftMouseUp, seconds};
        QTest::mouseClick(notice, Qt::LeftButton);
    }
    EXPECT_EQ(fake.workspace.opened.size(), 1U);
}

TEST(ChartView, ShowsANoticeIfTheModuleCannotBeLoaded) {
    const support::TemporaryFolder folder;
    expectNotice((folder / "none.so").string());
    expectNotice(folder.write("broken.so", "no library").string());
}

TEST(ChartView, ShowsANoticeIfTheEngineCannotRunInItsSandbox) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "the sandbox is certain to fail only for root";
    }
    qunsetenv("QTWEBENGINE_DISABLE_SANDBOX");
    expectNotice(desktop::ChartSetup::programsModule().toStdString());
    qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
}

} // namespace
