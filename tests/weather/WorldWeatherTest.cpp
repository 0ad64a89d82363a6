// SPDX-License-Identifier: MIT
#include "weather/WorldWeather.h"
#include "platform/net/URLSession.h"
#include "tests/support/FakeHost.h"
#include "tests/support/Gzip.h"
#include "tests/support/Reports.h"
#include "tests/support/WeatherServer.h"

#include <gmock/gmock.h>

#include <atomic>
#include <optional>

namespace weather {
namespace {

using namespace std::chrono_literals;

constexpr const char* metarsPath = "/data/cache/metars.cache.xml.gz";
constexpr const char* tafsPath = "/data/cache/tafs.cache.xml.gz";

/// The world's weather from a real server, on a clock that the test sets.
class WorldWeatherTest : public testing::Test {
protected:
    WorldWeatherTest() {
        fake.userDefaults.setObject(server.authority(), "dataserverhost");
        start();
    }
    ~WorldWeatherTest() override { stop(); }

    void start() {
        auto options = server.options();
        options.date = [this] { return fake.clock.now(); };
        sessions_.emplace(fake.notificationCenter, options);
        host_.emplace(fake.hostWith(*sessions_, fake.events));
        store.emplace(fake.notificationCenter, fake.clock, fake.log,
                      fake.folder / "reports.sqlite");
        store->flush();
        world.emplace(*host_, *store);
    }
    void stop() {
        server.gates.openAll();
        sessions_->stop();
        world.reset();
        store.reset();
    }
    void pass(std::chrono::minutes time) {
        fake.clock.time = fake.clock.now() + time;
        fake.timers.fire();
    }
    /// Waits for the requests made so far, and returns those since the last call.
    std::vector<std::string> asked() {
        support::waitUntil("the end of every request", [this] {
            fake.mainThread.run();
            return !world->arrived();
        });
        std::vector<std::string> all = server.targets();
        all.erase(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(known_));
        known_ += all.size();
        return all;
    }
    /// Waits until the status has these words.
    void awaitStatus(const char* words) {
        support::waitUntil(words, [&] {
            fake.mainThread.run();
            return world->status().find(words) != std::string::npos;
        });
    }

