// SPDX-License-Identifier: MIT
#include "catalogue/Packages.h"
#include "tests/support/ShownCatalogue.h"

namespace {

const std::string line =
    "ZZ SAMPLE FIELD     KZZQ ZZQ   72999   39 52N  104 40W 1656   X     T     A    7 US\n";

const std::string list = "! stations\n";

class Catalogue : public support::ShownCatalogue {
protected:
    Catalogue() { restart(); }
};

TEST_F(Catalogue, AParsedListReplacesTheCatalogueAndCanBeSaved) {
    controller->searchFieldDidStartSearching();
    window.sf.text = "searched for";
    parse(list + "\nHERE 1\n" + line);
    EXPECT_EQ(window.sf.text, "");
    search("too late");
    EXPECT_EQ(host.panels.askedTypes, (std::vector<std::string>{"txt"}));
    EXPECT_EQ(window.table.rows, 1);
    EXPECT_EQ(window.cell(0, "3"), "KZZQ");
    EXPECT_EQ(window.words.text, "1 stations");
    EXPECT_TRUE(window.saver.enabled);
    EXPECT_TRUE(window.parserIt.enabled);
    const auto master = controller->masterCollection();
    EXPECT_EQ(master->numberOfStations, 1);
    EXPECT_EQ(master->lastUpdated, host.clock.now());
    EXPECT_EQ(master->fromURL->path(), (host.folder / "list.txt").string());
    EXPECT_FALSE(master->stateByStateCollection);

    const auto chosen = host.folder / "my.list";
    choose(chosen);
    controller->saveDocument();
    EXPECT_EQ(host.panels.askedWrittenPath("/a/b.txt"), "/a/b.STNPKG");
    const auto saved = catalogue::readPackage(host.folder / "my.STNPKG");
    ASSERT_TRUE(saved);
    EXPECT_EQ(identifiers(*saved->stations), (std::vector<std::string>{"KZZQ"}));
    EXPECT_EQ(saved->fromURL, master->fromURL);
    EXPECT_FALSE(std::filesystem::exists(chosen));
    choose(host.folder / "again.list");
    for (const int code : {0, 2, 1}) {
        controller->saveoptionsDidEnd_returnCode_contextInfo(code);
        EXPECT_EQ(std::filesystem::exists(host.folder / "again.STNPKG"), code == 1);
    }
}

TEST_F(Catalogue, UnreadableAndEmptyListsEndTheParseToo) {
    parse(list + line);
    for (const auto& path :
         {host.folder / "absent.txt", host.folder.path(), host.folder.write("empty.txt", "")}) {
        choose(path);
        controller->parseit();
        settle();
        EXPECT_TRUE(window.parserIt.enabled);
        EXPECT_EQ(window.words.text, "0 stations");
        EXPECT_EQ(window.table.rows, 0);
    }
}

TEST_F(Catalogue, OnlyAChosenListReplacesTheCatalogueAndTheSelectedRecord) {
    parse(list + line);
    window.table.selectRow(0);
    parse(list + line);
    const auto master = controller->masterCollection();
    EXPECT_EQ(controller->selectedStation, master->stations->front());
    // The panel is cancelled while another parse ends.
    controller->parseit();
    EXPECT_TRUE(window.parserIt.enabled);
    host.notificationCenter.post({stationparser::StationParseDone, {}, nullptr});
    EXPECT_EQ(controller->masterCollection(), master);
}

TEST_F(Catalogue, MarkingAndReadingGoOnWhileAParseReplacesTheMaster) {
    std::string text = list;
    for (int i = 0; i < 2000; ++i) {
        text += line;
    }
    parse(list + line);
    choose(host.folder.write("long.txt", text));
    controller->parseit();
    bool mark = false;
    support::waitUntil("the end of the parse", [&] {
        const auto master = controller->masterCollection();
        master->stations->front()->setFavorite(mark = !mark);
        (void)window.cell(0, "3");
        return host.mainThread.queued() > 0;
    });
    const bool last = controller->masterCollection()->stations->front()->isFavorite();
    host.mainThread.run();
    EXPECT_EQ(window.table.rows, 2000);
    EXPECT_EQ(controller->workingCollection->stations->front()->isFavorite(), last);
}

TEST_F(Catalogue, AControllerMayBeDestroyedWhileItsParseRuns) {
    choose(host.folder.write("list.txt", list + line));
    controller->parseit();
    window.table.setDataSource(nullptr);
    controller.reset();
    host.mainThread.run();
    EXPECT_EQ(window.words.text, "designed");
}

} // namespace
