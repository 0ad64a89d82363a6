// SPDX-License-Identifier: MIT
#include "desktop/table/StationTableModel.h"

#include "catalogue/StationCells.h"
#include "desktop/text/Text.h"

#include <algorithm>
#include <limits>

namespace desktop {

namespace {

using catalogue::StationColumn;
using catalogue::stationColumns;

Qt::Alignment alignmentOf(const StationColumn& column) {
    switch (column.alignment) {
    case StationColumn::Alignment::left:
        return Qt::AlignVCenter | Qt::AlignLeft;
    case StationColumn::Alignment::centre:
        return Qt::AlignVCenter | Qt::AlignHCenter;
    case StationColumn::Alignment::right:
        return Qt::AlignVCenter | Qt::AlignRight;
    }
    return {};
}

} // namespace

StationTableModel::StationTableModel(const platform::TableView& table) : table_(table) {}

void StationTableModel::reload() {
    beginResetModel();
    const std::int64_t rows = source_ ? source_->numberOfRowsInTableView(table_) : 0;
    rows_ = static_cast<int>(std::clamp<std::int64_t>(rows, 0, std::numeric_limits<int>::max()));
    endResetModel();
}

void StationTableModel::markChanged(int row) {
    if (row >= 0 && row < rows_) {
        const QModelIndex cell = index(row, markedColumn);
        emit dataChanged(cell, cell, {markedRole, Qt::AccessibleTextRole});
    }
}

QString StationTableModel::cellText(int row, int column) const {
    if (!source_ || row < 0 || row >= rows_ || column < 0 || column >= columnCount()) {
        return {};
    }
    const auto text = source_->tableView_objectValueForTableColumn_row(
        table_, stationColumns[static_cast<std::size_t>(column)].identifier, row);
    if (!text) {
        return {};
    }
    // A character takes at most four bytes in UTF-8.
    QString shown = shownText(std::string_view(*text).substr(0, std::size_t{4} * longestCell));
    if (shown.size() > longestCell) {
        const bool cutsPair = shown.at(longestCell - 2).isHighSurrogate();
        shown.truncate(cutsPair ? longestCell - 2 : longestCell - 1);
        shown += QChar(0x2026);
    }
    return shown;
}

int StationTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : rows_;
}

int StationTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(stationColumns.size());
}

QVariant StationTableModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const bool isMarked = index.column() == markedColumn && isMarked_ && isMarked_(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return cellText(index.row(), index.column());
    case markedRole:
        return isMarked;
    case Qt::AccessibleTextRole: {
        const QString text = cellText(index.row(), index.column());
        return isMarked ? QStringLiteral("%1, favorite").arg(text.trimmed()) : text;
    }
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(
            alignmentOf(stationColumns[static_cast<std::size_t>(index.column())]));
    default:
        return {};
    }
}

QVariant StationTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical || section < 0 || section >= columnCount()) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    const StationColumn& column = stationColumns[static_cast<std::size_t>(section)];
    switch (role) {
    case Qt::DisplayRole:
        return QString::fromUtf8(column.heading);
    case Qt::ToolTipRole:
        return QStringLiteral("%1\n%2").arg(QString::fromUtf8(column.name),
                                            QString::fromUtf8(column.meaning));
    case Qt::AccessibleTextRole:
        return QString::fromUtf8(column.name);
    case Qt::AccessibleDescriptionRole:
        return QString::fromUtf8(column.meaning);
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(alignmentOf(column));
    default:
        return {};
    }
}

} // namespace desktop