    support::FakeHost fake;
    std::atomic<const char*> mode = "";
    std::atomic<int> notModified = 0;
    support::WeatherServer server{[this](const httplib::Request& request,
                                         httplib::Response& response) {
        const std::string_view how = mode.load();
        if (how == "slow") {
            EXPECT_TRUE(server.gates.pass("slow"));
        }
        if (how == "404") {
            response.status = 404;
            return;
        }
        if (request.get_header_value("If-None-Match") == "\"w1\"") {
            ++notModified;
            response.status = 304;
            return;
        }
        const bool isMetar = request.path == metarsPath;
        std::string file =
            support::gzip(isMetar ? support::metarReply("KAAA") : support::tafReply("KAAA", ""));
        if (how == "cut") {
            file.resize(file.size() - 12);
        } else if (how == "bomb") {
            file = support::gzip(support::metarReply("KAAA") +
                                 std::string(WorldWeather::mostBytes, ' '));
        } else if (how == "html") {
            file = "<html><p>Busy</html>";
        } else if (how == "empty") {
            file = support::gzip("<response><data num_results=\"0\"/></response>");
        }
        if (isMetar) {
            response.set_header("ETag", how.empty() ? "\"w1\"" : "\"other\"");
        }
        response.set_content(file, "application/gzip");
        response.status = how == "429" ? 429 : 200;
    }};
    std::optional<reports::Store> store;
    std::optional<WorldWeather> world;

private:
    std::optional<platform::CurlURLSessions> sessions_;
    std::optional<platform::Host> host_;
    std::size_t known_ = 0;
};

TEST_F(WorldWeatherTest, IsAskedForOnlyWhereItIsWantedAndSeenAndNoLongerFresh) {
    const std::vector<std::string> none;
    EXPECT_FALSE(world->isOn());
    EXPECT_EQ(world->status(), "");
    world->setSeen(true);
    EXPECT_EQ(asked(), none);
    world->setSeen(false);
    world->setOn(true);
    EXPECT_EQ(world->status(), "The weather of the world has not been fetched yet.");
    world->setSeen(true);
    EXPECT_THAT(asked(), testing::UnorderedElementsAre(metarsPath, tafsPath));
    awaitStatus("Weather of the world, as of 00:00 UTC.");
    EXPECT_TRUE(store->reportsOf("KAAA").metar);
    EXPECT_EQ(world->renewed(reports::Kind::metar), fake.clock.now());
    support::waitUntil("the TAFs", [&] { return store->reportsOf("KAAA").taf != nullptr; });

    pass(4min);
    EXPECT_EQ(asked(), none);
    pass(1min);
    EXPECT_EQ(asked(), std::vector<std::string>{metarsPath});
    awaitStatus("as of 00:05 UTC");
    world->setSeen(false);
    pass(60min);
    EXPECT_EQ(asked(), none);

    // Neither the setting nor what the server said of its file is lost with the run.
    stop();
    fake.clock.time = fake.clock.now() - 58min;
    start();
    EXPECT_TRUE(world->isOn());
    world->setSeen(true);
    EXPECT_EQ(asked(), none) << "what is kept is fresh";
    const int before = notModified;
    pass(5min);
    EXPECT_EQ(asked(), std::vector<std::string>{metarsPath});
    EXPECT_EQ(notModified, before + 1);
    awaitStatus("as of 00:12 UTC");
    EXPECT_TRUE(store->reportsOf("KAAA").metar);

    world->setSeen(false);
    world->setFollowed(true);
    pass(5min);
    EXPECT_THAT(asked(), testing::UnorderedElementsAre(metarsPath, tafsPath));
    world->setFollowed(false);
    pass(60min);
    EXPECT_EQ(asked(), none);
    world->setSeen(true);
    EXPECT_THAT(asked(), testing::UnorderedElementsAre(metarsPath, tafsPath));

    // The clock is set back.
    pass(-5min);
    EXPECT_EQ(asked(), none);
    int posted = 0;
    const auto token = fake.notificationCenter.addObserver(WorldWeather::didChange,
                                                           [&](const auto&) { ++posted; });
    pass(-1min);
    EXPECT_EQ(asked(), std::vector<std::string>{metarsPath});
    EXPECT_EQ(posted, 3) << "begun, answered, ended";
    world->setOn(false);
    EXPECT_EQ(posted, 4);
    pass(60min);
    EXPECT_EQ(asked(), none);
    EXPECT_EQ(world->status(), "");
}

TEST_F(WorldWeatherTest, AFailureIsToldAndKeepsWhatThereIs) {
    mode = "404";
    world->setOn(true);
    world->setSeen(true);
    awaitStatus(("No weather of the world: " + server.authority() + " refused at 00:00 UTC (404).")
                    .c_str());
    mode = "";
    pass(5min);
    awaitStatus("as of 00:05 UTC");
    const auto renewed = world->renewed(reports::Kind::metar);
    // The next is not to be answered from the cache.
    stop();
    const struct {
        const char* mode;
        const char* status;
    } cases[] = {
        {"429", "refused at 00:10 UTC (429)"},        {"404", "refused at 00:15 UTC (404)"},
        {"cut", "sent something else at 00:20 UTC"},  {"bomb", "sent something else at 00:25 UTC"},
        {"html", "sent something else at 00:30 UTC"}, {"empty", "sent something else at 00:35 UTC"},
    };
    for (const auto& [how, status] : cases) {
        SCOPED_TRACE(how);
        mode = how;
        start();
        // A tag would be answered with "not modified".
        reports::Batch forgotten;
        auto answer = *store->reportsOf("").metarAnswer;
        answer.tag.clear();
        forgotten.answers.push_back({"", reports::Kind::metar, answer});
        store->take(forgotten);
        world->setSeen(true);
        pass(5min);
        awaitStatus(status);
        EXPECT_EQ(world->status(), "Weather of the world, not renewed since 00:05 UTC: " +
                                       server.authority() + " " + status + ".");
        EXPECT_EQ(world->renewed(reports::Kind::metar), renewed);
        EXPECT_TRUE(store->reportsOf("KAAA").metar);
        EXPECT_EQ(store->reportsOf("").metarAnswer->tag, "");
        (void)asked();
        pass(1min);
        EXPECT_TRUE(asked().empty()) << "asked again at once";
        fake.clock.time = fake.clock.now() - 1min;
        stop();
    }
    mode = "";
    start();
}

TEST_F(WorldWeatherTest, CanBeSwitchedOffWhileItLoads) {
    mode = "slow";
    world->setOn(true);
    world->setSeen(true);
    EXPECT_EQ(world->arrived(), 0U);
    ASSERT_TRUE(server.waitForTargets(2));
    world->setOn(false);
    EXPECT_EQ(world->status(), "");
    world->setOn(true);
    EXPECT_EQ(world->status(), "Fetching the weather of the world, 0.0 MB so far…");
    EXPECT_EQ(server.targets().size(), 2U) << "asked twice at once";
    server.gates.open("slow");
    awaitStatus("as of 00:00 UTC");
    EXPECT_FALSE(asked().empty());
}

} // namespace
} // namespace weather
