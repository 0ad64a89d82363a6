// SPDX-License-Identifier: MIT
#include "desktop/controls/CategoryLook.h"

#include "desktop/controls/Contrast.h"

#include <QAccessible>
#include <QPainter>
#include <gtest/gtest.h>

#include <cmath>
#include <set>

namespace desktop {
namespace {

using reports::Category;

constexpr std::array categories{Category::VFR, Category::MVFR, Category::IFR, Category::LIFR,
                                Category::unknown};

QImage pictureOf(Category category) {
    QImage image(24, 24, QImage::Format_ARGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.fillPath(categoryShape(category, QRectF(2, 2, 20, 20)), Qt::black);
    return image;
}

TEST(CategoryLook, IsLegibleAndItsOwnOnEveryGround) {
    for (const char* ground : {"white", "#efefef", "#808080", "#2d3034", "#1e2023", "black"}) {
        SCOPED_TRACE(ground);
        std::set<QRgb> colors;
        for (const Category category : categories) {
            const QColor color = categoryColor(category, QColor(ground));
            EXPECT_GE(contrast(color, QColor(ground)), contrastOfText);
            EXPECT_GE(contrast(color, oppositeOf(color)), contrastOfText);
            colors.insert(color.rgb());
        }
        EXPECT_EQ(colors.size(), categories.size());
    }
}

TEST(CategoryLook, ShapesAndLettersTellThemApartWithoutColours) {
    for (const Category one : categories) {
        for (const Category other : categories) {
            if (one == other) {
                continue;
            }
            EXPECT_NE(categoryLetter(one), categoryLetter(other));
            const QImage first = pictureOf(one);
            const QImage second = pictureOf(other);
            int difference = 0;
            for (int at = 0; at < 24 * 24; ++at) {
                difference += std::abs(qGray(first.pixel(at % 24, at / 24)) -
                                       qGray(second.pixel(at % 24, at / 24)));
            }
            EXPECT_GT(difference / 255, 40)
                << categoryLetter(one).toStdString() << categoryLetter(other).toStdString();
        }
    }
}

TEST(CategoryLook, ABadgeIsReadAsItsNameAndWord) {
    CategoryBadge badge("Report category");
    for (const auto& [category, name] :
         {std::pair(Category::LIFR, "Report category: LIFR"),
          std::pair(Category::unknown, "Report category: unknown")}) {
        badge.setCategory(category);
        badge.resize(badge.sizeHint());
        EXPECT_EQ(QAccessible::queryAccessibleInterface(&badge)->text(QAccessible::Name), name);
        // The widest part of the word is inside: the last column of letters is.
        const QImage image = badge.grab().toImage();
        const QColor plate = image.pixelColor(image.width() / 2, 1);
        int letters = 0;
        for (int y = 0; y < image.height(); ++y) {
            letters += contrast(image.pixelColor(image.width() - 3, y), plate) > 2 ? 1 : 0;
        }
        EXPECT_EQ(letters, 0);
        EXPECT_GE(contrast(plate, badge.palette().color(QPalette::Window)), contrastOfText);
    }
}

} // namespace
} // namespace desktop
