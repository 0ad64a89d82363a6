// SPDX-License-Identifier: MIT
#pragma once

#include <QLayout>
#include <QWidget>

#include <memory>
#include <vector>

class QHBoxLayout;

namespace desktop {

/// A row of controls that goes on in further rows where it is too long for its widget, so that no
/// control is cut off in a narrow window or a large font.
///
/// In every row what expands shares the room that is left over. Hidden controls take none.
class WrappingRow final : public QLayout {
public:
    /// Takes the place of a row made in Designer, with all that is in it, and deletes that. The row
    /// is its widget's own layout.
    static void replace(QHBoxLayout* row);

    void addItem(QLayoutItem* item) override;
    [[nodiscard]] int count() const override;
    [[nodiscard]] QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    ~WrappingRow() override;

    [[nodiscard]] Qt::Orientations expandingDirections() const override;
    /// All in one row.
    [[nodiscard]] QSize sizeHint() const override;
    /// The longest item alone, as high as one row.
    [[nodiscard]] QSize minimumSize() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    void setGeometry(const QRect& place) override;

private:
    struct Row {
        std::vector<QLayoutItem*> items;
        /// Of the items and what lies between them.
        int width = 0;
        int height = 0;
    };

    WrappingRow() = default;
    [[nodiscard]] std::vector<Row> rowsIn(int width) const;
    void place(const Row& row, const QRect& line) const;

    std::vector<std::unique_ptr<QLayoutItem>> items_;
};

/// A pane of a splitter that is never lower than its wrapped content needs at its width, which the
/// splitter would not ask for.
class WrappingPane final : public QWidget {
public:
    using QWidget::QWidget;

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
};

} // namespace desktop
