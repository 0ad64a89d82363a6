// SPDX-License-Identifier: MIT
#include "desktop/table/StationTable.h"

#include "desktop/controls/Contrast.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QHeaderView>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>
#include <QTableView>

#include <cmath>
#include <utility>

namespace desktop {

namespace {

/// How many rows are measured for the widths of columns: many if the table is larger than ever
/// before, few on other reloads, which come with every keystroke of a search.
constexpr int manyRows = 10'000;
constexpr int fewRows = 50;

constexpr double widestColumn = 10'000;

/// The settings key of the widths that the user has set, in pixels; 0 for a column left alone.
const QString columnsKey = QStringLiteral("columns");

/// Precedes the name of a marked row.
const QString star = QStringLiteral("★ ");

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

/// Makes the selected row stand out from the others, and its letters from it, in any palette. The
/// row is filled if the table has the keyboard focus, and otherwise pale between two lines.
class Rows final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyledItemDelegate::paint(painter, option, index);
        if (!option.state.testFlag(QStyle::State_Selected) || isActive(option)) {
            return;
        }
        const QColor line = standingOut(option.palette.color(QPalette::Active, QPalette::Highlight),
                                        around(option), contrastOfShapes);
        const QRect& cell = option.rect;
        painter->fillRect(cell.left(), cell.top(), cell.width(), lineWidth, line);
        painter->fillRect(cell.left(), cell.bottom() + 1 - lineWidth, cell.width(), lineWidth,
                          line);
    }

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        if (index.data(StationTableModel::markedRole).toBool()) {
            option->text.prepend(star);
        }
        if (!option->state.testFlag(QStyle::State_Selected)) {
            return;
        }
        QPalette& palette = option->palette;
        const auto color = [&](QPalette::ColorRole role) {
            return palette.color(QPalette::Active, role);
        };
        const Filling focused =
            legible(color(QPalette::Highlight), color(QPalette::HighlightedText), around(*option));
        const QColor letters = color(QPalette::Text);
        const QColor pale =
            standingOut(mixed(color(QPalette::Base), color(QPalette::Highlight), 1.0 / 3), letters,
                        contrastOfText);
        palette.setColor(QPalette::Active, QPalette::Highlight, focused.ground);
        palette.setColor(QPalette::Active, QPalette::HighlightedText, focused.letters);
        palette.setColor(QPalette::Inactive, QPalette::Highlight, pale);
        palette.setColor(QPalette::Inactive, QPalette::HighlightedText, letters);
    }

private:
    static constexpr int lineWidth = 2;

    static bool isActive(const QStyleOptionViewItem& option) {
        return option.state.testFlag(QStyle::State_Active);
    }
    /// The one of the two alternating row colours that is harder to stand out from.
    static QColor around(const QStyleOptionViewItem& option) {
        const QColor highlight = option.palette.color(QPalette::Active, QPalette::Highlight);
        const QColor one = option.palette.color(QPalette::Active, QPalette::Base);
        const QColor other = option.palette.color(QPalette::Active, QPalette::AlternateBase);
        return contrast(highlight, one) < contrast(highlight, other) ? one : other;
    }
};

} // namespace

StationTable::StationTable(QTableView& view) : view_(view), model_(*this) {
    view_.setModel(&model_);
    view_.setItemDelegate(new Rows(&view_));
    view_.installEventFilter(this);
    connect(view_.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { selectionDidChange(); });
    connect(view_.horizontalHeader(), &QHeaderView::sectionResized, this, [this](int column) {
        if (!resizing_) {
            widths_[static_cast<std::size_t>(column)].setByUser = true;
        }
    });
    for (QTimer* soon : {&lossUntold_, &fitting_}) {
        soon->setSingleShot(true);
        soon->setInterval(0);
    }
    connect(&lossUntold_, &QTimer::timeout, this, [this] { selectionDidChange(); });
    connect(&fitting_, &QTimer::timeout, this, [this] { fit(); });
    fit();
}

StationTable::~StationTable() {
    view_.setModel(nullptr);
}

void StationTable::setDataSource(platform::TableViewDataSource* source) {
    model_.setDataSource(source);
}

void StationTable::setDelegate(platform::TableViewDelegate* delegate) {
    delegate_ = delegate;
}

void StationTable::setColumnWidth(std::string_view column, double width) {
    const auto index = catalogue::stationColumnOf(column);
    if (index && width >= 0 && width <= widestColumn) {
        widths_[*index].asked = width;
        openColumn(static_cast<int>(*index));
    }
}

void StationTable::reloadData() {
    const auto selected = static_cast<int>(selectedRow());
    {
        const QScopedValueRollback guard(reloading_, true);
        model_.reload();
        if (selected < model_.rowCount()) {
            select(selected);
        }
    }
    if (selected >= model_.rowCount()) {
        lossUntold_.start();
    }
    measureContent();
}

