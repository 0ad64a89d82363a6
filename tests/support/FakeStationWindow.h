// SPDX-License-Identifier: MIT
#pragma once

#include "browser/SCStationWindowController.h"
#include "tests/support/FakeViews.h"

#include <memory>
#include <string>

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

} // namespace support
