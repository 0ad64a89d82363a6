// SPDX-License-Identifier: MIT
#pragma once

#include "browser/Suggester.h"

#include <QListWidget>

#include <functional>
#include <memory>
#include <vector>

class QLineEdit;

namespace desktop {

/// A list below a search field of what the text typed there may mean. It lies over the window, and
/// is shown only while field or list has the keyboard focus, the user has just typed, and there is
/// something to offer.
///
/// Down in the field goes into the list, Up from its first entry back; Down from the last goes on
/// to the table. Return or a click chooses an entry, Escape returns to the field, and whatever is
/// typed goes into the field.
class SearchSuggestions final : public QListWidget {
public:
    struct Actions {
        std::function<std::shared_ptr<const AviationWeatherStationCollection>()> catalogue;
        std::function<void(const catalogue::Suggestion&)> choose;
        std::function<void()> goToTable;
    };

    /// The field is borrowed; the list belongs to its window.
    SearchSuggestions(QLineEdit& field, platform::MainThread& mainThread, Actions actions);

    /// Must be called when the user has changed the text.
    void textEdited();
    /// Hides the list, with the focus back in the field if the list had it.
    void dismiss();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    /// Watches the field's keys, what moves it, and clicks around it.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void offer(const std::vector<catalogue::Suggestion>& suggestions);
    void fit();
    void chooseRow(int row);
    void goOnInField(QKeyEvent& event);

    QLineEdit& field_;
    Actions actions_;
    std::vector<catalogue::Suggestion> suggestions_;
    browser::Suggester suggester_;
};

} // namespace desktop
