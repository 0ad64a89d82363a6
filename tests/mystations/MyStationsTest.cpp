// SPDX-License-Identifier: MIT
#include "mystations/SCMyStationsWindowController.h"
#include "mystations/SCWetherSheetController.h"
#include "platform/archive/KeyedArchiver.h"
#include "tests/support/FakeHost.h"
#include "tests/support/FakeViews.h"
#include "tests/support/Stations.h"

#include <gtest/gtest.h>

namespace {

class MyStations : public testing::Test {
protected:
    void load() {
        controller->outlets = {.mftable = &table, .mfsaver = &saver, .mfmapV = &map};
        controller->windowDidLoad();
    }

    support::FakeHost host;
    support::FakeTable table;
    support::FakeButton saver;
    support::FakeMapView map;
    std::shared_ptr<SCMyStationsWindowController> controller =
        SCMyStationsWindowController::initWithWindowNibName(host.host,
                                                            "SCMyStationsWindowController");
};

TEST_F(MyStations, ShowsTheUsersPackageBesideAMap) {
    auto mine = makeCollection({{"EDDF", "FRANKFURT", "HESSE", 50.03, 8.57},
                                {"CYYZ", "TORONTO", "ONTARIO", 43.67, 122.375},
                                {"XXXX", "NOWHERE", "NOWHERE", 95, 0}});
    (*mine->stations)[1]->stateAbbreviation = "  ";
    ASSERT_TRUE(platform::KeyedArchiver::archiveRootObject(
        mine, (host.folder / "support/MyStations.STNPKG").string()));
    load();
    EXPECT_EQ(table.rows, 3);
    EXPECT_FALSE(saver.enabled);
    EXPECT_EQ(table.widths["2"], 120);
    EXPECT_EQ(map.mapType, 1);
    EXPECT_FALSE(map.centre);
    const auto cell = [&](std::int64_t row, const char* column) {
        return controller->tableView_objectValueForTableColumn_row(table, column, row);
    };
    EXPECT_EQ(cell(1, "1"), "ON");
    EXPECT_EQ(cell(3, "3"), "");

    table.selectRow(1);
    EXPECT_EQ(map.centre->latitude, 43.67);
    ASSERT_TRUE(map.region);
    table.selectRow(-1);
    EXPECT_EQ(map.centre->latitude, 43.67);
}

TEST_F(MyStations, WritesBackOnlyWhatItHas) {
    const auto file = host.folder / "support/MyStations.STNPKG";
    load();
    EXPECT_FALSE(controller->myFavotires);
    EXPECT_EQ(table.rows, 0);
    controller->updateFavoritesFile();
    EXPECT_FALSE(std::filesystem::exists(file));
    host.folder.write("support/MyStations.STNPKG", "bplist00 and nothing");
    controller->loadFavoritesFile();
    controller->updateFavoritesFile();
    EXPECT_EQ(host.folder.read("support/MyStations.STNPKG"), "bplist00 and nothing");
    controller->myFavotires = makeCollection({{"EDDF"}});
    controller->updateFavoritesFile();
    controller->myFavotires = nullptr;
    controller->loadFavoritesFile();
    ASSERT_TRUE(controller->myFavotires);
    EXPECT_EQ(identifiers(*controller->myFavotires->stations), std::vector<std::string>{"EDDF"});
}

TEST(StationSheet, ShowsOneStationAndEnds) {
    support::FakeMapView map;
    support::FakeSheet sheet;
    SCWetherSheetController controller;
    controller.addStiation(nullptr);
    controller.doneClicked();
    controller.outlets = {.mapV = &map, .window = &sheet};
    const auto stations = makeCollection({{"EDDF", "FRANKFURT", "HESSE", 50.03, 8.57}});
    controller.addStiation(stations->stations->front());
    EXPECT_EQ(controller.thisStation, stations->stations->front());
    EXPECT_EQ(map.centre->longitude, 8.57);
    EXPECT_EQ(map.mapType, 1);
    EXPECT_NEAR(map.region->latitudeSpan * 111'229, 2000, 2);
    controller.doneClicked();
    EXPECT_EQ(sheet.told, (std::vector<std::string>{"ordered out", "ended with 1"}));
}

} // namespace
