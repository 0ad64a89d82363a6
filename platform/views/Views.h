// SPDX-License-Identifier: MIT
#pragma once

#include "platform/values/Geodesy.h"
#include "platform/views/Drawing.h"

#include <cstdint>
#include <string>
#include <string_view>

/// Controls as the logic sees them, with a few verbs each. Main thread only. Setting a control from
/// logic never sends its action.
namespace platform {

class Button {
public:
    virtual ~Button() = default;
    virtual void setEnabled(bool enabled) = 0;
};

class CheckBox {
public:
    virtual ~CheckBox() = default;
    [[nodiscard]] virtual bool state() const = 0;
};

class TextField {
public:
    virtual ~TextField() = default;
    virtual void setText(const std::string& text) = 0;
    virtual void setHidden(bool hidden) = 0;
};

/// A text field that can fade.
class FadingTextField : public TextField {
public:
    virtual void setTextColor(const Color& color) = 0;
    /// From 0 (invisible) to 1, reached in a short animation.
    virtual void animateAlpha(double alpha) = 0;
};

class SegmentedControl {
public:
    virtual ~SegmentedControl() = default;
    virtual void setSelectedSegment(int segment) = 0;
    [[nodiscard]] virtual int selectedSegment() const = 0;
};

class PopUpButton {
public:
    virtual ~PopUpButton() = default;
    virtual void setEnabled(bool enabled) = 0;
    virtual void selectItem(int index) = 0;
    /// -1 for none.
    [[nodiscard]] virtual int indexOfSelectedItem() const = 0;
};

class MenuItem {
public:
    virtual ~MenuItem() = default;
    /// The check mark.
    virtual void setState(bool on) = 0;
    virtual void setTitle(const std::string& title) = 0;
    /// The name of the operation that it calls, such as "showFavsMenu".
    [[nodiscard]] virtual std::string_view action() const = 0;
};

class SearchField {
public:
    virtual ~SearchField() = default;
    /// Whether the action is sent on every keystroke rather than after a pause.
    virtual void setSendsSearchStringImmediately(bool immediately) = 0;
    /// Whether the action waits for the Return key.
    virtual void setSendsWholeSearchString(bool whole) = 0;
    [[nodiscard]] virtual std::string stringValue() const = 0;
    virtual void setStringValue(const std::string& text) = 0;
};

/// Text of any length that the user reads, selects and copies.
class TextView {
public:
    virtual ~TextView() = default;
    virtual void setString(const std::string& text) = 0;
};

/// Formatted text to be read.
class RichTextView {
public:
    virtual ~RichTextView() = default;
    /// Shows a rich-text (RTF) file; does nothing if it is missing or cannot be read.
    virtual void readRTFDFromFile(const std::string& path) = 0;
};

/// A map of the world. Does nothing if given an invalid coordinate or region.
class MapView {
public:
    virtual ~MapView() = default;
    [[nodiscard]] virtual bool isHidden() const = 0;
    virtual void setHidden(bool hidden) = 0;
    /// Its position and size in the window, from the upper left corner.
    [[nodiscard]] virtual Rect frame() const = 0;
    /// Takes a `MapType` and draws its `drawnType`; any other number changes nothing.
    virtual void setMapType(std::int64_t type) = 0;
    /// A position beyond the edge of the map is clamped to it, here and in regions.
    virtual void setCenterCoordinate(const Location& centre) = 0;
    /// The smallest region of the view's shape that contains this one; this one itself while the
    /// view has no size.
    [[nodiscard]] virtual Region regionThatFits(const Region& region) const = 0;
    /// Shows the region at once, and fits it again whenever the view is resized, until the user
    /// moves the map.
    virtual void setRegion(const Region& region) = 0;
};

/// A window as its controller sees it.
class Window {
public:
    virtual ~Window() = default;
    /// Shows it in front of the others.
    virtual void showWindow() = 0;
    /// Gives it the keyboard focus.
    virtual void makeKey() = 0;
};

/// A window attached to another one, waiting for an answer.
class Sheet {
public:
    virtual ~Sheet() = default;
    virtual void orderOut() = 0;
    /// Reports to whoever began it how it ended.
    virtual void endSheet(int returnCode) = 0;
};

} // namespace platform
