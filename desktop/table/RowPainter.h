// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>

namespace desktop {

/// Precedes the name of a marked row.
inline const QString star = QStringLiteral("★ ");

/// Makes the selected row stand out from the others, and its letters from it, in any palette. The
/// row is filled if the table has the keyboard focus, and otherwise pale between two lines. Flight
/// categories have their shape and colour.
class RowPainter final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

} // namespace desktop
