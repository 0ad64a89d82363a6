// SPDX-License-Identifier: MIT
#include "desktop/controls/WrappingRow.h"

#include <QHBoxLayout>
#include <QResizeEvent>

#include <algorithm>

namespace desktop {

namespace {

bool expands(const QLayoutItem& item) {
    return item.expandingDirections().testFlag(Qt::Horizontal);
}

} // namespace

WrappingRow::~WrappingRow() = default;

void WrappingRow::replace(QHBoxLayout* row) {
    QWidget* widget = row->parentWidget();
    auto* wrapping = new WrappingRow;
    wrapping->setContentsMargins(row->contentsMargins());
    wrapping->setSpacing(row->spacing());
    while (QLayoutItem* item = row->takeAt(0)) {
        wrapping->addItem(item);
    }
    delete row;
    widget->setLayout(wrapping);
}

void WrappingRow::addItem(QLayoutItem* item) {
    items_.emplace_back(item);
}

int WrappingRow::count() const {
    return static_cast<int>(items_.size());
}

QLayoutItem* WrappingRow::itemAt(int index) const {
    return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* WrappingRow::takeAt(int index) {
    if (index < 0 || index >= count()) {
        return nullptr;
    }
    const auto found = items_.begin() + index;
    QLayoutItem* item = found->release();
    items_.erase(found);
    return item;
}

Qt::Orientations WrappingRow::expandingDirections() const {
    return Qt::Horizontal;
}

QSize WrappingRow::sizeHint() const {
    QSize size(0, 0);
    for (const Row& row : rowsIn(QLAYOUTSIZE_MAX)) {
        size = QSize(row.width, row.height);
    }
    return size.grownBy(contentsMargins());
}

QSize WrappingRow::minimumSize() const {
    QSize size(0, 0);
    for (const auto& item : items_) {
        size = size.expandedTo(item->minimumSize());
    }
    return size.grownBy(contentsMargins());
}

int WrappingRow::heightForWidth(int width) const {
    const QMargins margins = contentsMargins();
    int height = margins.top() + margins.bottom() - spacing();
    for (const Row& row : rowsIn(width - margins.left() - margins.right())) {
        height += row.height + spacing();
    }
    return height;
}

void WrappingRow::setGeometry(const QRect& place) {
    QLayout::setGeometry(place);
    QRect line = place.marginsRemoved(contentsMargins());
    for (const Row& row : rowsIn(line.width())) {
        line.setHeight(row.height);
        this->place(row, line);
        line.translate(0, row.height + spacing());
    }
}

std::vector<WrappingRow::Row> WrappingRow::rowsIn(int width) const {
    std::vector<Row> rows;
    for (const auto& item : items_) {
        if (item->widget() && item->isEmpty()) {
            continue;
        }
        const QSize size = item->sizeHint();
        if (rows.empty() || rows.back().width + spacing() + size.width() > width) {
            rows.push_back({{item.get()}, size.width(), size.height()});
            continue;
        }
        Row& row = rows.back();
        row.items.push_back(item.get());
        row.width += spacing() + size.width();
        row.height = std::max(row.height, size.height());
    }
    return rows;
}

void WrappingRow::place(const Row& row, const QRect& line) const {
    int left = line.left();
    // Negative only for an item wider than the line, which is alone on it.
    int free = line.width() - row.width;
    auto sharing = static_cast<int>(
        std::ranges::count_if(row.items, [](const QLayoutItem* item) { return expands(*item); }));
    for (QLayoutItem* item : row.items) {
        QSize size = item->sizeHint();
        if (free < 0) {
            size.setWidth(line.width());
        } else if (expands(*item)) {
            const int share = free / std::max(sharing--, 1);
            free -= share;
            size.rwidth() += share;
        }
        item->setGeometry({{left, line.top() + (line.height() - size.height()) / 2}, size});
        left += size.width() + spacing();
    }
}

QSize WrappingPane::minimumSizeHint() const {
    QSize size = QWidget::minimumSizeHint();
    size.setHeight(std::max(size.height(), layout()->minimumHeightForWidth(width())));
    return size;
}

void WrappingPane::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (event->size().width() != event->oldSize().width()) {
        updateGeometry();
    }
}

} // namespace desktop
