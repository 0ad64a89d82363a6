// SPDX-License-Identifier: MIT
#pragma once

#include "browser/SCStationWindowController.h"
#include "platform/archive/KeyedArchiver.h"
#include "tests/support/FakeHost.h"
#include "tests/support/FakeViews.h"
#include "tests/support/Stations.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace support {

/// Fakes of all outlets of the main window.
struct FakeStationWindow {
    FakeTable table;
    FakeSegmentedControl switchie, switchieDu;
    FakeSearchField sf;
    FakeButton saver, parserIt, metarB;
    FakePopUpButton distButton;
    FakeTextField words, dLcikWords;
    FakeMapView mapV;
    FakeWebView secView;
    FakeMenuItem alwaysFavItem;
    FakeTextView metarBackField, tafBackFiled;
    FakeTextField stationLine;

    std::unique_ptr<SCWebView> chart;

    [[nodiscard]] SCStationWindowController::Outlets outlets(platform::Host& host) {
        chart = std::make_unique<SCWebView>(host, secView);
        chart->awakeFromNib();
        return {.table = &table,
                .switchie = &switchie,
                .switchieDu = &switchieDu,
                .sf = &sf,
                .saver = &saver,
                .parserIt = &parserIt,
                .metarB = &metarB,
                .distButton = &distButton,
                .words = &words,
                .mapV = &mapV,
                .secView = chart.get(),
                .dLcikWords = &dLcikWords,
                .metarBackField = &metarBackField,
                .tafBackFiled = &tafBackFiled,
                .stationLine = &stationLine,
                .alwaysFavItem = &alwaysFavItem};
    }
    /// The text that a row shows in one column.
    [[nodiscard]] std::string cell(std::int64_t row, const std::string& column) const {
        return table.source->tableView_objectValueForTableColumn_row(table, column, row)
            .value_or("(absent)");
    }
};

/// The main window's logic over fakes, started with a shipped catalogue.
struct ShownCatalogue : testing::Test {
    void start(std::initializer_list<StationFacts> rows) {
        ASSERT_TRUE(platform::KeyedArchiver::archiveRootObject(
            makeCollection(rows), host.bundle.resources + "/Stations.STNPKG"));
        restart();
    }
    void restart() {
        window = FakeStationWindow();
        controller = SCStationWindowController::initWithWindowNibName(host.host,
                                                                      "SCStationWindowController");
        controller->outlets = window.outlets(host.host);
        controller->windowDidLoad();
    }
    /// Makes the next panel return this file.
    void choose(const std::filesystem::path& path) {
        host.panels.answers.emplace_back(platform::URL::file(path.string()));
    }
    /// Waits for a parse to end, then runs the main thread's part of it.
    void settle() {
        waitUntil("the end of a parse", [this] { return host.mainThread.queued() > 0; });
        host.mainThread.run();
    }
    void parse(const std::string& listText) {
        choose(host.folder.write("list.txt", listText));
        controller->parseit();
        EXPECT_FALSE(window.parserIt.enabled);
        settle();
    }
    void chooseDistance(int item) {
        window.distButton.item = item;
        controller->geMeterDistChanged();
    }
    void search(const std::string& text) {
        window.sf.text = text;
        controller->searchIt();
    }
    [[nodiscard]] std::vector<std::string> shown() const {
        return identifiers(*controller->workingCollection->stations);
    }
    /// Answers the oldest request whose address contains `part` with a reply that holds `report`,
    /// then runs the main thread's work. Returns false if there is no such request.
    bool answer(const std::string& part, const std::string& report) {
        const bool isMetar = part.find("metars") != std::string::npos;
        const std::string element = isMetar ? "METAR" : "TAF";
        const bool found =
            host.urlSessions.answer(part, "<response><data><" + element + "><raw_text>" + report +
                                              "</raw_text></" + element + "></data></response>");
        host.mainThread.run();
        return found;
    }

    FakeHost host;
    FakeStationWindow window;
    std::shared_ptr<SCStationWindowController> controller;
};

} // namespace support