void StationTable::selectRow(std::int64_t row) {
    select(row < model_.rowCount() ? static_cast<int>(std::max<std::int64_t>(row, -1)) : -1);
    // The view sees no change when a selection is emptied that a reload has already emptied.
    if (lossUntold_.isActive()) {
        selectionDidChange();
    }
}

std::int64_t StationTable::selectedRow() const {
    const QModelIndexList rows = view_.selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

void StationTable::scrollRowToVisible(std::int64_t row) {
    if (row >= 0 && row < model_.rowCount()) {
        view_.scrollTo(model_.index(static_cast<int>(row), 0));
    }
}

void StationTable::setMarked(std::function<bool(int row)> isMarked) {
    model_.setMarked(std::move(isMarked));
}

int StationTable::widthOfColumns() const {
    return view_.horizontalHeader()->length() +
           view_.style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, &view_);
}

void StationTable::recall(const QSettings& memory) {
    const QVariantList widths = memory.value(columnsKey).toList();
    for (int column = 0;
         column < std::min<int>(model_.columnCount(), static_cast<int>(widths.size())); ++column) {
        if (const int width = widths[column].toInt(); width > 0 && width <= widestColumn) {
            widths_[static_cast<std::size_t>(column)].setByUser = true;
            view_.horizontalHeader()->resizeSection(column, width);
        }
    }
}

void StationTable::remember(QSettings& memory) const {
    QVariantList widths;
    for (int column = 0; column < model_.columnCount(); ++column) {
        const bool setByUser = widths_[static_cast<std::size_t>(column)].setByUser;
        widths.append(setByUser ? view_.columnWidth(column) : 0);
    }
    memory.setValue(columnsKey, widths);
}

void StationTable::select(int row) {
    if (row < 0) {
        view_.selectionModel()->clear();
        return;
    }
    // Callers ask for scrolling separately.
    const bool scrolls = view_.hasAutoScroll();
    view_.setAutoScroll(false);
    const QModelIndex index = model_.index(row, 0);
    view_.selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    view_.setAutoScroll(scrolls);
    // Last, since the delegate may reload the table.
    view_.selectionModel()->select(index,
                                   QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void StationTable::selectionDidChange() {
    if (reloading_) {
        return;
    }
    lossUntold_.stop();
    if (delegate_) {
        delegate_->tableViewSelectionDidChange(*this);
    }
}

void StationTable::measureContent() {
    const int rows = model_.rowCount();
    const int looks = std::min(rows, rows > mostRowsMeasured_ ? manyRows : fewRows);
    mostRowsMeasured_ = std::max(mostRowsMeasured_, rows);
    const TextWidths widths(view_.font());
    for (int column = 0; column < model_.columnCount(); ++column) {
        double& content = widths_[static_cast<std::size_t>(column)].content;
        const double before = content;
        const double mark = column == StationTableModel::markedColumn ? widths.of(star) : 0;
        for (int look = 0; look < looks; ++look) {
            const auto row = static_cast<int>(std::int64_t{look} * rows / looks);
            content = std::max(content, mark + widths.of(model_.cellText(row, column)));
        }
        if (content > before) {
            openColumn(column);
        }
    }
}

void StationTable::openColumn(int column) {
    const Width& width = widths_[static_cast<std::size_t>(column)];
    if (width.setByUser) {
        return;
    }
    const QScopedValueRollback guard(resizing_, true);
    QHeaderView& header = *view_.horizontalHeader();
    const int margin =
        view_.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &view_) + 1;
    const int text = static_cast<int>(std::ceil(std::max(width.asked, width.content)));
    const int air = view_.fontMetrics().averageCharWidth();
    header.resizeSection(column, air + std::max(text + 2 * margin, header.sectionSizeHint(column)));
}

void StationTable::fit() {
    const int margin =
        view_.style()->pixelMetric(QStyle::PM_FocusFrameVMargin, nullptr, &view_) + 1;
    const int row = view_.fontMetrics().height() + 2 * margin;
    view_.verticalHeader()->setMinimumSectionSize(1);
    view_.verticalHeader()->setDefaultSectionSize(row);
    view_.horizontalHeader()->setMinimumHeight(row + 2 * margin);
    mostRowsMeasured_ = 0;
    for (Width& width : widths_) {
        width.content = 0;
    }
    measureContent();
    for (int column = 0; column < model_.columnCount(); ++column) {
        openColumn(column);
    }
}

bool StationTable::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &view_ &&
        (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)) {
        // Deferred until the view and its headers have taken up the change.
        fitting_.start();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace desktop
