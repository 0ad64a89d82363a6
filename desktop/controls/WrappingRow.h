// SPDX-License-Identifier: MIT
#pragma once

#include <QLayout>
#include <QWidget>

#include <memory>
#include <vector>

class QHBoxLayout;

namespace desktop {

/// A row of controls that wraps into further rows if it is too long for its widget, so that no
/// control is cut off in a narrow window or with a large font.
///
/// In each row, the items that expand share the room left over. Hidden controls take up none.
class WrappingRow final : public QLayout {
public:
    /// Replaces a row made in Designer, which must be its widget's own layout: takes over all its
    /// items and deletes it.
    static void replace(QHBoxLayout* row);

    void addItem(QLayoutItem* item) override;
    [[nodiscard]] int count() const override;
    [[nodiscard]] QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    ~WrappingRow() override;

    [[nodiscard]] Qt::Orientations expandingDirections() const override;
    /// With all items in one row.
    [[nodiscard]] QSize sizeHint() const override;
    /// As wide as the widest item and as high as one row.
    [[nodiscard]] QSize minimumSize() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    void setGeometry(const QRect& place) override;

private:
    struct Row {
        std::vector<QLayoutItem*> items;
        /// The total of the items and the gaps between them.
        int width = 0;
        int height = 0;
    };

    WrappingRow() = default;
    [[nodiscard]] std::vector<Row> rowsIn(int width) const;
    void place(const Row& row, const QRect& line) const;

    std::vector<std::unique_ptr<QLayoutItem>> items_;
};

/// A splitter pane that is never lower than its wrapped content needs at its current width, which
/// the splitter would not ask for itself.
class WrappingPane final : public QWidget {
public:
    using QWidget::QWidget;

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
};

} // namespace desktop
