// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/report/PaintedList.h"
#include "desktop/report/TrendPanels.h"
#include "reports/Report.h"

#include <functional>
#include <utility>
#include <vector>

namespace desktop {

class TimeAxis;

/// The curves of a `TrendView`, without its words. Its items are the reports.
class TrendPlot final : public PaintedList {
public:
    explicit TrendPlot(QWidget* parent = nullptr);

    /// In the order of time, each within the axis from `begins` to `ends`.
    void setReports(std::vector<reports::Metar> metars, reports::Date begins, reports::Date ends);

    [[nodiscard]] int count() const override;
    [[nodiscard]] QString words(int item) const override;
    [[nodiscard]] QRect place(int item) const override;
    [[nodiscard]] int itemAt(const QPoint& point) const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] QSize sizeHint() const override { return minimumSizeHint(); }

    std::function<void()> currentHasChanged;

protected:
    void currentChanged() override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] TimeAxis axis() const;
    [[nodiscard]] QColor curveColor(std::size_t curve) const;
    void drawPanel(QPainter& painter, const TrendPanel& panel, const QRectF& place,
                   const TimeAxis& time) const;
    /// From the lowest upwards; those for which there is no room are left out.
    void drawMarks(QPainter& painter, const std::vector<TrendMark>& marks, const QRectF& area,
                   bool onTheRight) const;
    void drawTitle(QPainter& painter, const TrendPanel& panel, const QRectF& line) const;
    /// The bands themselves, or the words on them, which the grid does not cross.
    void drawBands(QPainter& painter, const QRectF& area, bool words) const;
    void drawArrows(QPainter& painter, const QRectF& line, const TimeAxis& time) const;
    void drawCurve(QPainter& painter, const TrendPanel& panel, std::size_t curve,
                   const QRectF& area, const TimeAxis& time) const;

    std::vector<reports::Metar> metars_;
    reports::Date begins_;
    reports::Date ends_;
    std::vector<TrendPanel> panels_;
};

} // namespace desktop
