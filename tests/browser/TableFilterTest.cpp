// SPDX-License-Identifier: MIT
#include "browser/Suggester.h"
#include "tests/support/ShownCatalogue.h"

#include <fmt/format.h>

#include <functional>

namespace {

using Names = std::vector<std::string>;

class TableFilter : public support::ShownCatalogue {
protected:
    void SetUp() override {
        start({{"KSFO", "SAN FRANCISCO", "CALIFORNIA ", 37.62, -122.37},
               {"KOAK", "OAKLAND", "CALIFORNIA ", 37.72, -122.22},
               {"KSJC", "SAN JOSE", "CALIFORNIA ", 37.37, -121.93},
               {"MROC", "SAN JOSE", "COSTA RICA ", 9.99, -84.2},
               {"    ", "OAKLAND PIER", "CALIFORNIA ", 37.73, -122.23}});
    }
    void type(const std::string& text) {
        window.sf.text = text;
        controller->searchTextDidChange();
    }
    [[nodiscard]] Names reasons() const {
        Names words;
        for (const auto& reason : browser::reasonsOf(controller->filter())) {
            words.push_back(reason.words);
        }
        return words;
    }
    [[nodiscard]] std::string selected() const {
        const auto& station = controller->selectedStation;
        EXPECT_EQ(controller->nowSelection, window.table.selected);
        EXPECT_EQ(window.stationLine.text,
                  station ? catalogue::stationDescription(*station) : std::string());
        EXPECT_EQ(window.distButton.enabled, station != nullptr);
        EXPECT_EQ(window.metarB.enabled, station != nullptr);
        return station ? station->ICAO.value_or("") : "";
    }
};

TEST_F(TableFilter, IsToldInWordsThatAreTrueOfTheRows) {
    const std::string all = "KSFO KOAK KSJC MROC     ";
    struct {
        const char* step;
        std::function<void()> take;
        /// The reasons, the rows and the selected station.
        std::string state;
    } const steps[] = {
        {"start", [] {}, " | " + all + " | KOAK"},
        {"search", [&] { type("ksf, mr"); }, "ICAO contains ksf or mr | MROC KSFO | "},
        {"other mode, not yet in force",
         [&] {
             window.switchie.segment = 1;
             controller->switchieswitche();
         },
         "ICAO contains ksf or mr | MROC KSFO | "},
        {"next letter", [&] { type("jose jose"); },
         "Name contains jose | KSJC MROC KSJC MROC | KSJC"},
        {"no term", [&] { type(" ,"); }, "No term to search for |  | "},
        {"end", [&] { type(""); }, " | " + all + " | "},
        {"distance",
         [&] {
             window.table.selectRow(1);
             chooseDistance(1);
         },
         "Within 25 miles of KOAK | KSFO      | "},
        {"selection moves on", [&] { window.table.selectRow(1); },
         "Within 25 miles of KOAK | KSFO      |     "},
        {"from a station without an identifier",
         [&] {
             window.distButton.item = 0;
             controller->geMeter();
         },
         "Within 10 miles of OAKLAND PIER | KOAK | "},
        {"another one is selected, and stays so",
         [&] {
             window.table.selectRow(0);
             controller->leaveDistance();
         },
         " | " + all + " | KOAK"},
        {"favorites", [&] { controller->showFavsMenu(); }, "Favorites |  | "},
        {"all again", [&] { controller->showFavsMenu(); }, " | " + all + " | KSFO"},
        {"favorites again", [&] { controller->showFavsMenu(); }, "Favorites |  | "},
        {"search adds them",
         [&] {
             controller->selectedStation = controller->masterCollection()->stations->at(1);
             controller->favMenuItem();
             type("francisco");
         },
         "Name contains francisco and favorites | KSFO KOAK | KOAK"},
        {"whole catalogue, in favorites mode", [&] { type(""); }, " | " + all + " | KOAK"},
        {"station that is listed",
         [&] {
             type("rancis");
             controller->selectStation("KSFO");
         },
         "Name contains rancis and favorites | KSFO KOAK | KSFO"},
        {"station that is not listed", [&] { controller->selectStation("MROC"); },
         " | " + all + " | MROC"},
        {"saving",
         [&] {
             type("rancis");
             window.table.selectRow(0);
             host.panels.whileAsked = [&] { type("rancis"); };
             controller->saveCatalogue();
         },
         " | " + all + " | KSFO"},
        {"another catalogue",
         [&] {
             type("rancis");
             controller->showCatalogue(makeCollection({{"EGLL", "LONDON", "UK"}}));
         },
         " | EGLL | "},
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(step.step);
        step.take();
        EXPECT_EQ(fmt::format("{} | {} | {}", fmt::join(reasons(), " "), fmt::join(shown(), " "),
                              selected()),
                  step.state);
        EXPECT_EQ(window.table.rows, std::ssize(shown()));
        EXPECT_EQ(window.sf.text.empty(), !controller->filter().search);
    }
}

TEST_F(TableFilter, EachReasonCanBeEndedAlone) {
    const Names all = shown();
    window.table.selectRow(0);
    type("san");
    EXPECT_EQ(browser::emptyTableWords(controller->filter()),
              "No station found: ICAO contains san");
    EXPECT_EQ(browser::reasonsOf(controller->filter())[0].wayOut, "Stop searching for san");
    type("ks");
    // The distance goes, the search that it had replaced comes back.
    window.table.selectRow(0);
    const std::size_t requests = host.urlSessions.openRequests();
    chooseDistance(0);
    chooseDistance(3);
    EXPECT_EQ(selected(), "");
    EXPECT_EQ(reasons(), Names{"Within 10 miles of KSFO"});
    EXPECT_EQ(browser::emptyTableWords(controller->filter()),
              "No other station is within 10 miles of KSFO");
    controller->leaveDistance();
    EXPECT_EQ(reasons(), Names{"ICAO contains ks"});
    EXPECT_EQ(shown(), (Names{"KSFO", "KSJC"}));
    EXPECT_EQ(selected(), "KSFO");
    EXPECT_EQ(host.urlSessions.openRequests(), requests);
    controller->leaveDistance();
    EXPECT_EQ(shown(), (Names{"KSFO", "KSJC"}));
    // The favourites go, the search stays.
    controller->favMenuItem();
    controller->showFavsMenu();
    type("mro");
    EXPECT_EQ(shown(), (Names{"MROC", "KSFO"}));
    controller->leaveFavorites();
    EXPECT_EQ(shown(), Names{"MROC"});
    EXPECT_FALSE(controller->showingFavs);
    // The search goes, the favourites stay.
    controller->showFavsMenu();
    type("mro");
    controller->leaveSearch();
    EXPECT_EQ(reasons(), Names{"Favorites"});
    EXPECT_EQ(shown(), Names{"KSFO"});
    EXPECT_EQ(window.sf.text, "");
    EXPECT_EQ(browser::reasonsOf(controller->filter())[0].wayOut, "Show all, not favorites only");
    controller->leaveFavorites();
    EXPECT_EQ(shown(), all);
    EXPECT_EQ(reasons(), Names{});
    start({{"    ", "  "}});
    window.table.selectRow(0);
    chooseDistance(1);
    EXPECT_EQ(reasons(), Names{"Within 25 miles of a station without a name"});
    const browser::TableFilter noTerm{.search = browser::TableFilter::Search{}, .favorites = true};
    EXPECT_EQ(browser::reasonsOf(noTerm)[0].wayOut, "Stop searching");
    EXPECT_EQ(browser::reasonsOf(noTerm)[1].wayOut, "Leave out the favorites");
    EXPECT_EQ(browser::emptyTableWords({.favorites = true}), "There are no favorites");
    EXPECT_EQ(browser::emptyTableWords({}), "");
}

TEST_F(TableFilter, AChosenSuggestionIsSearchedForAndSelected) {
    const auto choose = [&](const char* text) {
        const auto found =
            catalogue::SuggestionIndex(controller->masterCollection().get()).find(text);
        ASSERT_FALSE(found.empty()) << text;
        controller->chooseSuggestion(found.back());
    };
    window.table.selectRow(0);
    choose("jose");
    EXPECT_EQ(window.sf.text, "JOSE");
    EXPECT_EQ(window.switchie.segment, 1);
    EXPECT_EQ(reasons(), Names{"Name contains JOSE"});
    // Not the first one of that name.
    EXPECT_EQ(selected(), "MROC");
    choose("costa");
    EXPECT_EQ(reasons(), Names{"Region contains COSTA"});
    EXPECT_EQ(shown(), Names{"MROC"});
    EXPECT_EQ(selected(), "MROC");
    choose("ksfo");
    EXPECT_EQ(window.switchie.segment, 0);
    EXPECT_EQ(selected(), "KSFO");
    // The next letter goes on from there.
    type("KSF");
    EXPECT_EQ(shown(), Names{"KSFO"});
    type("");
    EXPECT_EQ(shown().size(), 5U);
    EXPECT_EQ(selected(), "KSFO");
    // One that was still offered when its catalogue went.
    const auto late = catalogue::SuggestionIndex(controller->masterCollection().get()).find("jose");
    controller->addCollection(nullptr);
    controller->chooseSuggestion(late.front());
    EXPECT_EQ(window.sf.text, "");
    controller->showAll();
    EXPECT_EQ(window.words.text, "0 station");
}

TEST_F(TableFilter, SuggestionsComeOnTheMainThreadAndOnlyTheNewest) {
    std::vector<std::string> answered;
    browser::Suggester suggester(host.mainThread);
    const auto ask = [&](const char* text,
                         std::shared_ptr<const AviationWeatherStationCollection> stations) {
        suggester.ask(text, std::move(stations), [&answered](const auto& suggestions) {
            answered.push_back(
                suggestions.empty() ? "nothing" : catalogue::suggestionLine(suggestions.front()));
        });
    };
    const auto settleUntil = [&](std::size_t count) {
        support::waitUntil("the answers", [&] {
            host.mainThread.run();
            return answered.size() >= count;
        });
    };
    ask("mroc", controller->masterCollection());
    ask("ksfo", controller->masterCollection());
    settleUntil(1);
    EXPECT_EQ(answered, Names{"KSFO  SAN FRANCISCO · ICAO"});
    ask("mroc", controller->masterCollection());
    support::waitUntil("the answer", [&] { return host.mainThread.queued() > 0; });
    suggester.forget();
    host.mainThread.run();
    ask("egll", makeCollection({{"EGLL", "LONDON", "UK"}}));
    settleUntil(2);
    ask("egll", nullptr);
    settleUntil(3);
    EXPECT_EQ(answered, (Names{"KSFO  SAN FRANCISCO · ICAO", "EGLL  LONDON · ICAO", "nothing"}));
}

} // namespace
