// SPDX-License-Identifier: MIT
#include "desktop/table/TableColumns.h"

#include "desktop/table/RowPainter.h"

#include <QFontMetricsF>
#include <QHeaderView>
#include <QMenu>
#include <QScopedValueRollback>
#include <QTableView>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <span>

namespace desktop {

namespace {

/// How many rows are measured for the widths of columns: many if the table is larger than ever
/// before, few on other reloads, which come with every keystroke of a search.
constexpr int manyRows = 10'000;
constexpr int fewRows = 50;

constexpr int widestColumn = 10'000;

/// Where the weather columns stand until the user moves them: after the identifier, where they are
/// seen without scrolling.
constexpr int columnsBeforeWeather = 3;

/// In the settings: widths in pixels in the model's order, 0 for a column left alone, and
/// identifiers.
const QString widthsKey = QStringLiteral("columns");
const QString orderKey = QStringLiteral("columnOrder");
const QString hiddenKey = QStringLiteral("hiddenColumns");

/// Measures many short texts. Adding up the advances of single characters is about a hundred times
/// faster than laying the text out, and underestimates no text by more than a pixel.
class TextWidths {
public:
    explicit TextWidths(const QFont& font) : metrics_(font) {
        for (std::size_t c = 0; c < advances_.size(); ++c) {
            advances_[c] = metrics_.horizontalAdvance(QChar(static_cast<char16_t>(c)));
        }
    }

    [[nodiscard]] double of(const QString& text) const {
        double width = 1;
        for (const QChar c : text) {
            if (c.unicode() >= advances_.size()) {
                return 1 + metrics_.horizontalAdvance(text);
            }
            width += advances_[c.unicode()];
        }
        return width;
    }

private:
    QFontMetricsF metrics_;
    std::array<double, 256> advances_{};
};

std::vector<int> defaultOrder() {
    std::vector<int> order(static_cast<std::size_t>(StationTableModel::allColumns()));
    std::iota(order.begin(), order.end(), 0);
    std::rotate(order.begin() + columnsBeforeWeather,
                order.begin() + StationTableModel::stationColumns(), order.end());
    return order;
}

/// The columns named in a list of the settings, each once.
std::vector<int> columnsIn(const QVariant& list) {
    std::vector<int> columns;
    for (const QString& identifier : list.toStringList()) {
        const int column = StationTableModel::columnOf(identifier);
        if (column >= 0 && std::ranges::find(columns, column) == columns.end()) {
            columns.push_back(column);
        }
    }
    return columns;
}

} // namespace

TableColumns::TableColumns(QTableView& view, const StationTableModel& model)
    : view_(view),
      model_(model),
      columns_(static_cast<std::size_t>(StationTableModel::allColumns())),
      order_(defaultOrder()) {
    header().setSectionsMovable(true);
    connect(&header(), &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        if (!applying_) {
            at(column).setByUser = width;
        }
    });
    connect(&header(), &QHeaderView::sectionMoved, this, [this] {
        if (!applying_) {
            noteOrder();
        }
    });
}

QHeaderView& TableColumns::header() const {
    return *view_.horizontalHeader();
}

void TableColumns::setAskedWidth(int column, double width) {
    if (width >= 0 && width <= widestColumn) {
        at(column).asked = width;
        open(column);
    }
}

void TableColumns::measureContent() {
    const int rows = model_.rowCount();
    const int looks = std::min(rows, rows > mostRowsMeasured_ ? manyRows : fewRows);
    mostRowsMeasured_ = std::max(mostRowsMeasured_, rows);
    const TextWidths widths(view_.font());
    for (int column = 0; column < model_.columnCount(); ++column) {
        double& content = at(column).content;
        const double before = content;
        const double mark = column == StationTableModel::markedColumn ? widths.of(star) : 0;
        // A weather column's sample is about as wide as its cells get.
        const QString sample = StationTableModel::sampleOf(column);
        content = std::max(content, sample.isEmpty() ? 0 : widths.of(sample));
        const int some = sample.isEmpty() ? looks : std::min(looks, fewRows);
        for (int look = 0; look < some; ++look) {
            const auto row = static_cast<int>(std::int64_t{look} * rows / some);
            content = std::max(content, mark + widths.of(model_.cellText(row, column)));
        }
        if (content > before) {
            open(column);
        }
    }
}

void TableColumns::open(int column) {
    const Column& one = at(column);
    if (one.setByUser || column >= model_.columnCount()) {
        return;
    }
    const QScopedValueRollback guard(applying_, true);
    const int margin =
        view_.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &view_) + 1;
    const int text = static_cast<int>(std::ceil(std::max(one.asked, one.content)));
    const int air = view_.fontMetrics().averageCharWidth();
    header().resizeSection(column,
                           air + std::max(text + 2 * margin, header().sectionSizeHint(column)));
}

void TableColumns::fit() {
    mostRowsMeasured_ = 0;
    for (Column& one : columns_) {
        one.content = 0;
    }
    measureContent();
    apply();
}

