// SPDX-License-Identifier: MIT
#include "desktop/table/StationTableModel.h"

#include "catalogue/StationCells.h"
#include "desktop/table/WeatherColumns.h"
#include "desktop/text/Text.h"
#include "platform/text/Text.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace desktop {

namespace {

using Alignment = catalogue::StationColumn::Alignment;

/// What the two kinds of columns have in common.
struct Heading {
    const char* heading;
    const char* name;
    const char* meaning;
    Alignment alignment;
};

const catalogue::StationColumn& stationColumn(int column) {
    return catalogue::stationColumns[static_cast<std::size_t>(column)];
}

const WeatherColumn& weatherColumn(int column) {
    return weatherColumns[static_cast<std::size_t>(column - StationTableModel::stationColumns())];
}

bool isWeather(int column) {
    return column >= StationTableModel::stationColumns();
}

bool isCategory(int column) {
    return column == StationTableModel::stationColumns() + static_cast<int>(categoryColumn);
}

Heading headingOf(int column) {
    const auto parts = [](const auto& one) {
        return Heading{one.heading, one.name, one.meaning, one.alignment};
    };
    return isWeather(column) ? parts(weatherColumn(column)) : parts(stationColumn(column));
}

Qt::Alignment alignmentOf(int column) {
    switch (headingOf(column).alignment) {
    case Alignment::left:
        return Qt::AlignVCenter | Qt::AlignLeft;
    case Alignment::centre:
        return Qt::AlignVCenter | Qt::AlignHCenter;
    case Alignment::right:
        return Qt::AlignVCenter | Qt::AlignRight;
    }
    return {};
}

/// Without case and accents. Of a text in another script only the case is lost.
SortKey keyOf(std::string_view text) {
    text = platform::trimmed(text);
    if (platform::isAscii(text)) {
        std::string folded(text);
        std::ranges::transform(folded, folded.begin(), platform::asciiLower);
        return SortKey::of(std::move(folded));
    }
    const std::string letters = platform::inAsciiLetters(text);
    const std::string_view kept = platform::trimmed(letters);
    return SortKey::of(platform::lowerCased(kept.empty() ? text : kept));
}

/// Cells show numbers as texts, and longitudes in an odd form; they are sorted by what stands
/// behind them.
SortKey stationKey(const AviationWeatherStation& station, int column) {
    const auto identifier = stationColumn(column).identifier;
    if (identifier == "5") {
        return station.SYNOPIndex == 0 ? SortKey()
                                       : SortKey::of(static_cast<double>(station.SYNOPIndex));
    }
    if (identifier == "6") {
        return SortKey::of(station.latitude);
    }
    if (identifier == "7") {
        return SortKey::of(station.longitude);
    }
    if (identifier == "8") {
        return SortKey::of(static_cast<double>(station.ELEV));
    }
    return keyOf(stationColumn(column).text(station).value_or(""));
}

} // namespace

StationTableModel::StationTableModel(const platform::TableView& table) : table_(table) {}

int StationTableModel::stationColumns() {
    return static_cast<int>(catalogue::stationColumns.size());
}

int StationTableModel::allColumns() {
    return stationColumns() + static_cast<int>(weatherColumns.size());
}

QString StationTableModel::identifierOf(int column) {
    return isWeather(column) ? QString::fromUtf8(weatherColumn(column).identifier)
                             : exactText(stationColumn(column).identifier);
}

int StationTableModel::columnOf(const QString& identifier) {
    for (int column = 0; column < allColumns(); ++column) {
        if (identifierOf(column) == identifier) {
            return column;
        }
    }
    return -1;
}

QString StationTableModel::sampleOf(int column) {
    return isWeather(column) ? QString::fromUtf8(weatherColumn(column).sample) : QString();
}

void StationTableModel::reload() {
    beginResetModel();
    const std::int64_t rows = source_ ? source_->numberOfRowsInTableView(table_) : 0;
    rows_ = static_cast<int>(std::clamp<std::int64_t>(rows, 0, std::numeric_limits<int>::max()));
    setOrder(sortedRows());
    endResetModel();
}

void StationTableModel::markChanged(int row) {
    if (row >= 0 && row < rows_) {
        const QModelIndex cell = index(shownRow(row), markedColumn);
        emit dataChanged(cell, cell, {markedRole, Qt::AccessibleTextRole});
    }
}

void StationTableModel::setWeather(std::optional<Weather> weather) {
    const bool shows = weather.has_value();
    if (shows == weather_.has_value()) {
        weather_ = std::move(weather);
        weatherChanged();
        return;
    }
    if (shows) {
        beginInsertColumns({}, stationColumns(), allColumns() - 1);
        weather_ = std::move(weather);
        endInsertColumns();
    } else {
        beginRemoveColumns({}, stationColumns(), allColumns() - 1);
        weather_.reset();
        endRemoveColumns();
    }
    arrange();
}

void StationTableModel::weatherChanged() {
    if (!weather_ || rows_ == 0) {
        return;
    }
    if (sort_ && isWeather(sort_->column)) {
        arrange();
    }
    emit dataChanged(index(0, stationColumns()), index(rows_ - 1, allColumns() - 1));
}

void StationTableModel::sortBy(std::optional<Sort> sort) {
    if (sort == sort_) {
        return;
    }
    const auto before = std::exchange(sort_, sort);
    arrange();
    for (const auto& changed : {before, sort}) {
        if (changed && changed->column < columnCount()) {
            emit headerDataChanged(Qt::Horizontal, changed->column, changed->column);
        }
    }
}

