// SPDX-License-Identifier: MIT
#pragma once

#include "reports/Category.h"

#include <QColor>
#include <QLabel>
#include <QPainterPath>

/// What a flight category looks like wherever one is shown. Colours alone do not tell them apart
/// for everybody, so each has a shape and a letter of its own as well.
namespace desktop {

/// Green for VFR, blue for MVFR, red for IFR, magenta for LIFR and grey for the unknown one, in a
/// tone with at least the contrast of text with its ground, which may be light or dark. Letters on
/// the colour itself are legible in `oppositeOf` it.
[[nodiscard]] QColor categoryColor(reports::Category category, const QColor& ground);

/// "V", "M", "I", "L", and "?" for the unknown one.
[[nodiscard]] QString categoryLetter(reports::Category category);

/// A disc for VFR, a square for MVFR, a triangle for IFR, a diamond for LIFR and a ring for the
/// unknown one, of about equal weight. Fills the largest square in the middle of the place; is to
/// be filled, not stroked.
[[nodiscard]] QPainterPath categoryShape(reports::Category category, const QRectF& place);

/// Draws shape and word in the painter's pen colour and font, in the middle of a place, on a plate
/// of another colour if one is given. `note` follows the word. Where there is no room, the note is
/// left out, then the word becomes its letter, then that goes as well and the shape becomes
/// smaller; where it could not be told from the others, nothing is drawn.
void drawCategory(QPainter& painter, const QRectF& place, reports::Category category,
                  const QString& note = {}, const QColor& plate = {});

/// A category's shape and word on a plate of its colour.
///
/// For assistive technology it is a label: its accessible name is its own name and the word, such
/// as "Report category: VFR".
class CategoryBadge final : public QLabel {
public:
    explicit CategoryBadge(QString name, QWidget* parent = nullptr);

    void setCategory(reports::Category category);
    [[nodiscard]] reports::Category category() const { return category_; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString name_;
    reports::Category category_ = reports::Category::unknown;
};

} // namespace desktop
