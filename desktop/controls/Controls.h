// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/text/Text.h"
#include "platform/views/Views.h"

#include <QAbstractButton>
#include <QAction>
#include <QButtonGroup>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopedValueRollback>

/// The logic's simple controls on Qt widgets, which they borrow.
namespace desktop {

class PushButton final : public platform::Button {
public:
    explicit PushButton(QPushButton& button) : button_(button) {}

    void setEnabled(bool enabled) override { button_.setEnabled(enabled); }

private:
    QPushButton& button_;
};

/// Text that the user can read but not change.
class Label final : public platform::TextField {
public:
    explicit Label(QLabel& label) : label_(label) { label_.setTextFormat(Qt::PlainText); }

    void setText(const std::string& text) override {
        label_.setText(isolatedParts(shownText(text)));
    }
    void setHidden(bool hidden) override { label_.setHidden(hidden); }

private:
    QLabel& label_;
};

/// Text of any length that the user can scroll, select and copy.
class TextPane final : public platform::TextView {
public:
    explicit TextPane(QPlainTextEdit& pane) : pane_(pane) {}

    void setString(const std::string& text) override { pane_.setPlainText(shownLines(text)); }

private:
    QPlainTextEdit& pane_;
};

/// Buttons of which one is down; a button's id in the group is its segment.
class Segments final : public platform::SegmentedControl {
public:
    explicit Segments(QButtonGroup& buttons) : buttons_(buttons) {}

    void setSelectedSegment(int segment) override {
        if (auto* button = buttons_.button(segment)) {
            button->setChecked(true);
            // Tab moves the focus to the button that is down, the arrow keys to the others.
            for (QAbstractButton* other : buttons_.buttons()) {
                other->setFocusPolicy(other == button ? Qt::StrongFocus : Qt::ClickFocus);
            }
        }
    }
    [[nodiscard]] int selectedSegment() const override { return buttons_.checkedId(); }

private:
    QButtonGroup& buttons_;
};

class PopUp final : public platform::PopUpButton {
public:
    explicit PopUp(QComboBox& box) : box_(box) {}

    void setEnabled(bool enabled) override { box_.setEnabled(enabled); }
    void selectItem(int index) override {
        if (index >= 0 && index < box_.count()) {
            box_.setCurrentIndex(index);
        }
    }
    [[nodiscard]] int indexOfSelectedItem() const override { return box_.currentIndex(); }

private:
    QComboBox& box_;
};

/// Always sends its action on every keystroke, as the logic asks, so the two setters for this do
/// nothing.
class SearchLine final : public platform::SearchField {
public:
    explicit SearchLine(QLineEdit& line) : line_(line) {}

    void setSendsSearchStringImmediately(bool /*immediately*/) override {}
    void setSendsWholeSearchString(bool /*whole*/) override {}
    [[nodiscard]] std::string stringValue() const override { return line_.text().toStdString(); }
    /// Does not block the line's signals: its own clear button needs them.
    void setStringValue(const std::string& text) override {
        const QScopedValueRollback guard(isSetByLogic_, true);
        line_.setText(exactText(text));
    }
    /// Whether the logic, rather than the user, is changing the text right now.
    [[nodiscard]] bool isSetByLogic() const { return isSetByLogic_; }

private:
    QLineEdit& line_;
    bool isSetByLogic_ = false;
};

/// A menu entry that calls the operation named `operation`.
class MenuEntry final : public platform::MenuItem {
public:
    MenuEntry(QAction& entry, std::string_view operation) : entry_(entry), operation_(operation) {}

    void setState(bool on) override { entry_.setChecked(on); }
    void setTitle(const std::string& title) override { entry_.setText(shownText(title)); }
    [[nodiscard]] std::string_view action() const override { return operation_; }
    [[nodiscard]] QAction& entry() const { return entry_; }

private:
    QAction& entry_;
    std::string_view operation_;
};

} // namespace desktop
