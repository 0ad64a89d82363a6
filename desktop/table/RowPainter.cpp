// SPDX-License-Identifier: MIT
#include "desktop/table/RowPainter.h"

#include "desktop/controls/CategoryLook.h"
#include "desktop/controls/Contrast.h"
#include "desktop/table/StationTableModel.h"

#include <QApplication>
#include <QPainter>

#include <optional>

namespace desktop {

namespace {

constexpr int lineWidth = 2;

bool isActive(const QStyleOptionViewItem& option) {
    return option.state.testFlag(QStyle::State_Active);
}

bool isSelected(const QStyleOptionViewItem& option) {
    return option.state.testFlag(QStyle::State_Selected);
}

/// The one of the two alternating row colours that is harder to stand out from.
QColor around(const QStyleOptionViewItem& option) {
    const QColor highlight = option.palette.color(QPalette::Active, QPalette::Highlight);
    const QColor one = option.palette.color(QPalette::Active, QPalette::Base);
    const QColor other = option.palette.color(QPalette::Active, QPalette::AlternateBase);
    return contrast(highlight, one) < contrast(highlight, other) ? one : other;
}

std::optional<reports::Category> categoryOf(const QModelIndex& index) {
    const QVariant category = index.data(StationTableModel::categoryRole);
    return category.isValid() ? std::optional(static_cast<reports::Category>(category.toInt()))
                              : std::nullopt;
}

void colorSelected(QStyleOptionViewItem& option) {
    QPalette& palette = option.palette;
    const auto color = [&](QPalette::ColorRole role) {
        return palette.color(QPalette::Active, role);
    };
    const Filling focused =
        legible(color(QPalette::Highlight), color(QPalette::HighlightedText), around(option));
    const QColor letters = color(QPalette::Text);
    const QColor pale = standingOut(
        mixed(color(QPalette::Base), color(QPalette::Highlight), 1.0 / 3), letters, contrastOfText);
    palette.setColor(QPalette::Active, QPalette::Highlight, focused.ground);
    palette.setColor(QPalette::Active, QPalette::HighlightedText, focused.letters);
    palette.setColor(QPalette::Inactive, QPalette::Highlight, pale);
    palette.setColor(QPalette::Inactive, QPalette::HighlightedText, letters);
}

/// Makes room for the category's shape, and gives it and the word the category's colour unless the
/// row is filled.
void showCategory(QStyleOptionViewItem& option, reports::Category category) {
    const int size = option.fontMetrics.capHeight();
    option.features |= QStyleOptionViewItem::HasDecoration;
    option.decorationSize = QSize(size, size);
    if (isSelected(option) && isActive(option)) {
        return;
    }
    const bool alternates = option.features.testFlag(QStyleOptionViewItem::Alternate);
    const QColor ground =
        option.palette.color(isActive(option) ? QPalette::Active : QPalette::Inactive,
                             isSelected(option) ? QPalette::Highlight
                             : alternates       ? QPalette::AlternateBase
                                                : QPalette::Base);
    const QColor color = categoryColor(category, ground);
    option.palette.setColor(QPalette::Text, color);
    option.palette.setColor(QPalette::HighlightedText, color);
}

} // namespace

void RowPainter::paint(QPainter* painter, const QStyleOptionViewItem& option,
                       const QModelIndex& index) const {
    QStyledItemDelegate::paint(painter, option, index);
    if (const auto category = categoryOf(index)) {
        QStyleOptionViewItem cell = option;
        initStyleOption(&cell, index);
        const QStyle* style = cell.widget ? cell.widget->style() : QApplication::style();
        const QRect place =
            style->subElementRect(QStyle::SE_ItemViewItemDecoration, &cell, cell.widget);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->fillPath(
            categoryShape(*category, place),
            cell.palette.color(isActive(option) ? QPalette::Active : QPalette::Inactive,
                               isSelected(option) ? QPalette::HighlightedText : QPalette::Text));
        painter->restore();
    }
    if (!isSelected(option) || isActive(option)) {
        return;
    }
    const QColor line = standingOut(option.palette.color(QPalette::Active, QPalette::Highlight),
                                    around(option), contrastOfShapes);
    const QRect& cell = option.rect;
    painter->fillRect(cell.left(), cell.top(), cell.width(), lineWidth, line);
    painter->fillRect(cell.left(), cell.bottom() + 1 - lineWidth, cell.width(), lineWidth, line);
}

void RowPainter::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    if (index.data(StationTableModel::markedRole).toBool()) {
        option->text.prepend(star);
    }
    if (isSelected(*option)) {
        colorSelected(*option);
    }
    if (const auto category = categoryOf(index)) {
        showCategory(*option, *category);
    }
}

} // namespace desktop
