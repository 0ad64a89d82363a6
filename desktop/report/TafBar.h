// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/report/PaintedList.h"
#include "reports/Report.h"

#include <optional>
#include <vector>

namespace desktop {

class TimeAxis;

/// A TAF's validity as a bar, from left to right in UTC, coloured by flight category.
///
/// The parts that last follow one another; a change that takes its time is drawn as a slope from
/// one to the next. Parts for a while, and those that are only probable, are hatched and stand in
/// lanes below. A line marks the present time where it is within the validity.
///
/// The parts are its items, in the TAF's order, each with its words as a tool tip. Those that lie
/// outside the validity are items without a place. A cancelled TAF has none.
class TafBar final : public PaintedList {
public:
    explicit TafBar(QWidget* parent = nullptr);

    /// Copies the TAF; null for none. With an equal one only the mark moves.
    void setTaf(const reports::Taf* taf, reports::Date now);

    [[nodiscard]] int count() const override;
    [[nodiscard]] QString words(int item) const override;
    [[nodiscard]] QRect place(int item) const override;
    [[nodiscard]] int itemAt(const QPoint& point) const override;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    /// Where a forecast is drawn.
    struct Part {
        reports::Date begins;
        reports::Date ends;
        /// When a change that takes its time is complete.
        std::optional<reports::Date> complete;
        /// 0 for what lasts, 1 and more for the lanes below.
        int lane = 0;
    };

    void arrange();
    [[nodiscard]] bool canBeDrawn() const;
    [[nodiscard]] TimeAxis axis() const;
    [[nodiscard]] double laneHeight() const;
    [[nodiscard]] double laneTop(int lane) const;
    [[nodiscard]] QRectF frameOf(const Part& part) const;
    /// What of a part is free for letters: the longer side of the mark for now.
    [[nodiscard]] QRectF besideNow(const QRectF& frame) const;
    void drawLasting(QPainter& painter, std::size_t item) const;
    void drawPassing(QPainter& painter, std::size_t item) const;
    void drawNow(QPainter& painter) const;

    std::optional<reports::Taf> taf_;
    reports::Date now_;
    /// One for each forecast.
    std::vector<Part> parts_;
    int lanes_ = 1;
};

} // namespace desktop
