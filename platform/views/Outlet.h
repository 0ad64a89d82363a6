// SPDX-License-Identifier: MIT
#pragma once

#include "platform/views/TableView.h"
#include "platform/views/Views.h"
#include "platform/views/WebView.h"

/// The views that a controller is given, and stand-ins for those that it is not given.
namespace platform {

/// Stands in for a missing view: calls have no effect, and queries return what an empty view would.
/// It has no state, so one instance serves every outlet.
template <typename View>
struct Absent;

template <>
struct Absent<Button> final : Button {
    void setEnabled(bool /*enabled*/) override {}
};

template <>
struct Absent<TextField> final : TextField {
    void setText(const std::string& /*text*/) override {}
    void setHidden(bool /*hidden*/) override {}
};

template <>
struct Absent<TextView> final : TextView {
    void setString(const std::string& /*text*/) override {}
};

template <>
struct Absent<RichTextView> final : RichTextView {
    void readRTFDFromFile(const std::string& /*path*/) override {}
};

template <>
struct Absent<SegmentedControl> final : SegmentedControl {
    void setSelectedSegment(int /*segment*/) override {}
    [[nodiscard]] int selectedSegment() const override { return -1; }
};

template <>
struct Absent<PopUpButton> final : PopUpButton {
    void setEnabled(bool /*enabled*/) override {}
    void selectItem(int /*index*/) override {}
    [[nodiscard]] int indexOfSelectedItem() const override { return -1; }
};

template <>
struct Absent<MenuItem> final : MenuItem {
    void setState(bool /*on*/) override {}
    void setTitle(const std::string& /*title*/) override {}
    [[nodiscard]] std::string_view action() const override { return {}; }
};

template <>
struct Absent<SearchField> final : SearchField {
    void setSendsSearchStringImmediately(bool /*immediately*/) override {}
    void setSendsWholeSearchString(bool /*whole*/) override {}
    [[nodiscard]] std::string stringValue() const override { return {}; }
    void setStringValue(const std::string& /*text*/) override {}
};

template <>
struct Absent<TableView> final : TableView {
    void setDataSource(TableViewDataSource* /*source*/) override {}
    void setDelegate(TableViewDelegate* /*delegate*/) override {}
    void setColumnWidth(std::string_view /*column*/, double /*width*/) override {}
    void reloadData() override {}
    void selectRow(std::int64_t /*row*/) override {}
    [[nodiscard]] std::int64_t selectedRow() const override { return -1; }
    void scrollRowToVisible(std::int64_t /*row*/) override {}
};

template <>
struct Absent<MapView> final : MapView {
    [[nodiscard]] bool isHidden() const override { return true; }
    void setHidden(bool /*hidden*/) override {}
    [[nodiscard]] Rect frame() const override { return {}; }
    void setMapType(std::int64_t /*type*/) override {}
    void setCenterCoordinate(const Location& /*centre*/) override {}
    [[nodiscard]] Region regionThatFits(const Region& region) const override { return region; }
    void setRegion(const Region& /*region*/) override {}
};

template <>
struct Absent<PageView> final : PageView {
    void loadRequest(const URL& /*address*/) override {}
};

template <>
struct Absent<Sheet> final : Sheet {
    void orderOut() override {}
    void endSheet(int /*returnCode*/) override {}
};

/// A controller's reference to one of its views: borrowed, and never null. Main thread only.
template <typename View>
class Outlet {
public:
    Outlet(View* view = nullptr) : view_(view ? view : absent()) {}

    [[nodiscard]] View* operator->() const { return view_; }
    [[nodiscard]] View& operator*() const { return *view_; }
    /// Whether the view exists, for an operation that is meaningless without it.
    [[nodiscard]] explicit operator bool() const { return view_ != absent(); }

private:
    [[nodiscard]] static View* absent() {
        static Absent<View> absent;
        return &absent;
    }

    View* view_;
};

} // namespace platform
