// SPDX-License-Identifier: MIT
#include "desktop/report/PaintedList.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <vector>

namespace desktop {

namespace {

class SpokenItem final : public QAccessibleInterface {
public:
    SpokenItem(PaintedList& list, int item) : list_(&list), item_(item) {}

    [[nodiscard]] bool isValid() const override { return list_ && item_ < list_->count(); }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(list_);
    }
    [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override {
        return -1;
    }
    [[nodiscard]] QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override {
        return nullptr;
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return isValid() && kind == QAccessible::Name ? list_->words(item_) : QString();
    }
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
    [[nodiscard]] QRect rect() const override {
        if (!isValid()) {
            return {};
        }
        const QRect place = list_->place(item_);
        return {list_->mapToGlobal(place.topLeft()), place.size()};
    }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        state.invalid = !isValid();
        if (isValid()) {
            const bool isCurrent = list_->current() == item_;
            state.focusable = true;
            state.selectable = true;
            state.selected = isCurrent;
            state.active = isCurrent;
            state.focused = isCurrent && list_->hasFocus();
            state.invisible = !list_->isVisible();
        }
        return state;
    }
    [[nodiscard]] int number() const { return item_; }

private:
    QPointer<PaintedList> list_;
    int item_;
};

/// Makes the interfaces of its items when they are asked for. The registry owns them as it does
/// this one.
class SpokenList final : public QAccessibleWidget {
public:
    explicit SpokenList(PaintedList& list)
        : QAccessibleWidget(&list, QAccessible::List), list_(list) {}
    ~SpokenList() override { forget(); }
    SpokenList(const SpokenList&) = delete;
    SpokenList& operator=(const SpokenList&) = delete;

    [[nodiscard]] int childCount() const override { return list_.count(); }
    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= list_.count()) {
            return nullptr;
        }
        const auto at = static_cast<std::size_t>(index);
        if (items_.size() <= at) {
            items_.resize(at + 1, 0);
        }
        if (items_[at] == 0) {
            items_[at] = QAccessible::registerAccessibleInterface(new SpokenItem(list_, index));
        }
        return QAccessible::accessibleInterface(items_[at]);
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
        const auto* item = dynamic_cast<const SpokenItem*>(child);
        return item && item->parent() == this ? item->number() : -1;
    }
    [[nodiscard]] QAccessibleInterface* focusChild() const override {
        return child(list_.current());
    }
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override {
        return child(list_.itemAt(list_.mapFromGlobal(QPoint(x, y))));
    }

    /// Whoever knows an item must ask anew: what it stood for is gone.
    void forget() {
        for (const QAccessible::Id item : items_) {
            if (item != 0) {
                QAccessible::deleteAccessibleInterface(item);
            }
        }
        items_.clear();
    }

private:
    PaintedList& list_;
    mutable std::vector<QAccessible::Id> items_;
};

} // namespace

PaintedList::PaintedList(const QString& name, QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(name);
    QAccessible::registerAccessibleInterface(new SpokenList(*this));
}

void PaintedList::setCurrent(int item) {
    if (item < 0 || item >= count() || item == current_) {
        return;
    }
    current_ = item;
    update();
    currentChanged();
    tellFocus();
}

void PaintedList::itemsChanged(int current) {
    if (auto* spoken = dynamic_cast<SpokenList*>(QAccessible::queryAccessibleInterface(this))) {
        spoken->forget();
    }
    current_ = std::clamp(current, std::min(count(), 1) - 1, count() - 1);
    update();
    currentChanged();
    tellFocus();
}

void PaintedList::keyPressEvent(QKeyEvent* event) {
    if (event->modifiers() & ~Qt::KeypadModifier || count() == 0) {
        QWidget::keyPressEvent(event);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Left:
        setCurrent(current_ - 1);
        break;
    case Qt::Key_Right:
        setCurrent(current_ + 1);
        break;
    case Qt::Key_Home:
        setCurrent(0);
        break;
    case Qt::Key_End:
        setCurrent(count() - 1);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void PaintedList::mousePressEvent(QMouseEvent* event) {
    QWidget::mousePressEvent(event);
    setCurrent(itemAt(event->position().toPoint()));
}

void PaintedList::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    // After the toolkit has told of the focus on the list itself.
    QTimer::singleShot(0, this, &PaintedList::tellFocus);
}

void PaintedList::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        updateGeometry();
    }
}

void PaintedList::tellFocus() {
    if (hasFocus() && current_ >= 0) {
        QAccessibleEvent event(this, QAccessible::Focus);
        event.setChild(current_);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace desktop
