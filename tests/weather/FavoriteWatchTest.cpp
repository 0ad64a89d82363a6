// SPDX-License-Identifier: MIT
#include "weather/FavoriteWatch.h"
#include "tests/support/FakeHost.h"
#include "tests/support/Stations.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

namespace weather {
namespace {

using namespace std::chrono_literals;
using reports::Category;
using Ending = reports::Answer::Ending;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::SizeIs;

class FavoriteWatchTest : public testing::Test {
protected:
    FavoriteWatchTest() { start(); }

    void start() {
        watch.emplace(fake.host, store, world,
                      FavoriteWatch::Sources{
                          .favorites = [this] { return favorites; },
                          .fetchesFavorites = [this] { return fetchesFavorites; },
                          .chosen = [this](const std::string& one) { chosen.push_back(one); }});
    }
    void pass(std::chrono::minutes time) { fake.clock.time = fake.clock.now() + time; }
    /// A METAR of now that nobody asked for by the station's name.
    void hear(const char* station, Category category, std::chrono::minutes age = 5min,
              reports::Revision revision = reports::Revision::none) {
        auto metar = std::make_shared<reports::Metar>();
        metar->station = station;
        metar->observed = fake.clock.now() - age;
        metar->category = category;
        metar->revision = revision;
        metar->conditions.visibility = {2, false};
        metar->conditions.verticalVisibility = 800;
        store.take({.metars = {{metar, false}}, .tafs = {}, .answers = {}});
    }
    void end(const char* station, Ending ending) {
        const reports::Answer answer{fake.clock.now(), ending};
        store.take(
            {.metars = {}, .tafs = {}, .answers = {{station, reports::Kind::metar, answer}}});
    }
    /// A reply for one station, now: of a METAR observed `age` ago, or of none.
    void reply(const char* station, std::optional<Category> category,
               std::chrono::minutes age = 5min,
               reports::Revision revision = reports::Revision::none) {
        if (category) {
            hear(station, *category, age, revision);
        }
        end(station, category ? Ending::whole : Ending::nothing);
    }
    /// What has been told since the last call: each notice's lines.
    std::vector<std::string> told() {
        for (int times = 0; times < 2; ++times) {
            fake.mainThread.run();
            fake.timers.fire();
        }
        std::vector<std::string> lines;
        for (const auto& notice : fake.notices.shown) {
            title = notice.title;
            lines.insert(lines.end(), notice.lines.begin(), notice.lines.end());
        }
        fake.notices.shown.clear();
        return lines;
    }
    /// The minutes at which something is told.
    std::vector<int> toldInAnHour() {
        std::vector<int> minutes;
        for (int minute = 0; minute < 60; ++minute) {
            if (!told().empty()) {
                minutes.push_back(minute);
            }
            pass(1min);
        }
        return minutes;
    }

