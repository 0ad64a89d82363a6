// SPDX-License-Identifier: MIT
#include "catalogue/Packages.h"
#include "platform/text/Text.h"
#include "tests/support/Gzip.h"
#include "tests/support/Reports.h"
#include "tests/support/RunningProgram.h"
#include "tests/support/WeatherServer.h"
#include "tests/support/WidgetTests.h"

#include <QLineEdit>
#include <QPixmapCache>
#include <QProcess>
#include <QPushButton>
#include <QTableView>
#include <fmt/format.h>
#include <malloc.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>

namespace {

using namespace std::chrono_literals;

constexpr int parts = 10;

/// In mebibytes, after the first part: of memory in use, and of what the allocator holds besides.
/// The toolkit never forgets the names of its pictures of controls, which differ with each palette
/// and size: 5 of these in a day.
constexpr double mostLeft = 8;
constexpr double mostScattered = 12;

/// In milliseconds. A build that is not optimised says nothing about the program that users run.
#ifdef __OPTIMIZE__
constexpr double longestHold = 50;
#else
constexpr double longestHold = std::numeric_limits<double>::infinity();
#endif

double processorMilliseconds() {
    timespec used{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}

/// The longest that anything has held the main thread, in milliseconds of the processor, which do
/// not depend on what else the machine does. What is watched within something else counts as part
/// of that.
class Watchdog {
public:
    template <typename Work>
    void watch(const std::string& what, Work work) {
        const bool isPart = std::exchange(isWatching_, true);
        const double begin = processorMilliseconds();
        work();
        if (!isPart) {
            double& longest = worst[what];
            longest = std::max(longest, processorMilliseconds() - begin);
            isWatching_ = false;
        }
    }

    std::map<std::string, double> worst;

private:
    bool isWatching_ = false;
};

Watchdog watchdog;

/// Times every event that the toolkit delivers.
class WatchedApplication final : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override {
        bool isHandled = false;
        watchdog.watch(fmt::format("event {} for {}", static_cast<int>(event->type()),
                                   receiver->metaObject()->className()),
                       [&] { isHandled = QApplication::notify(receiver, event); });
        return isHandled;
    }
};

/// What the process holds of what it might leak.
struct Held {
    /// In mebibytes: of the whole process, and of what was allocated and not freed.
    double resident = 0;
    double inUse = 0;
    std::ptrdiff_t threads = 0;
    std::ptrdiff_t files = 0;

    static Held now() {
        const auto count = [](const char* folder) {
            return std::distance(std::filesystem::directory_iterator(folder), {});
        };
        std::ifstream sizes("/proc/self/statm");
        double pages = 0;
        double resident = 0;
        sizes >> pages >> resident;
        constexpr double mebibyte = 1 << 20;
        const auto heap = ::mallinfo2();
        return {resident * static_cast<double>(::sysconf(_SC_PAGESIZE)) / mebibyte,
                static_cast<double>(heap.uordblks + heap.hblkhd) / mebibyte,
                count("/proc/self/task"), count("/proc/self/fd")};
    }
};

/// The file of every station's report: what the program keeps of each is there from the start.
std::string world(const std::function<std::string(const std::string&)>& reply) {
    std::vector<std::string> replies;
    const auto catalogue = catalogue::readPackage(NOSIG_BINARY_DIR "/share/nosig/Stations.STNPKG");
    for (const auto& station : *catalogue->stations) {
        replies.push_back(reply(std::string(platform::trimmed(station->ICAO.value_or("")))));
    }
    return support::gzip(support::joined(replies));
}

/// The data server. Says its host and port, and the file of the authority that vouches for it; ends
/// with its input.
int serve() {
    const auto taf = [](const std::string& station) { return support::tafReply(station, ""); };
    const std::string metars = world(support::metarReply);
    const std::string tafs = world(taf);
    std::atomic<unsigned> sent = 0;
    const support::WeatherServer server([&](const httplib::Request& request,
                                            httplib::Response& response) {
        const std::string station = request.get_param_value("stationString");
        if (request.target.find("/data/cache/") != std::string::npos) {
            const bool isMetars = request.target.find("metars") != std::string::npos;
            response.set_header("ETag", fmt::format("\"{}\"", sent++));
            response.set_content(isMetars ? metars : tafs, "application/gzip");
        } else {
            const bool isMetar = request.get_param_value("dataSource") == "metars";
            response.set_content(isMetar ? support::metarReply(station) : taf(station), "text/xml");
        }
    });
    fmt::print("{} {}", server.authority(), server.options().certificateFile);
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    return 0;
}

/// The program with its real windows, used by somebody in a hurry, and a real server in a process
/// of its own, so that what that holds is not counted.
class DayOfUse : public ::testing::Test, protected support::RunningProgram {
protected:
    DayOfUse() {
        std::filesystem::copy_file(NOSIG_BINARY_DIR "/share/nosig/Stations.STNPKG",
                                   fake.folder / "resources/Stations.STNPKG");
        server_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        server_.start(QCoreApplication::applicationFilePath(), {QStringLiteral("serve")});
        server_.waitForReadyRead(60'000);
        const QList<QByteArray> said = server_.readAllStandardOutput().split(' ');
        if (said.size() != 2) {
            throw std::runtime_error("no server");
        }
        fake.userDefaults.setObject(said[0].toStdString(), "dataserverhost");
        fake.userDefaults.setObject(platform::Number(1), "worldweather");
        fake.userDefaults.setObject(platform::Number(1), "displayfavweather");
        platform::URLSessionOptions options;
        options.certificateFile = said[1].toStdString();
        options.date = [this] { return fake.clock.now(); };
        sessions_.emplace(fake.notificationCenter, options);
        start(*sessions_);
    }
    ~DayOfUse() override {
        sessions_->stop();
        stop();
        server_.closeWriteChannel();
        server_.waitForFinished();
    }

    void breathe() {
        watchdog.watch("work for the main thread", [this] { fake.mainThread.run(); });
        QCoreApplication::processEvents();
    }
    /// Waits until nothing is under way, and every report that is due has been read and written.
    void settle() {
        using weather::WorldWeather;
        const auto isRead = [this](const auto& answer, std::chrono::minutes interval) {
            return answer && fake.clock.now() - answer->asked < interval;
        };
        reports::StationReports all;
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                breathe();
                all = reports().reportsOf(reports::allStations);
                return sessions_->openRequests() == 0 && fake.mainThread.queued() == 0 &&
                       isRead(all.metarAnswer, WorldWeather::metarInterval) &&
                       isRead(all.tafAnswer, WorldWeather::tafInterval);
            },
            60'000));
        for (const auto& answer : {all.metarAnswer, all.tafAnswer}) {
            EXPECT_TRUE(answer && answer->ending == reports::Answer::Ending::whole);
        }
        reports().flush();
    }
    void click(const char* button) {
        watchdog.watch(button, [&] { child<QPushButton>(button).click(); });
    }
    /// Settles in the same state whatever was done before: the picture of a window is as large as
    /// it, and the toolkit's pictures of controls fill their cache sooner or later.
    void rest() {
        stations().resize(1000, 700);
        settle();
        QPixmapCache::clear();
    }
    int below(int end) { return std::uniform_int_distribution(0, end - 1)(random_); }

