// SPDX-License-Identifier: MIT
#include "app/Briefing.h"
#include "platform/net/URLSession.h"
#include "reports/Sessions.h"
#include "tests/support/FakeHost.h"
#include "tests/support/Reports.h"
#include "tests/support/Stations.h"
#include "tests/support/WeatherServer.h"
#include "weather/DataServerRequests.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <atomic>
#include <optional>

namespace {

using namespace std::chrono_literals;
using support::metarRaw;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using testing::UnorderedElementsAre;

/// The logic over a store that a real server fills, on a clock that the test sets.
struct Briefing : testing::Test {
    Briefing() {
        fake.userDefaults.setObject(server.authority(), "dataserverhost");
        (*catalogue->stations)[0]->IATA = "AAX ";
        start();
    }
    ~Briefing() override { stop(); }

    void start() {
        auto options = server.options();
        options.date = [this] { return fake.clock.now(); };
        real.emplace(fake.notificationCenter, options);
        store.emplace(fake.notificationCenter, fake.clock, fake.log,
                      fake.folder / "reports.sqlite");
        store->flush();
        sessions.emplace(*real, *store, weather::questionIn);
        host.emplace(fake.hostWith(*sessions, fake.events));
        briefing.emplace(*host, *store,
                         app::Briefing::Sources{[this] { return catalogue; },
                                                [this] { return catalogue->favorites(); }});
    }
    void stop() {
        server.gates.openAll();
        real->stop();
        briefing.reset();
        fake.mainThread.run();
        sessions.reset();
        store.reset();
    }
    void settle() {
        support::waitUntil("the end of every request", [this] {
            fake.mainThread.run();
            return real->openRequests() == 0;
        });
        fake.mainThread.run();
    }
    /// What has been asked for since the last call, once it is answered.
    std::vector<std::string> asked() {
        settle();
        std::vector<std::string> all = server.targets();
        all.erase(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(seen));
        seen += all.size();
        return all;
    }
    std::vector<std::string> askedFor(const std::string& text) {
        briefing->show(text);
        return asked();
    }
    void pass(std::chrono::seconds time) { fake.clock.time = fake.clock.now() + time; }
    [[nodiscard]] std::string page() const { return briefing->asText(); }
    /// The part of the page that is about a station.
    [[nodiscard]] std::string part(const std::string& station) const {
        const std::string all = page();
        const std::size_t start = all.find("\n\n" + station) + 2;
        return all.substr(start, all.find("\n\n", start) - start);
    }