    support::FakeHost fake;
    reports::Store store{fake.notificationCenter, fake.clock, fake.log, {}};
    WorldWeather world{fake.host, store};
    StationArray favorites = *makeCollection({{"KAAA", "ALPHA & SONS"}, {"KBBB"}})->stations;
    bool fetchesFavorites = true;
    std::vector<std::string> chosen;
    std::string title;
    std::optional<FavoriteWatch> watch;
};

TEST_F(FavoriteWatchTest, TellsEachWorseCategoryOnce) {
    favorites.push_back(makeStation({"KAAA", "THE SAME AGAIN"}));
    watch->setOn(true);
    constexpr auto COR = reports::Revision::corrected;
    const struct {
        const char* name;
        std::chrono::minutes later;
        Category category;
        const char* change;
        reports::Revision revision = reports::Revision::none;
    } reports[] = {
        {"the first of the run", 0min, Category::IFR, nullptr},
        {"better", 60min, Category::VFR, nullptr},
        {"worse", 60min, Category::IFR,
         "KAAA ALPHA & SONS: IFR, was VFR; visibility 2 SM, ceiling 800 ft; "},
        {"corrected for the better", 0min, Category::MVFR, nullptr, COR},
        {"and back again", 0min, Category::IFR, nullptr, COR},
        {"corrected for the worse", 0min, Category::LIFR, ": LIFR, was IFR", COR},
        {"unknown", 60min, Category::unknown, nullptr},
        {"the last known again", 60min, Category::LIFR, nullptr},
        {"better again", 60min, Category::VFR, nullptr},
        {"unknown", 60min, Category::unknown, nullptr},
        {"worse than the last known", 60min, Category::MVFR, ": MVFR, was VFR"},
    };
    for (const auto& one : reports) {
        SCOPED_TRACE(one.name);
        pass(one.later);
        for (int times = 0; times < 2; ++times) {
            reply("KAAA", one.category, 5min, one.revision);
            const auto lines = told();
            ASSERT_EQ(lines.size(), one.change && times == 0 ? 1U : 0U);
            if (!lines.empty()) {
                EXPECT_THAT(lines.front(), HasSubstr(one.change));
            }
        }
    }
}

TEST_F(FavoriteWatchTest, TellsOnceThatAFavoriteHasFallenSilent) {
    const auto timers = fake.timers.runningIntervals();
    watch->setOn(true);
    reply("KBBB", {});
    reply("KAAA", Category::VFR);
    EXPECT_THAT(told(), ElementsAre()) << "KBBB never sent anything";
    pass(1min);
    reply("KAAA", {});
    EXPECT_THAT(told(), ElementsAre(EndsWith("SONS: the server has no METAR of it any more; the "
                                             "last one: 29 Feb 23:55 UTC, 6 minutes ago")));
    EXPECT_EQ(title, "A favorite has fallen silent");
    pass(80min);
    reply("KAAA", {});
    EXPECT_THAT(told(), ElementsAre());
    reply("KAAA", Category::LIFR);
    EXPECT_THAT(told(), ElementsAre(HasSubstr("LIFR, was VFR"))) << "it is back";

    // The next half-hourly requests: its METAR stays the same, and the last one fails.
    for (const auto& [minutes, expected] : {std::pair(30min, 0U), {30min, 0U}, {30min, 1U}}) {
        pass(minutes);
        end("KAAA", Ending::notReached);
        const auto lines = told();
        EXPECT_EQ(lines.size(), expected);
        EXPECT_TRUE(lines.empty() || lines.front() == "KAAA ALPHA & SONS: no new METAR; the last "
                                                      "one: 01:16 UTC, 95 minutes ago, old");
    }
    pass(30min);
    reply("KAAA", Category::LIFR, 80min);
    EXPECT_THAT(told(), ElementsAre()) << "a newer one, but old as well";
    reply("KAAA", Category::LIFR);
    EXPECT_THAT(told(), ElementsAre());
    reply("KAAA", {}), pass(1min), reply("KAAA", {});
    EXPECT_EQ(told().size(), 1U) << "silent again, told again";
    for (const auto& [category, expected] : {std::pair(Category::IFR, 0U), {Category::LIFR, 1U}}) {
        pass(10min);
        hear("KAAA", category);
        EXPECT_EQ(told().size(), expected) << "what came after the last answer counts";
    }
    watch->setOn(false);
    EXPECT_EQ(fake.timers.runningIntervals(), timers) << "nothing is left to look for";
}

TEST_F(FavoriteWatchTest, TellsIfNothingIsAskedAnyMoreButNotAfterSleep) {
    watch->setOn(true);
    reply("KAAA", Category::VFR, 0min);
    EXPECT_THAT(told(), ElementsAre());
    // The computer sleeps, then runs on without a request.
    pass(10h);
    EXPECT_THAT(toldInAnHour(), ElementsAre(static_cast<int>(FavoriteWatch::patience.count())));
    // The clock is set back by a day: what comes then is the present.
    pass(-24h);
    reply("KAAA", Category::VFR);
    EXPECT_THAT(told(), ElementsAre());
    pass(30min);
    reply("KAAA", Category::IFR);
    EXPECT_EQ(told().size(), 1U);
}

TEST_F(FavoriteWatchTest, ComparesWithNothingFromAnotherRunOrFromBeforeItWasAFavorite) {
    reply("KAAA", Category::VFR);
    watch.reset();
    pass(1min);
    start();
    watch->setOn(true);
    reply("KAAA", Category::IFR, 1min);
    EXPECT_THAT(told(), ElementsAre()) << "at a start";
    const auto second = favorites.back();
    favorites.pop_back();
    reply("KBBB", Category::VFR);
    EXPECT_THAT(told(), ElementsAre());
    pass(30min);
    reply("KBBB", Category::IFR);
    favorites.push_back(second);
    EXPECT_THAT(told(), ElementsAre()) << "not a favourite until now";
    fetchesFavorites = false;
    EXPECT_THAT(watch->status(), EndsWith("switch on World Weather or their own weather."));
    pass(1min);
    reply("KBBB", Category::LIFR, 0min);
    EXPECT_THAT(told(), ElementsAre()) << "nothing is fetched by itself";
    fetchesFavorites = true;
    EXPECT_THAT(told(), ElementsAre());
    world.setOn(true);
    fetchesFavorites = false;
    for (const char* file : {"metars.cache", "tafs.cache"}) {
        ASSERT_TRUE(fake.urlSessions.answer(file, {}));
    }
    pass(1min);
    reply("KBBB", Category::VFR, 0min);
    EXPECT_THAT(told(), ElementsAre());
    pass(1min);
    reply("KBBB", Category::MVFR, 0min);
    EXPECT_EQ(told().size(), 1U) << "the weather of the world will do";
    EXPECT_EQ(watch->status(), "Watching 2 favorites.");
    world.setOn(false);
    fetchesFavorites = true;
    watch.reset();
    start();
    EXPECT_TRUE(watch->isOn()) << "the setting outlives the run";
    reply("KAAA", Category::VFR, 0min);
    EXPECT_THAT(told(), ElementsAre());
    pass(10h);
    EXPECT_THAT(toldInAnHour(), SizeIs(1)) << "and so does the look at the clock";
}

TEST_F(FavoriteWatchTest, PutsWhatComesTogetherIntoOneNoticeTheWorstFirst) {
    favorites.clear();
    for (int number = 0; number < 11; ++number) {
        favorites.push_back(makeStation({fmt::format("K{:03}", number)}));
    }
    watch->setOn(true);
    for (const auto& station : favorites) {
        reply(station->ICAO->c_str(), Category::VFR);
    }
    EXPECT_THAT(told(), ElementsAre());
    pass(30min);
    fake.urlSessions.startDataTask({{"https://example.org/next"}}, [](const auto&) {});
    reply("K000", {});
    for (const char* station : {"K001", "K002"}) {
        reply(station, Category::IFR);
    }
    EXPECT_THAT(told(), ElementsAre()) << "more may come with the open request";
    reply("K003", Category::LIFR);
    ASSERT_TRUE(fake.urlSessions.answer("next", ""));
    fake.mainThread.run();
    fake.timers.fire();
    ASSERT_EQ(fake.notices.shown.size(), 1U);
    const auto& notice = fake.notices.shown.front();
    EXPECT_EQ(notice.title, "4 favorites have worsened or fallen silent");
    ASSERT_EQ(notice.lines.size(), 4U);
    for (const auto& [line, station] : {std::pair(0U, "K003"), {1U, "K001"}, {3U, "K000"}}) {
        EXPECT_TRUE(notice.lines[line].starts_with(station)) << notice.lines[line];
    }
    fake.notices.choose(0);
    EXPECT_THAT(chosen, ElementsAre("K003"));
    (void)told();

    for (const auto& [last, heading] : {std::pair("and 3 more", "11 favorites have worsened"),
                                        {"5 minutes ago", "9 favorites have worsened"}}) {
        for (const Category category : {Category::VFR, Category::LIFR}) {
            (void)told();
            pass(30min);
            for (const auto& station : favorites) {
                reply(station->ICAO->c_str(), category);
            }
        }
        const auto lines = told();
        ASSERT_EQ(lines.size(), 9U);
        EXPECT_THAT(lines.back(), EndsWith(last));
        EXPECT_EQ(title, heading);
        favorites.erase(favorites.begin(), favorites.begin() + 2);
    }
}

TEST_F(FavoriteWatchTest, WaitsAMinuteForARequestThatDoesNotEnd) {
    watch->setOn(true);
    reply("KAAA", Category::VFR);
    (void)told();
    fake.urlSessions.startDataTask({{"https://example.org/never"}}, [](const auto&) {});
    pass(10min);
    reply("KAAA", Category::IFR);
    fake.mainThread.run();
    for (auto waited = 0s; waited <= 62s; waited += 2s) {
        EXPECT_EQ(fake.notices.shown.size(), waited == 62s ? 1U : 0U);
        fake.timers.fire();
    }
}

TEST_F(FavoriteWatchTest, SaysIfNoServiceAnswersAndLetsTheWorldBeFetchedUnseen) {
    world.setOn(true);
    EXPECT_EQ(fake.urlSessions.openRequests(), 0U);
    fake.notices.setThere(false);
    watch->setOn(true);
    EXPECT_EQ(fake.urlSessions.openRequests(), 2U) << "METARs and TAFs of the world";
    for (const char* setting : {"worldweather", "favoritenotices"}) {
        EXPECT_EQ(platform::integerOf(fake.userDefaults.objectForKey(setting)), 1) << setting;
    }
    EXPECT_EQ(watch->status(),
              "No notification service answers, so nothing can be told of favorites.");
    int posted = 0;
    const auto token = fake.notificationCenter.addObserver(FavoriteWatch::didChange,
                                                           [&](const auto&) { ++posted; });
    fake.notices.setThere(true);
    fake.mainThread.run();
    EXPECT_EQ(posted, 1);
    for (const char* status : {"Watching 2 favorites.", "Watching 1 favorite."}) {
        EXPECT_EQ(watch->status(), status);
        favorites.pop_back();
    }
    EXPECT_EQ(watch->status(), "There are no favorites to tell of.");
    watch->look();
    EXPECT_EQ(posted, 2);
    watch->setOn(false);
    EXPECT_EQ(watch->status(), "");
}

} // namespace
} // namespace weather
