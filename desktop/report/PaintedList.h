// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace desktop {

/// A widget that paints its items itself and lets the user go from one to the next, from left to
/// right whatever the layout's direction: with the arrow keys, Home and End, or by a click.
///
/// Tab reaches it. Assistive technology is told of a list of this name, whose items are read in
/// their order, and of the current item whenever it changes.
class PaintedList : public QWidget {
public:
    [[nodiscard]] virtual int count() const = 0;
    /// What assistive technology reads for an item from 0 to `count() - 1`.
    [[nodiscard]] virtual QString words(int item) const = 0;
    /// Where an item is on the widget; empty if nothing of it is to be seen.
    [[nodiscard]] virtual QRect place(int item) const = 0;
    /// The item at or around a point, or -1.
    [[nodiscard]] virtual int itemAt(const QPoint& point) const = 0;

    /// -1 where there are no items.
    [[nodiscard]] int current() const { return current_; }
    /// Does nothing for a number that is not one of an item.
    void setCurrent(int item);

protected:
    PaintedList(const QString& name, QWidget* parent);

    /// To be called when there are other items than before.
    void itemsChanged(int current);
    /// The current item is another one, or another text.
    virtual void currentChanged() {}

    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void tellFocus();

    int current_ = -1;
};

} // namespace desktop
