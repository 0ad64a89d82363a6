// SPDX-License-Identifier: MIT
#include "desktop/windows/SearchSuggestions.h"

#include "desktop/text/Text.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>

#include <algorithm>
#include <utility>

namespace desktop {

namespace {

/// Around each entry, so that it is easy to hit.
constexpr int gap = 2;

} // namespace

SearchSuggestions::SearchSuggestions(QLineEdit& field, platform::MainThread& mainThread,
                                     Actions actions)
    : QListWidget(field.window()),
      field_(field),
      actions_(std::move(actions)),
      suggester_(mainThread) {
    setObjectName(QStringLiteral("suggestions"));
    setAccessibleName(QStringLiteral("Suggestions for the search"));
    // The keyboard reaches it from the field, not by Tab.
    setFocusPolicy(Qt::ClickFocus);
    setTabOrder(&field, this);
    // Stands out from a table that is as dark or as light as the list.
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setUniformItemSizes(true);
    setSpacing(gap);
    hide();
    field.installEventFilter(this);
    // Whatever moves the field.
    for (QWidget* around = field.parentWidget(); around; around = around->parentWidget()) {
        around->installEventFilter(this);
    }
    connect(&field, &QLineEdit::textChanged, this, [this] { dismiss(); });
    connect(this, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { chooseRow(row(item)); });
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, const QWidget* now) {
        if (now != this && now != &field_) {
            dismiss();
        }
    });
}

void SearchSuggestions::textEdited() {
    if (field_.text().isEmpty()) {
        return;
    }
    suggester_.ask(field_.text().toStdString(), actions_.catalogue(),
                   [this](const auto& suggestions) { offer(suggestions); });
}

void SearchSuggestions::dismiss() {
    suggester_.forget();
    // Also where another window is active by now, in which case the list has no focus but would get
    // it back.
    if (window()->focusWidget() == this) {
        field_.setFocus(Qt::OtherFocusReason);
    }
    field_.setAccessibleDescription({});
    hide();
}

void SearchSuggestions::offer(const std::vector<catalogue::Suggestion>& suggestions) {
    if (!field_.hasFocus() || suggestions.empty()) {
        return;
    }
    suggestions_ = suggestions;
    clear();
    for (const auto& suggestion : suggestions_) {
        addItem(isolatedParts(shownText(catalogue::suggestionLine(suggestion))));
    }
    fit();
    show();
    raise();
    field_.setAccessibleDescription(QStringLiteral("%1 suggestions below").arg(count()));
}

void SearchSuggestions::fit() {
    const int frame = 2 * frameWidth();
    const QRect room = window()->rect();
    const QPoint below = field_.mapTo(window(), QPoint(0, field_.height()));
    const QSize wanted(std::max(field_.width(), sizeHintForColumn(0) + 2 * gap + frame),
                       count() * (sizeHintForRow(0) + 2 * gap) + frame);
    const QSize size(std::min(wanted.width(), room.width()),
                     std::min(wanted.height(), room.height() - below.y()));
    setGeometry({{std::clamp(below.x(), 0, room.width() - size.width()), below.y()}, size});
}

void SearchSuggestions::chooseRow(int row) {
    if (row < 0 || row >= std::ssize(suggestions_)) {
        return;
    }
    const auto chosen = suggestions_[static_cast<std::size_t>(row)];
    dismiss();
    actions_.choose(chosen);
    actions_.goToTable();
}

void SearchSuggestions::goOnInField(QKeyEvent& event) {
    field_.setFocus(Qt::OtherFocusReason);
    QApplication::sendEvent(&field_, &event);
}

void SearchSuggestions::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        chooseRow(currentRow());
        return;
    case Qt::Key_Escape:
        dismiss();
        return;
    case Qt::Key_Up:
        if (currentRow() <= 0) {
            setCurrentRow(-1);
            field_.setFocus(Qt::OtherFocusReason);
            return;
        }
        break;
    case Qt::Key_Down:
        if (currentRow() == count() - 1) {
            actions_.goToTable();
            return;
        }
        break;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        break;
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Home:
    case Qt::Key_End:
        goOnInField(*event);
        return;
    default:
        if (!event->text().isEmpty()) {
            goOnInField(*event);
            return;
        }
        break;
    }
    QListWidget::keyPressEvent(event);
}

bool SearchSuggestions::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &field_ && event->type() == QEvent::KeyPress && isVisible() &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Down) {
        setFocus(Qt::OtherFocusReason);
        setCurrentRow(0);
        return true;
    }
    const bool isMoved =
        watched == window() ? event->type() == QEvent::Resize : event->type() == QEvent::Move;
    // A click on something that takes no focus ends up here.
    const bool isLeft = watched != &field_ && event->type() == QEvent::MouseButtonPress;
    if (isLeft || (isMoved && isVisible())) {
        dismiss();
    }
    return QListWidget::eventFilter(watched, event);
}

} // namespace desktop
