// SPDX-License-Identifier: MIT
#include "desktop/report/TrendView.h"

#include "desktop/report/TrendPlot.h"

#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace desktop {

namespace {

using namespace std::chrono_literals;

constexpr int linesOfValues = 3;
constexpr int sideMargin = 6;

} // namespace

TrendView::TrendView(QWidget* parent)
    : QWidget(parent),
      plot_(new TrendPlot),
      scroll_(new QScrollArea(this)),
      values_(new QLabel(this)) {
    scroll_->setWidget(plot_);
    scroll_->setWidgetResizable(true);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setFocusPolicy(Qt::NoFocus);
    setFocusProxy(plot_);
    // What stays in place while the rest scrolls must be drawn anew.
    connect(scroll_->verticalScrollBar(), &QScrollBar::valueChanged, plot_,
            [plot = plot_] { plot->update(); });
    values_->setTextFormat(Qt::PlainText);
    values_->setWordWrap(true);
    values_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    values_->setContentsMargins(sideMargin, 0, sideMargin, 0);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroll_, 1);
    layout->addWidget(values_);
    plot_->currentHasChanged = [this] { showValues(); };
    showValues();
}

void TrendView::setReports(std::vector<reports::Metar> metars, reports::Date now) {
    std::erase_if(metars, [now](const reports::Metar& metar) {
        return metar.observed < now - 24h || metar.observed > now + 1h;
    });
    std::ranges::stable_sort(metars, {}, &reports::Metar::observed);
    const reports::Date ends = metars.empty() ? now : std::max(now, metars.back().observed);
    plot_->setReports(std::move(metars), now - 24h, ends);
}

void TrendView::showValues() {
    const bool isEmpty = plot_->count() == 0;
    scroll_->setHidden(isEmpty);
    // So that the curves keep their size while the words change.
    values_->setMinimumHeight(isEmpty ? 0 : linesOfValues * values_->fontMetrics().lineSpacing());
    values_->setText(isEmpty ? QStringLiteral("No METARs of the last 24 hours are known.")
                             : plot_->words(plot_->current()));
    values_->setAccessibleName(QStringLiteral("Trend values: ") + values_->text());
}

} // namespace desktop