void TableColumns::apply() {
    const QScopedValueRollback guard(applying_, true);
    const auto present = std::span(columns_).first(static_cast<std::size_t>(model_.columnCount()));
    // The last ones shown may have gone with the weather.
    const bool areAllHidden = std::ranges::all_of(present, &Column::isHidden);
    int place = 0;
    for (const int column : order_) {
        if (column >= model_.columnCount()) {
            continue;
        }
        header().moveSection(header().visualIndex(column), place++);
        header().setSectionHidden(column, areAllHidden ? column != StationTableModel::markedColumn
                                                       : at(column).isHidden);
        if (const auto width = at(column).setByUser) {
            header().resizeSection(column, *width);
        } else {
            open(column);
        }
    }
}

std::vector<int> TableColumns::shown() const {
    std::vector<int> columns;
    for (const int column : order_) {
        if (column < model_.columnCount() && !header().isSectionHidden(column)) {
            columns.push_back(column);
        }
    }
    return columns;
}

bool TableColumns::isHidden(int column) const {
    return columns_[static_cast<std::size_t>(column)].isHidden;
}

void TableColumns::setHidden(int column, bool isHidden) {
    if (isHidden && shown() == std::vector{column}) {
        return;
    }
    at(column).isHidden = isHidden;
    apply();
    if (isHidden) {
        hidden(column);
    }
}

void TableColumns::move(int column, int places) {
    const auto columns = shown();
    const auto from = std::ranges::find(columns, column) - columns.begin();
    const auto to = from + places;
    if (from < std::ssize(columns) && to >= 0 && to < std::ssize(columns)) {
        header().moveSection(header().visualIndex(column),
                             header().visualIndex(columns[static_cast<std::size_t>(to)]));
    }
}

void TableColumns::noteOrder() {
    // Columns that are away keep their places among all.
    int place = 0;
    for (int& column : order_) {
        if (column < model_.columnCount()) {
            column = header().logicalIndex(place++);
        }
    }
}

void TableColumns::reset() {
    order_ = defaultOrder();
    for (Column& one : columns_) {
        one.isHidden = false;
        one.setByUser.reset();
    }
    apply();
}

void TableColumns::addTo(QMenu& menu, int column) {
    const auto columns = shown();
    const bool isAlone = columns.size() == 1;
    const auto add = [&](const QString& text, bool isEnabled, auto chosen) {
        menu.addAction(text, this, chosen)->setEnabled(isEnabled);
    };
    add(QStringLiteral("&Hide Column"), !isAlone, [this, column] { setHidden(column, true); });
    add(QStringLiteral("Move &Left"), columns.front() != column,
        [this, column] { move(column, -1); });
    add(QStringLiteral("Move &Right"), columns.back() != column,
        [this, column] { move(column, 1); });
    menu.addSeparator();
    QMenu* all = menu.addMenu(QStringLiteral("&Columns"));
    for (const int one : order_) {
        if (one >= model_.columnCount()) {
            continue;
        }
        const bool isShown = std::ranges::find(columns, one) != columns.end();
        QAction* entry =
            all->addAction(model_.headerData(one, Qt::Horizontal, Qt::DisplayRole).toString());
        entry->setCheckable(true);
        entry->setChecked(isShown);
        entry->setEnabled(!isShown || !isAlone);
        connect(entry, &QAction::triggered, this,
                [this, one](bool isChecked) { setHidden(one, !isChecked); });
    }
    add(QStringLiteral("R&eset Columns"), true, [this] { reset(); });
}

void TableColumns::recall(const QSettings& memory) {
    const QVariantList widths = memory.value(widthsKey).toList();
    for (int column = 0;
         column < std::min<int>(StationTableModel::allColumns(), static_cast<int>(widths.size()));
         ++column) {
        if (const int width = widths[column].toInt(); width > 0 && width <= widestColumn) {
            at(column).setByUser = width;
        }
    }
    // A column that is not named follows the one that it follows by default.
    const std::vector<int> recalled = columnsIn(memory.value(orderKey));
    const std::vector<int> usual = defaultOrder();
    order_ = recalled;
    for (std::size_t i = 0; i < usual.size(); ++i) {
        if (std::ranges::find(recalled, usual[i]) == recalled.end()) {
            const auto before =
                i == 0 ? order_.begin() : std::ranges::find(order_, usual[i - 1]) + 1;
            order_.insert(before, usual[i]);
        }
    }
    const std::vector<int> away = columnsIn(memory.value(hiddenKey));
    for (const int column : usual) {
        at(column).isHidden = std::ranges::find(away, column) != away.end();
    }
    apply();
}

void TableColumns::remember(QSettings& memory) const {
    QVariantList widths;
    QStringList order;
    QStringList hiddenOnes;
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        widths.append(columns_[column].setByUser.value_or(0));
        order.append(StationTableModel::identifierOf(order_[column]));
        if (columns_[column].isHidden) {
            hiddenOnes.append(StationTableModel::identifierOf(static_cast<int>(column)));
        }
    }
    memory.setValue(widthsKey, widths);
    memory.setValue(orderKey, order);
    memory.setValue(hiddenKey, hiddenOnes);
}

} // namespace desktop
