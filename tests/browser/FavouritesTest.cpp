// SPDX-License-Identifier: MIT
#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "tests/support/ShownCatalogue.h"

#include <unistd.h>

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
    [[nodiscard]] std::string draft() const {
        return (host.folder / "support/nosig/kzrfavorites.draft.kzrfv").string();
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
    [[nodiscard]] Names marked() const { return identifiers(controller->allFavorites()); }
    void toggle(std::int64_t row) {
        window.table.selectRow(row);
        controller->favMenuItem();
    }
    static std::string line(const std::string& identifier) {
        return "ZZ SAMPLE FIELD     " + identifier +
               " ZZQ   72999   39 52N  104 40W 1656   X     T     A    7 US\n";
    }
    void switchFavoriteWeatherOn() { controller->alwaysShowFavWeatherMenu(window.alwaysFavItem); }
};

TEST_F(Favourites, MissingFromTheCatalogueAreKept) {
    store({"ZZZZ", "LSZH"});
    restart();
    EXPECT_EQ(marked(), Names{"LSZH"});
    toggle(1);
    quit();
    EXPECT_EQ(stored(), (Names{"KDEN", "LSZH", "ZZZZ"}));
    // They survive a list that has other favourites, and one that has none.
    restart();
    parse("! a list\n" + line("ZZZZ") + line("KDEN"));
    EXPECT_EQ(marked(), (Names{"ZZZZ", "KDEN"}));
    toggle(0);
    parse("! a list\n" + line("KJFK"));
    EXPECT_EQ(marked(), Names{});
    quit();
    EXPECT_EQ(stored(), (Names{"KDEN", "LSZH"}));
    restart();
    controller->addCollection(nullptr);
    controller->addCollection(makeCollection({{"LSZH"}, {"KDEN"}}));
    EXPECT_EQ(marked(), (Names{"LSZH", "KDEN"}));
}

TEST_F(Favourites, AFileThatIsNotAListOfTextsIsSetAside) {
    const auto number = std::make_shared<platform::Array>();
    number->elements = {std::string("LSZH"), platform::Number(1)};
    const auto bytesOf = [](const platform::Value& root) {
        const auto data = platform::KeyedArchiver::archivedData(root);
        return std::string(reinterpret_cast<const char*>(data->data()), data->size());
    };
    const std::string text = bytesOf(std::string("no list"));
    const std::string contents[] = {"", "bplist00 nonsense", text, bytesOf(number),
                                    text.substr(0, text.size() - 1)};
    int times = 0;
    for (const std::string& content : contents) {
        SCOPED_TRACE(content);
        std::filesystem::create_directories(host.folder / "support/nosig");
        host.folder.write("support/nosig/kzrfavorites.kzrfv", content);
        const std::size_t lines = host.log.lines().size();
        restart();
        EXPECT_EQ(marked(), Names{});
        EXPECT_EQ(host.log.lines().size(), lines + 1);
        toggle(2);
        quit();
        EXPECT_EQ(stored(), Names{"LSZH"});
        EXPECT_EQ(host.folder.read("support/nosig/kzrfavorites.kzrfv.unreadable" +
                                   (++times > 1 ? "." + std::to_string(times) : "")),
                  content);
    }
}

TEST_F(Favourites, NothingIsWrittenOverAFileThatCannotBeSetAside) {
    const auto folder = host.folder / "support/nosig";
    std::filesystem::create_directories(folder);
    host.folder.write("support/nosig/kzrfavorites.kzrfv", "damaged");
    // For root no folder is read-only, so act as an ordinary user.
    const uid_t user = ::geteuid();
    if (user == 0) {
        const auto give = [](const std::filesystem::path& path) {
            EXPECT_EQ(::chown(path.c_str(), 65534, 65534), 0);
        };
        give(host.folder.path());
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(host.folder.path())) {
            give(entry.path());
        }
        ASSERT_EQ(::seteuid(65534), 0);
    }
    std::filesystem::permissions(folder, std::filesystem::perms(0555));
    restart();
    std::filesystem::permissions(folder, std::filesystem::perms(0755));
    toggle(0);
    quit();
    EXPECT_EQ(host.folder.read("support/nosig/kzrfavorites.kzrfv"), "damaged");
    EXPECT_FALSE(std::filesystem::exists(draft()));
    ASSERT_EQ(::seteuid(user), 0);
}

TEST_F(Favourites, AreSafeAsSoonAsTheyAreMarked) {
    store({"ZZZZ", "KJFK"});
    FavoritesFile unread(host.host);
    unread.keep({"LSZH"});
    unread.save({"LSZH"});
    EXPECT_EQ(stored(), (Names{"ZZZZ", "KJFK"}));
    restart();
    EXPECT_FALSE(std::filesystem::exists(draft()));
    toggle(2);
    toggle(0);
    // The program is killed twice, without quitting.
    for (const int time : {1, 2}) {
        SCOPED_TRACE(time);
        restart();
        EXPECT_EQ(stored(), (Names{"ZZZZ", "KJFK"}));
        EXPECT_EQ(marked(), Names{"LSZH"});
    }
    // If the file cannot be written, the draft is kept.
    std::filesystem::remove(file());
    std::filesystem::create_directories(file() + "/in the way");
    quit();
    EXPECT_TRUE(std::filesystem::exists(draft()));
    std::filesystem::remove_all(file());
    restart();
    quit();
    EXPECT_EQ(stored(), (Names{"LSZH", "ZZZZ"}));
    EXPECT_FALSE(std::filesystem::exists(draft()));
}

