// SPDX-License-Identifier: MIT
#include "platform/KeyedUnarchiver.h"
#include "tests/support/ShownCatalogue.h"

namespace {

using Names = std::vector<std::string>;

class Favourites : public support::ShownCatalogue {
protected:
    void SetUp() override {
        start(
            {{"KJFK", "KENNEDY"}, {"KDEN", "DENVER"}, {"LSZH", "ZURICH"}, {"KDEN", "DENVER TOO"}});
    }
    [[nodiscard]] std::string file() const {
        return (host.folder / "support/nosig/kzrfavorites.kzrfv").string();
    }
    [[nodiscard]] Names stored() const {
        Names names;
        const auto root = platform::KeyedUnarchiver::unarchiveFile(file(), {}).root;
        if (const auto* array = std::get_if<std::shared_ptr<platform::Array>>(&root)) {
            for (const auto& element : (*array)->elements) {
                names.push_back(std::get<std::string>(element));
            }
        }
        return names;
    }
    void store(const Names& names) {
        auto array = std::make_shared<platform::Array>();
        array->elements.assign(names.begin(), names.end());
        std::filesystem::create_directories(host.folder / "support/nosig");
        ASSERT_TRUE(platform::KeyedArchiver::archiveRootObject(array, file()));
    }
    void quit() {
        controller->quitting();
        controller.reset();
    }
    void switchFavoriteWeatherOn() { controller->alwaysShowFavWeatherMenu(window.alwaysFavItem); }
};

TEST_F(Favourites, OutliveARun) {
    controller->favMenuItem();
    window.table.selectRow(2);
    controller->favMenuItem();
    window.table.selectRow(0);
    controller->favMenuItem();
    controller->favMenuItem();
    EXPECT_FALSE(std::filesystem::exists(file()));
    quit();
    EXPECT_EQ(stored(), (Names{"KDEN", "LSZH"}));
    restart();
    EXPECT_EQ(identifiers(controller->allFavorites()), (Names{"KDEN", "LSZH"}));
    quit();
    EXPECT_EQ(stored(), (Names{"KDEN", "LSZH"}));
}

TEST_F(Favourites, AForeignOrBrokenFileMarksWhatItCan) {
    store({"ZZZZ", "LSZH"});
    restart();
    EXPECT_EQ(identifiers(controller->allFavorites()), Names{"LSZH"});
    host.folder.write("support/nosig/kzrfavorites.kzrfv", "bplist00 nonsense");
    restart();
    EXPECT_EQ(identifiers(controller->allFavorites()), Names{});
}

TEST_F(Favourites, AreNotLostWithoutACatalogue) {
    store({"KDEN"});
    std::filesystem::remove(host.bundle.resources + "/Stations.STNPKG");
    restart();
    quit();
    EXPECT_EQ(stored(), Names{"KDEN"});

    // Nor through a list without stations, nor when the first catalogue is one that is parsed.
    restart();
    const std::string line =
        "ZZ DENVER           KDEN DEN   72565   39 52N  104 40W 1656   X     T     A    7 US\n";
    for (const std::string& text : {std::string("no list"), "! a list\n" + line, std::string()}) {
        parse(text);
        EXPECT_EQ(identifiers(controller->allFavorites()),
                  text.size() > 80 ? Names{"KDEN"} : Names{});
    }
    quit();
    EXPECT_EQ(stored(), Names{"KDEN"});
}

TEST_F(Favourites, AMarkGoesToTheMastersFirstStationOfTheIdentifierToo) {
    window.table.selectRow(3);
    controller->favMenuItem();
    EXPECT_EQ(identifiers(controller->allFavorites()), (Names{"KDEN", "KDEN"}));
    EXPECT_TRUE(controller->masterCollection()->stations->at(1)->isFavorite());
    window.table.selectRow(-1);
    controller->favMenuItem();
    EXPECT_EQ(controller->allFavorites().size(), 2U);
}

TEST_F(Favourites, CanBeShownAlone) {
    controller->showFavsMenu();
    EXPECT_EQ(shown(), Names{});
    EXPECT_EQ(window.words.text, "0 station");
    controller->showFavsMenu();
    EXPECT_EQ(shown().size(), 4U);
    EXPECT_EQ(window.table.selected, 0);
}

TEST_F(Favourites, MenuItemsAreTitledAndEnabledByTheState) {
    struct {
        const char* action;
        bool enabled;
        const char* title;
    } const rows[] = {{"favMenuItem", true, "Make Favorite"},
                      {"showFavsMenu", true, "Show favorites"},
                      {"geMeterDistChanged", true, "designed"},
                      {"alwaysShowFavWeatherMenu", true, "designed"},
                      {"saveDocument", false, "designed"},
                      {"parseit", false, "designed"},
                      {"", false, "designed"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.action);
        support::FakeMenuItem item;
        item.operation = row.action;
        EXPECT_EQ(controller->validateMenuItem(item), row.enabled);
        EXPECT_EQ(item.title, row.title);
    }
    support::FakeMenuItem favorite;
    favorite.operation = "favMenuItem";
    controller->favMenuItem();
    EXPECT_TRUE(controller->validateMenuItem(favorite));
    EXPECT_EQ(favorite.title, "Unfavorite");
    window.table.selectRow(-1);
    EXPECT_FALSE(controller->validateMenuItem(favorite));
    favorite.operation = "showFavsMenu";
    controller->showFavsMenu();
    EXPECT_TRUE(controller->validateMenuItem(favorite));
    EXPECT_EQ(favorite.title, "Show all");
}

TEST_F(Favourites, ASelectionFetchesItsWeatherAndShowsItWhenTheMetarsAreComplete) {
    EXPECT_EQ(window.metarBackField.text, "");
    EXPECT_EQ(host.urlSessions.addresses().size(), 2U);
    EXPECT_TRUE(answer("TAFs", "TAF KDEN"));
    EXPECT_EQ(window.tafBackFiled.text, "");
    EXPECT_TRUE(answer("metars", "METAR KDEN"));
    EXPECT_EQ(window.metarBackField.text.substr(window.metarBackField.text.size() - 11),
              "METAR KDEN\n");
    EXPECT_EQ(window.tafBackFiled.text, "TAF KDEN\n");
    controller->requestSelectedWeather();
    EXPECT_EQ(window.metarBackField.text, "");
    EXPECT_EQ(host.urlSessions.addresses().size(), 2U);
    // This time the TAF comes too late to be shown.
    EXPECT_TRUE(answer("metars", "METAR KDEN NEWER"));
    EXPECT_TRUE(answer("TAFs", "TAF KDEN"));
    EXPECT_EQ(window.metarBackField.text, "METAR KDEN NEWER\n");
    EXPECT_EQ(window.tafBackFiled.text, "");
}

TEST_F(Favourites, FavoriteWeatherListsTheSelectedStationThenTheFavorites) {
    controller->favMenuItem(); // KDEN
    switchFavoriteWeatherOn();
    EXPECT_TRUE(window.alwaysFavItem.on);
    EXPECT_EQ(window.metarBackField.text, "");
    host.timers.fire();
    EXPECT_EQ(window.metarBackField.text, "Requesting METARs");
    EXPECT_EQ(window.tafBackFiled.text, "Requesting TAFs");
    // Of the start's grabber, which nothing stops.
    while (answer("TAFs", "old") || host.urlSessions.openRequests() > 2) {
        answer("metars", "old");
    }
    controller->requestSelectedWeather();
    EXPECT_TRUE(answer("metars", "M1"));
    EXPECT_TRUE(answer("metars", "M2"));
    EXPECT_EQ(window.metarBackField.text, "M1\n\nMETARS for Favorites\n------\nM2\n");
}

TEST_F(Favourites, TheTimerFetchesNothingUnlessSwitchedOnWithFavoritesAndASelection) {
    const std::size_t before = host.urlSessions.openRequests();
    host.timers.fire();
    controller->favMenuItem();
    host.timers.fire();
    controller->favMenuItem();
    switchFavoriteWeatherOn();
    host.timers.fire();
    controller->favMenuItem();
    window.table.selectRow(-1);
    host.timers.fire();
    EXPECT_EQ(host.urlSessions.openRequests(), before);
    EXPECT_FALSE(controller->selectedStation);
    window.table.selectRow(0);
    const std::size_t selected = host.urlSessions.openRequests();
    host.timers.fire();
    EXPECT_EQ(host.urlSessions.openRequests(), selected + 2);
}

TEST_F(Favourites, StartUpFetchesThemOnlyAfterTheFileWasRead) {
    store({"LSZH"});
    host.userDefaults.setObject(platform::Number(std::int64_t{1}), "displayfavweather");
    const std::size_t before = host.urlSessions.openRequests();
    restart();
    EXPECT_EQ(window.metarBackField.text, "Requesting METARs");
    // One grabber for the selection, one with the favourites.
    EXPECT_EQ(host.urlSessions.openRequests(), before + 4);
    EXPECT_EQ(controller->wGrabber->stationsToCollectWeatherFrom.size(), 2U);
}

} // namespace
