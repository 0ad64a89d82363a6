// SPDX-License-Identifier: MIT
#include "desktop/report/FavoriteReports.h"

#include "desktop/controls/CategoryLook.h"
#include "desktop/text/Text.h"
#include "reports/Cells.h"

#include <QEvent>
#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <tuple>

namespace desktop {

namespace {

constexpr int mostLinesShown = 8;

/// One for a line without a METAR.
QStringList cells(const FavoriteReports::Line& line, platform::Date now) {
    const QString station = shownText(line.station);
    if (!line.metar) {
        return {station, QStringLiteral("no METAR is known")};
    }
    const auto& [conditions, category] = std::tie(line.metar->conditions, line.metar->category);
    return {station,
            shownText(reports::nameOf(category)),
            shownText(reports::windCell(conditions.wind)),
            shownText(reports::visibilityCell(conditions.visibility)),
            shownText(reports::ceilingCell(conditions)),
            shownText(reports::temperatureCell(line.metar->temperature)),
            shownText(reports::ageCell(line.metar->observed, now))};
}

} // namespace

/// The category's shape in its colour, as high as the letters.
QIcon FavoriteReports::iconOf(reports::Category category) const {
    const double scale = devicePixelRatioF();
    const int size = fontMetrics().ascent();
    QPixmap pixmap(QSize(size, size) * scale);
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(categoryShape(category, QRectF(0, 0, size, size)),
                     categoryColor(category, palette().color(QPalette::Base)));
    painter.end();
    return pixmap;
}

FavoriteReports::FavoriteReports(QWidget* parent) : QTreeWidget(parent) {
    setAccessibleName(QStringLiteral("Favorite reports"));
    setHeaderLabels({QStringLiteral("Favorite"), QStringLiteral("Category"), QStringLiteral("Wind"),
                     QStringLiteral("Visibility"), QStringLiteral("Ceiling"),
                     QStringLiteral("Temp."), QStringLiteral("Age")});
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setTabKeyNavigation(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setStretchLastSection(false);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    const auto choose = [this](QTreeWidgetItem* item) { chosen(item->text(0).toStdString()); };
    connect(this, &QTreeWidget::itemClicked, this, choose);
    connect(this, &QTreeWidget::itemActivated, this, choose);
    hide();
}

void FavoriteReports::show(const std::vector<Line>& lines, platform::Date now) {
    // Lines are changed in place, so that the user's own line stays the current one.
    while (topLevelItemCount() > static_cast<int>(lines.size())) {
        delete topLevelItem(topLevelItemCount() - 1);
    }
    for (int row = 0; row < static_cast<int>(lines.size()); ++row) {
        const Line& line = lines[static_cast<std::size_t>(row)];
        QTreeWidgetItem* item = topLevelItem(row);
        if (item == nullptr) {
            item = new QTreeWidgetItem(this);
        }
        const QStringList texts = cells(line, now);
        for (int column = 0; column < columnCount(); ++column) {
            item->setText(column, texts.value(column));
        }
        item->setIcon(1, line.metar ? iconOf(line.metar->category) : QIcon());
        item->setToolTip(0, line.metar ? toolTipOf(shownText(line.metar->raw)) : QString());
        item->setFirstColumnSpanned(false);
    }
    fit();
    setVisible(!lines.empty());
}

void FavoriteReports::changeEvent(QEvent* event) {
    QTreeWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        fit();
    }
}

void FavoriteReports::resizeEvent(QResizeEvent* event) {
    QTreeWidget::resizeEvent(event);
    fit();
}

void FavoriteReports::fit() {
    if (topLevelItemCount() > 0) {
        const int lines = std::min(topLevelItemCount(), mostLinesShown);
        const bool scrolls = header()->length() > viewport()->width();
        setFixedHeight(header()->sizeHint().height() + lines * sizeHintForRow(0) +
                       (scrolls ? horizontalScrollBar()->sizeHint().height() : 0) +
                       2 * frameWidth());
    }
}

} // namespace desktop