int StationTableModel::shownRow(std::int64_t row) const {
    if (row < 0 || row >= rows_) {
        return -1;
    }
    return places_.empty() ? static_cast<int>(row) : places_[static_cast<std::size_t>(row)];
}

int StationTableModel::sourceRow(int shownRow) const {
    if (shownRow < 0 || shownRow >= rows_) {
        return -1;
    }
    return order_.empty() ? shownRow : order_[static_cast<std::size_t>(shownRow)];
}

SortKey StationTableModel::sortKey(int row, int column) const {
    if (isWeather(column)) {
        const auto metar = metarIn(row);
        return metar ? weatherColumn(column).key(*metar) : SortKey();
    }
    const auto station = stationOfRow_(row);
    return station ? stationKey(*station, column) : SortKey();
}

std::vector<int> StationTableModel::sortedRows() const {
    if (!sort_ || sort_->column < 0 || sort_->column >= columnCount() || !stationOfRow_) {
        return {};
    }
    std::vector<SortKey> keys;
    keys.reserve(static_cast<std::size_t>(rows_));
    for (int row = 0; row < rows_; ++row) {
        keys.push_back(sortKey(row, sort_->column));
    }
    std::vector<int> order(static_cast<std::size_t>(rows_));
    std::iota(order.begin(), order.end(), 0);
    const bool descends = sort_->order == SortOrder::descending;
    std::ranges::stable_sort(order, [&keys, descends](int one, int other) {
        const SortKey& left = keys[static_cast<std::size_t>(one)];
        const SortKey& right = keys[static_cast<std::size_t>(other)];
        if (left.kind != right.kind) {
            return left.kind < right.kind;
        }
        const SortKey& first = descends ? right : left;
        const SortKey& second = descends ? left : right;
        return first.number < second.number ||
               (first.number == second.number && first.text < second.text);
    });
    return order;
}

void StationTableModel::setOrder(std::vector<int> order) {
    order_ = std::move(order);
    places_.resize(order_.size());
    for (std::size_t place = 0; place < order_.size(); ++place) {
        places_[static_cast<std::size_t>(order_[place])] = static_cast<int>(place);
    }
}

void StationTableModel::arrange() {
    std::vector<int> order = sortedRows();
    if (order == order_) {
        return;
    }
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<int> rows;
    for (const QModelIndex& one : before) {
        rows.push_back(sourceRow(one.row()));
    }
    setOrder(std::move(order));
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i) {
        after.append(index(shownRow(rows[static_cast<std::size_t>(i)]), before[i].column()));
    }
    changePersistentIndexList(before, after);
    emit layoutChanged({}, VerticalSortHint);
}

std::shared_ptr<const reports::Metar> StationTableModel::metarIn(int row) const {
    const auto station = weather_ && stationOfRow_ ? stationOfRow_(row) : nullptr;
    if (!station || !station->ICAO) {
        return nullptr;
    }
    const std::string_view identifier = platform::trimmed(*station->ICAO);
    return identifier.empty() ? nullptr : weather_->metarOf(std::string(identifier));
}

QString StationTableModel::weatherText(int row, int column) const {
    const auto metar = metarIn(row);
    return metar ? shownText(weatherColumn(column).text(*metar, weather_->now())) : QString();
}

QString StationTableModel::cellText(int row, int column) const {
    if (!source_ || row < 0 || row >= rows_ || column < 0 || column >= columnCount()) {
        return {};
    }
    if (isWeather(column)) {
        return weatherText(row, column);
    }
    const auto text = source_->tableView_objectValueForTableColumn_row(
        table_, stationColumn(column).identifier, row);
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
    if (parent.isValid()) {
        return 0;
    }
    return weather_ ? allColumns() : stationColumns();
}

QVariant StationTableModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const int row = sourceRow(index.row());
    const int column = index.column();
    const auto isMarked = [&] { return column == markedColumn && isMarked_ && isMarked_(row); };
    switch (role) {
    case Qt::DisplayRole:
        return cellText(row, column);
    case markedRole:
        return isMarked();
    case categoryRole: {
        const auto metar = isCategory(column) ? metarIn(row) : nullptr;
        return metar ? QVariant(static_cast<int>(metar->category)) : QVariant();
    }
    case Qt::AccessibleTextRole: {
        const QString text = cellText(row, column);
        return isMarked() ? QStringLiteral("%1, favorite").arg(text.trimmed()) : text;
    }
    case Qt::ToolTipRole: {
        const auto metar = isWeather(column) ? metarIn(row) : nullptr;
        return metar ? QVariant(toolTipOf(shownText(metar->raw))) : QVariant();
    }
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(alignmentOf(column));
    default:
        return {};
    }
}

QVariant StationTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical || section < 0 || section >= columnCount()) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    const Heading column = headingOf(section);
    switch (role) {
    case Qt::DisplayRole:
        return QString::fromUtf8(column.heading);
    case Qt::ToolTipRole:
        return QStringLiteral("%1\n%2").arg(QString::fromUtf8(column.name),
                                            QString::fromUtf8(column.meaning));
    case Qt::AccessibleTextRole: {
        const QString name = QString::fromUtf8(column.name);
        if (!sort_ || sort_->column != section) {
            return name;
        }
        return name + (sort_->order == SortOrder::ascending
                           ? QStringLiteral(", sorted ascending")
                           : QStringLiteral(", sorted descending"));
    }
    case Qt::AccessibleDescriptionRole:
        return QString::fromUtf8(column.meaning);
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(alignmentOf(section));
    default:
        return {};
    }
}

} // namespace desktop
