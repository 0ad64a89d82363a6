// SPDX-License-Identifier: MIT
#pragma once

#include "platform/views/TableView.h"
#include "platform/views/Views.h"
#include "platform/views/WebView.h"

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// Fake controls that keep what the logic last set, for tests to read.
namespace support {

struct FakeButton final : platform::Button {
    void setEnabled(bool value) override { enabled = value; }
    bool enabled = true;
};

struct FakeTextField final : platform::TextField {
    void setText(const std::string& value) override { text = value; }
    void setHidden(bool value) override { hidden = value; }
    std::string text = "designed";
    bool hidden = false;
};

struct FakeFadingTextField final : platform::FadingTextField {
    void setText(const std::string& value) override { text = value; }
    void setHidden(bool value) override { hidden = value; }
    void setTextColor(const platform::Color& value) override { color = value; }
    void animateAlpha(double value) override { alphas.push_back(value); }
    std::string text;
    bool hidden = false;
    platform::Color color;
    std::vector<double> alphas;
};

struct FakeCheckBox final : platform::CheckBox {
    [[nodiscard]] bool state() const override { return on; }
    bool on = false;
};

struct FakeSheet final : platform::Sheet {
    void orderOut() override { told.emplace_back("ordered out"); }
    void endSheet(int code) override { told.push_back("ended with " + std::to_string(code)); }
    std::vector<std::string> told;
};

struct FakeSegmentedControl final : platform::SegmentedControl {
    void setSelectedSegment(int value) override { segment = value; }
    [[nodiscard]] int selectedSegment() const override { return segment; }
    int segment = -1;
};

struct FakePopUpButton final : platform::PopUpButton {
    void setEnabled(bool value) override { enabled = value; }
    void selectItem(int value) override { item = value; }
    [[nodiscard]] int indexOfSelectedItem() const override { return item; }
    bool enabled = true;
    int item = -1;
};

struct FakeMenuItem final : platform::MenuItem {
    void setState(bool value) override { on = value; }
    void setTitle(const std::string& value) override { title = value; }
    [[nodiscard]] std::string_view action() const override { return operation; }
    std::string operation;
    std::string title = "designed";
    bool on = false;
};

struct FakeTextView final : platform::TextView {
    void setString(const std::string& value) override { text = value; }
    std::string text = "designed";
};

struct FakeSearchField final : platform::SearchField {
    void setSendsSearchStringImmediately(bool value) override { immediately = value; }
    void setSendsWholeSearchString(bool value) override { whole = value; }
    [[nodiscard]] std::string stringValue() const override { return text; }
    void setStringValue(const std::string& value) override { text = value; }
    std::string text;
    bool immediately = false;
    bool whole = true;
};

/// Fits a region by doubling its width.
struct FakeMapView final : platform::MapView {
    [[nodiscard]] bool isHidden() const override { return hidden; }
    void setHidden(bool value) override { hidden = value; }
    [[nodiscard]] platform::Rect frame() const override { return place; }
    void setMapType(std::int64_t value) override { mapType = value; }
    void setCenterCoordinate(const platform::Location& value) override { centre = value; }
    [[nodiscard]] platform::Region regionThatFits(const platform::Region& asked) const override {
        return {asked.centre, asked.latitudeSpan, 2 * asked.longitudeSpan};
    }
    void setRegion(const platform::Region& value) override { region = value; }
    bool hidden = false;
    platform::Rect place{10, 20, 300, 200};
    std::int64_t mapType = -1;
    std::optional<platform::Location> centre;
    std::optional<platform::Region> region;
};

struct FakeWebView final : platform::WebView {
    [[nodiscard]] bool isHidden() const override { return hidden; }
    void setHidden(bool value) override { hidden = value; }
    void setFrame(const platform::Rect& value) override { place = value; }
    void setUIDelegate(platform::WebViewUIDelegate* /*value*/) override {}
    void loadRequest(const platform::URL& value) override { loaded.push_back(value.text); }
    bool hidden = false;
    platform::Rect place;
    std::vector<std::string> loaded;
};

/// Has the rows of its last reload. `settle` does what a return to the event loop does.
struct FakeTable final : platform::TableView {
    void setDataSource(platform::TableViewDataSource* value) override { source = value; }
    void setDelegate(platform::TableViewDelegate* value) override { delegate = value; }
    void setColumnWidth(std::string_view column, double width) override {
        widths[std::string(column)] = width;
    }
    void reloadData() override {
        rows = source ? source->numberOfRowsInTableView(*this) : 0;
        if (selected >= rows) {
            selected = -1;
            isUnsettled = true;
        }
    }
    void selectRow(std::int64_t row) override {
        const std::int64_t now = row >= 0 && row < rows ? row : -1;
        const bool isChange = now != selected || isUnsettled;
        isUnsettled = false;
        selected = now;
        if (isChange && delegate) {
            delegate->tableViewSelectionDidChange(*this);
        }
    }
    [[nodiscard]] std::int64_t selectedRow() const override { return selected; }
    void scrollRowToVisible(std::int64_t /*row*/) override {}
    void settle() {
        if (std::exchange(isUnsettled, false) && delegate) {
            delegate->tableViewSelectionDidChange(*this);
        }
    }

    platform::TableViewDataSource* source = nullptr;
    platform::TableViewDelegate* delegate = nullptr;
    std::map<std::string, double> widths;
    std::int64_t rows = 0;
    std::int64_t selected = -1;
    bool isUnsettled = false;
};

} // namespace support