    void select() {
        auto& table = child<QTableView>("table");
        if (const int rows = table.model()->rowCount(); rows > 0) {
            watchdog.watch("selecting", [&] { table.selectRow(below(rows)); });
            breathe();
        }
    }
    void search() {
        auto& field = child<QLineEdit>("sf");
        for (const char* button : {"searchICAO", "searchName", "searchState"}) {
            if (below(3) == 0) {
                click(button);
            }
        }
        for (int letters = 1 + below(4); letters > 0; --letters) {
            QTest::keyClick(&field, static_cast<char>('a' + below(26)));
            breathe();
        }
        select();
        watchdog.watch("clearing the search", [&] { field.clear(); });
        breathe();
    }
    void openList() {
        fake.panels.answers.emplace_back(
            platform::URL::file(NOSIG_SOURCE_DIR "/resources/catalogue/stations.txt"));
        click("parserIt");
        EXPECT_TRUE(QTest::qWaitFor(
            [this] {
                breathe();
                return child<QPushButton>("parserIt").isEnabled();
            },
            60'000));
    }
    void changeLooks() {
        QPalette palette = QApplication::palette();
        palette.setColor(QPalette::Window, below(2) == 0 ? Qt::black : Qt::white);
        palette.setColor(QPalette::WindowText, below(2) == 0 ? Qt::white : Qt::black);
        watchdog.watch("another palette", [&] { QApplication::setPalette(palette); });
        watchdog.watch("another size",
                       [&] { stations().resize(700 + below(900), 450 + below(600)); });
        breathe();
    }
    void passMinute() {
        // Nothing takes that long.
        settle();
        fake.clock.time = fake.clock.now() + 1min;
        watchdog.watch("timers", [this] { fake.timers.fire(); });
        breathe();
    }

private:
    QProcess server_;
    std::mt19937 random_{1}; // NOLINT(*-msc51-cpp): the same day in every run
    std::optional<platform::CurlURLSessions> sessions_;
};

TEST_F(DayOfUse, LeavesNothingBehindAndNeverHoldsTheWindowLong) {
    const std::pair<int, std::function<void()>> work[] = {
        {5000, [this] { select(); }},        {500, [this] { search(); }},
        {50, [this] { openList(); }},        {1000, [this] { changeLooks(); }},
        {24 * 60, [this] { passMinute(); }},
    };
    const char* given = std::getenv("NOSIG_SHARE_OF_A_DAY");
    const int share = given != nullptr ? std::max(1, std::atoi(given)) : 1;
    std::vector<Held> held;
    for (int part = 0; part < parts; ++part) {
        for (const auto& [times, act] : work) {
            for (int i = 0; i < std::max(1, times / parts / share); ++i) {
                act();
            }
        }
        rest();
        const Held& now = held.emplace_back(Held::now());
        fmt::print("part {}: {:.1f} MiB, {:.1f} of them in use, {} threads, {} files\n", part,
                   now.resident, now.inUse, now.threads, now.files);
        std::fflush(stdout);
    }
    const Held& first = held.front();
    const Held& last = held.back();
    EXPECT_LE(last.inUse, first.inUse + mostLeft);
    EXPECT_LE(last.resident, first.resident + mostLeft + mostScattered);
    EXPECT_LE(last.threads, first.threads);
    EXPECT_LE(last.files, first.files + 2);
    for (const auto& [what, milliseconds] : watchdog.worst) {
        if (milliseconds > 10) {
            fmt::print("{:6.1f} ms  {}\n", milliseconds, what);
        }
        EXPECT_LE(milliseconds, longestHold) << what;
    }
}

} // namespace

int main(int argc, char* argv[]) {
    return argc > 1 && std::string_view(argv[1]) == "serve"
               ? serve()
               : support::runWidgetTests<WatchedApplication>(argc, argv);
}
