// SPDX-License-Identifier: MIT
#include "desktop/table/StationTableModel.h"

#include "desktop/text/Text.h"

#include <algorithm>
#include <array>
#include <limits>

namespace desktop {

namespace {

struct Column {
    std::string_view identifier;
    const char* heading;
    const char* name;
    /// What the cells mean, letter by letter where they are codes.
    const char* meaning;
    Qt::AlignmentFlag alignment;
};

constexpr std::array columns{
    Column{"1", "State", "State", "State or province, or the beginning of the region's name",
           Qt::AlignHCenter},
    Column{"2", "Name", "Name", "Name of the station", Qt::AlignLeft},
    Column{"3", "ICAO", "ICAO identifier", "Four-character location identifier", Qt::AlignLeft},
    Column{"4", "IATA", "IATA identifier", "Three-letter IATA or FAA identifier", Qt::AlignLeft},
    Column{"5", "WMO", "WMO index", "Synoptic block and station number\n0 = none", Qt::AlignRight},
    Column{"6", "Latitude", "Latitude", "Degrees, minutes and seconds, N = north, S = south",
           Qt::AlignRight},
    Column{"7", "Longitude", "Longitude", "Degrees, minutes and seconds, N = east, S = west",
           Qt::AlignRight},
    Column{"8", "Elev.", "Elevation", "Metres above sea level", Qt::AlignRight},
    Column{"9", "METAR", "METAR", "X = reports METARs\nZ = obsolete", Qt::AlignHCenter},
    Column{"10", "Radar", "NEXRAD", "X = weather radar", Qt::AlignHCenter},
    Column{"11", "Aviation", "Aviation",
           "V = end point of AIRMETs and SIGMETs\nA = air route traffic control centre\n"
           "T = issues TAFs\nU = both T and V",
           Qt::AlignHCenter},
    Column{"12", "Upper air", "Upper air", "X = weather balloons\nW = wind profiler",
           Qt::AlignHCenter},
    Column{"13", "Obs.", "Observation",
           "A = automatic, ASOS\nW = automatic, AWOS\nM = mesonet\nH = human\nG = augmented",
           Qt::AlignHCenter},
    Column{"14", "Office", "Office",
           "F = weather forecast office (WFO)\nR = river forecast centre (RFC)\n"
           "C = national prediction centre (NCEP)",
           Qt::AlignHCenter},
    Column{"15", "Priority", "Priority", "Plotting priority, 0 = highest", Qt::AlignHCenter},
    Column{"16", "Country", "Country", "Two-letter ISO 3166 code", Qt::AlignLeft},
};

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

int StationTableModel::columnOf(std::string_view identifier) {
    const auto* found = std::ranges::find(columns, identifier, &Column::identifier);
    return found == columns.end() ? -1 : static_cast<int>(found - columns.begin());
}

QString StationTableModel::cellText(int row, int column) const {
    if (!source_ || row < 0 || row >= rows_ || column < 0 || column >= columnCount()) {
        return {};
    }
    const auto text = source_->tableView_objectValueForTableColumn_row(
        table_, columns[static_cast<std::size_t>(column)].identifier, row);
    if (!text) {
        return {};
    }
    // A character takes four bytes at most.
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
    return parent.isValid() ? 0 : static_cast<int>(columns.size());
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
        return isMarked ? tr("%1, favorite").arg(text.trimmed()) : text;
    }
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(Qt::AlignVCenter |
                                   columns[static_cast<std::size_t>(index.column())].alignment);
    default:
        return {};
    }
}

QVariant StationTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical || section < 0 || section >= columnCount()) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    const Column& column = columns[static_cast<std::size_t>(section)];
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
        return QVariant::fromValue(Qt::AlignVCenter | column.alignment);
    default:
        return {};
    }
}

} // namespace desktop