    support::FakeHost fake;
    std::atomic<const char*> mode = "";
    support::WeatherServer server{[this](const httplib::Request& request,
                                         httplib::Response& response) {
        const bool isMetar = request.path == "/api/data/metar";
        const std::string ids = request.get_param_value("ids");
        const std::string_view how = mode.load();
        std::vector<std::string> replies;
        for (std::size_t at = 0; at < ids.size(); at += 5) {
            const std::string station = how == "other" ? "KOTH" : ids.substr(at, 4);
            // One of them never has a report.
            if (station != "KNIL") {
                replies.push_back(isMetar ? support::metarReply(station)
                                          : support::tafReply(station, "BECMG 0106/0108 24015KT"));
            }
        }
        std::string body = how == "html" ? "<html><p>Busy</html>" : support::joined(replies);
        response.set_content(how == "204" ? "" : body, "text/xml");
        response.status = how == "429" ? 429 : how == "204" ? 204 : 200;
    }};
    std::shared_ptr<AviationWeatherStationCollection> catalogue =
        makeCollection({{"KAAA", "ALPHA"}, {"KBBB", "BRAVO"}, {"KNIL", "NIL"}, {"KOTH", "OTHER"}});
    std::optional<platform::CurlURLSessions> real;
    std::optional<reports::Store> store;
    std::optional<reports::Sessions> sessions;
    std::optional<platform::Host> host;
    std::optional<app::Briefing> briefing;
    std::size_t seen = 0;
};

const std::string metarsOf = "/api/data/metar?ids=";
const std::string tafsOf = "/api/data/taf?ids=";
const std::string xml = "&format=xml";

TEST_F(Briefing, AsksOnceForAllThatIsMissing) {
    EXPECT_THAT(page(), HasSubstr("Type ICAO identifiers or IATA codes, and press Return.\n"));
    EXPECT_THAT(askedFor("kbbb-aax"),
                UnorderedElementsAre(metarsOf + "KBBB,KAAA" + xml, tafsOf + "KBBB,KAAA" + xml));
    EXPECT_THAT(part("KBBB · BRAVO"),
                AllOf(HasSubstr("IFR, 00:00 UTC, 0 minutes ago\n" + metarRaw("KBBB")),
                      HasSubstr("\nTAF KBBB 292320Z 0100/0200 24012KT P6SM SCT040\nBECMG 0106")));
    EXPECT_THAT(part("KAAA · ALPHA"), HasSubstr("AAX is the IATA code of KAAA.\nIFR,"));
    EXPECT_LT(page().find("KBBB"), page().find("KAAA"));

    EXPECT_THAT(askedFor("KBBB KAAA"), IsEmpty());
    pass(4min);
    EXPECT_THAT(askedFor("KNIL, KAAA x"),
                UnorderedElementsAre(metarsOf + "KNIL" + xml, tafsOf + "KNIL" + xml));
    EXPECT_THAT(part("KAAA"), HasSubstr("00:00 UTC, 4 minutes ago"));
    EXPECT_THAT(page(), AllOf(Not(HasSubstr("KBBB")), HasSubstr("no station: x.\n")));
    pass(1min);
    EXPECT_THAT(askedFor("KNIL KAAA"),
                UnorderedElementsAre(metarsOf + "KAAA" + xml, tafsOf + "KAAA" + xml));

    // The weather of the world has just brought what it has.
    pass(10min);
    const reports::Answer renewal{fake.clock.now(), reports::Answer::Ending::whole, 200,
                                  fake.clock.now(), ""};
    store->take({{}, {}, {{reports::allStations, reports::Kind::metar, renewal}}});
    EXPECT_THAT(askedFor("KNIL KAAA"),
                UnorderedElementsAre(metarsOf + "KNIL" + xml, tafsOf + "KNIL,KAAA" + xml));
}

TEST_F(Briefing, TellsHowEveryTransferEndedForEachStation) {
    const struct {
        const char* mode;
        const char* words;
    } cases[] = {
        {"", "KNIL has sent no METAR in the last hours; asked at 00:00 UTC."},
        {"other", "No TAF of KNIL is in force; asked at 00:00 UTC."},
        {"204", "KNIL has sent no METAR in the last hours; asked at 00:00 UTC."},
        {"429", " refused at 00:00 UTC (429)."},
        {"html", " sent something that is no report at 00:00 UTC."},
        {"unreachable", "METAR: localhost:1 could not be reached at 00:00 UTC."},
    };
    for (const auto& [how, words] : cases) {
        SCOPED_TRACE(how);
        mode = how;
        if (how == std::string("unreachable")) {
            fake.userDefaults.setObject(std::string("localhost:1"), "dataserverhost");
        }
        briefing->show("KZZZ KNIL");
        EXPECT_THAT(page(), HasSubstr("Asking localhost:"));
        settle();
        EXPECT_THAT(part("KNIL"), HasSubstr(words));
        EXPECT_THAT(part("KZZZ"), HasSubstr("KZZZ is not in the catalogue.\n"));
        EXPECT_EQ(part("KZZZ").find("IFR") != std::string::npos, *how == 0);
        EXPECT_THAT(page(), Not(AnyOf(HasSubstr("Asking"), HasSubstr("KOTH"))));
        stop();
        std::filesystem::remove(fake.folder / "reports.sqlite");
        start();
    }
}

TEST_F(Briefing, RemembersItsListAndTakesFavorites) {
    briefing->showFavorites();
    EXPECT_THAT(page(), HasSubstr("There are no favorites.\n"));
    EXPECT_FALSE(briefing->hasStations());
    EXPECT_EQ(briefing->text(), "");
    (*catalogue->stations)[1]->setFavorite(true);
    (*catalogue->stations)[3]->setFavorite(true);
    briefing->showFavorites();
    EXPECT_EQ(briefing->text(), "KBBB KOTH");
    EXPECT_THAT(asked(), testing::Contains(metarsOf + "KBBB,KOTH" + xml));

    std::string words;
    for (int i = 0; i < 25; ++i) {
        words += fmt::format(" {}x", i);
    }
    briefing->show("KAAA incomprehensibilities-of-a-pasted-scrap" + words);
    EXPECT_THAT(page(), HasSubstr("name no station: incomprehensibilitie…, of, a, pasted, scrap, "
                                  "0x, 1x,"));
    EXPECT_THAT(page(), HasSubstr(" 14x and 10 more.\n"));
    settle();
    EXPECT_THAT(page(), StartsWith("01 Mar 2024 00:00 UTC\nThis is no briefing"));
    stop();
    start();
    (void)asked();
    EXPECT_THAT(briefing->text(), StartsWith("KAAA incomp"));
    EXPECT_EQ(fake.userDefaults.objectForKey("briefing"), platform::Value(briefing->text()));
    EXPECT_FALSE(briefing->hasStations()) << "asks for nothing before the user does";
    EXPECT_THAT(askedFor("..."), IsEmpty());
    EXPECT_THAT(page(), HasSubstr("No station is listed.\n"));
    std::string many;
    for (int i = 0; i < 102; ++i) {
        many += fmt::format(" K{:03}", i);
    }
    briefing->show(many);
    EXPECT_THAT(page(), HasSubstr("Only the first 100 stations are here; 2 more are left out.\n"));
    settle();
}

} // namespace
