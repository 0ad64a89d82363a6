// SPDX-License-Identifier: MIT
#pragma once

#include "reports/Report.h"

#include <QWidget>

#include <vector>

class QLabel;
class QScrollArea;

namespace desktop {

class TrendPlot;

/// The METARs of the last 24 hours as curves over a common time in UTC: temperature and dew point,
/// wind and gust with arrows to where it blows, ceiling and visibility over bands of flight
/// category, and pressure. What a report lacks, and any time of more than 90 minutes without a
/// report, is a gap.
///
/// The values of one report, the one nearest to the pointer or chosen with the arrow keys, Home and
/// End, stand in words below the curves, in a label whose accessible name begins with "Trend
/// values". The curves are a list of the reports for assistive technology, and their description
/// sums them up. They scroll where there is no room for them.
class TrendView final : public QWidget {
public:
    explicit TrendView(QWidget* parent = nullptr);

    /// Reports that are older than 24 hours at `now` are left out, and so are those more than an
    /// hour ahead of it, of which one is mistaken. Their order does not matter.
    void setReports(std::vector<reports::Metar> metars, reports::Date now);

    /// The wrapped label would make layouts take the preferred height for the least one.
    [[nodiscard]] bool hasHeightForWidth() const override { return false; }

    /// The label with the values.
    [[nodiscard]] const QLabel& values() const { return *values_; }

private:
    void showValues();

    TrendPlot* plot_;
    QScrollArea* scroll_;
    QLabel* values_;
};

} // namespace desktop