TEST_F(Favourites, ABlankIdentifierNamesNoStation) {
    start({{"    ", "ONE"}, {"KDEN", "DENVER"}, {"    ", "OTHER"}, {{}, "NAMELESS"}});
    store({"    ", ""});
    restart();
    EXPECT_EQ(marked(), Names{});
    toggle(2);
    toggle(3);
    const auto& stations = *controller->masterCollection()->stations;
    EXPECT_FALSE(stations[0]->isFavorite());
    EXPECT_TRUE(stations[2]->isFavorite());
    toggle(1);
    parse("! a list\n" + line("    ") + line("KDEN"));
    EXPECT_EQ(marked(), Names{"KDEN"});
    quit();
    EXPECT_EQ(stored(), Names{"KDEN"});
}

TEST_F(Favourites, AreNotLostWithoutACatalogue) {
    store({"KDEN"});
    std::filesystem::remove(host.bundle.resources + "/Stations.STNPKG");
    restart();
    EXPECT_FALSE(window.distButton.enabled || window.metarB.enabled);
    EXPECT_EQ(window.mapV.mapType, 1);
    quit();
    EXPECT_EQ(stored(), Names{"KDEN"});

    // Nor are they lost if a list has no stations, or if the first catalogue is a parsed list.
    restart();
    for (const std::string& text :
         {std::string("no list"), "! a list\n" + line("KDEN"), std::string()}) {
        parse(text);
        EXPECT_EQ(marked(), text.size() > 80 ? Names{"KDEN"} : Names{});
    }
    quit();
    EXPECT_EQ(stored(), Names{"KDEN"});
}

TEST_F(Favourites, AMarkAlsoGoesToTheMastersFirstStationWithTheIdentifier) {
    window.table.selectRow(3);
    controller->favMenuItem();
    EXPECT_EQ(marked(), (Names{"KDEN", "KDEN"}));
    EXPECT_EQ(controller->rowsMarkedWithSelected(), (std::vector<std::int64_t>{1, 3}));
    controller->showAll();
    EXPECT_EQ(window.table.selected, 3);
    window.table.selectRow(-1);
    EXPECT_EQ(controller->rowsMarkedWithSelected(), std::vector<std::int64_t>{});
    controller->favMenuItem();
    EXPECT_EQ(controller->allFavorites().size(), 2U);
    // Both marks go at once from the disk, too.
    toggle(3);
    restart();
    EXPECT_EQ(marked(), Names{});
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
    // This time the TAF arrives too late to be shown.
    EXPECT_TRUE(answer("metars", "METAR KDEN NEWER"));
    EXPECT_TRUE(answer("TAFs", "TAF KDEN"));
    EXPECT_EQ(window.metarBackField.text, "METAR KDEN NEWER\n");
    EXPECT_EQ(window.tafBackFiled.text, "");
}

TEST_F(Favourites, ANewRequestSupersedesEarlierOnesAndOnlyFetchAgainRevalidates) {
    const auto states = [this] {
        std::string text;
        for (const auto& request : host.urlSessions.requests()) {
            const bool yields = request.superseded && *request.superseded;
            text += std::string(yields ? "y" : "-") + (request.revalidates ? "r " : "- ");
        }
        return text;
    };
    EXPECT_EQ(states(), "-- -- ");
    window.table.selectRow(0);
    EXPECT_EQ(states(), "y- y- -- -- ");
    controller->requestSelectedWeather();
    EXPECT_EQ(states(), "y- y- y- y- -r -r ");
    controller->favMenuItem();
    switchFavoriteWeatherOn();
    host.timers.fire();
    EXPECT_EQ(states(), "y- y- y- y- yr yr -- -- ");
}

TEST_F(Favourites, FavoriteWeatherListsTheSelectedStationThenTheFavorites) {
    controller->favMenuItem(); // KDEN
    switchFavoriteWeatherOn();
    EXPECT_TRUE(window.alwaysFavItem.on);
    EXPECT_EQ(window.metarBackField.text, "");
    host.timers.fire();
    EXPECT_EQ(window.metarBackField.text, "Requesting METARs");
    EXPECT_EQ(window.tafBackFiled.text, "Requesting TAFs");
    // Answer the grabber made at the start: nothing stops it.
    support::waitUntil("the end of the walks begun at the start", [&] {
        const bool isOver = !answer("TAFs", "old") && host.urlSessions.openRequests() <= 2;
        if (!isOver) {
            answer("metars", "old");
        }
        return isOver;
    });
    controller->requestSelectedWeather();
    EXPECT_TRUE(answer("metars", "M1"));
    EXPECT_TRUE(answer("metars", "M2"));
    EXPECT_EQ(window.metarBackField.text, "M1\n\nMETARS for Favorites\n------\nM2\n");
    controller->alwaysShowFavWeatherMenu(window.alwaysFavItem);
    EXPECT_FALSE(window.alwaysFavItem.on || controller->fetchesFavoriteWeather());
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
    window.mapV.centre.reset();
    host.timers.fire();
    EXPECT_EQ(host.urlSessions.openRequests(), selected + 2);
    EXPECT_TRUE(window.mapV.centre);
}

TEST_F(Favourites, StartUpFetchesTheirWeatherOnlyAfterReadingTheFile) {
    store({"LSZH"});
    host.userDefaults.setObject(platform::Number(std::int64_t{1}), "displayfavweather");
    const std::size_t before = host.urlSessions.openRequests();
    restart();
    EXPECT_TRUE(window.alwaysFavItem.on);
    EXPECT_EQ(window.metarBackField.text, "Requesting METARs");
    // Two requests for the selection alone, and two by the grabber that has the favourites too.
    EXPECT_EQ(host.urlSessions.openRequests(), before + 4);
    EXPECT_EQ(controller->wGrabber->stationsToCollectWeatherFrom.size(), 2U);
}

} // namespace
