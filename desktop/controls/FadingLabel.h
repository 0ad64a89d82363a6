// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/text/Text.h"
#include "platform/views/Views.h"

#include <QGraphicsOpacityEffect>
#include <QLabel>
#include <QPropertyAnimation>

#include <algorithm>

namespace desktop {

/// Fades a label, which it borrows, out and in.
class FadingLabel final : public platform::FadingTextField {
public:
    explicit FadingLabel(QLabel& label)
        : label_(label),
          effect_(*new QGraphicsOpacityEffect(&label)),
          animation_(&effect_, "opacity") {
        label_.setTextFormat(Qt::PlainText);
        effect_.setOpacity(1);
        label_.setGraphicsEffect(&effect_);
    }

    void setText(const std::string& text) override { label_.setText(shownText(text)); }
    void setHidden(bool hidden) override { label_.setHidden(hidden); }
    void setTextColor(const platform::Color& color) override {
        const auto part = [](double value) {
            return static_cast<float>(std::clamp(value, 0., 1.));
        };
        QPalette palette = label_.palette();
        palette.setColor(label_.foregroundRole(),
                         QColor::fromRgbF(part(color.red), part(color.green), part(color.blue),
                                          part(color.alpha)));
        label_.setPalette(palette);
    }
    void animateAlpha(double alpha) override {
        animation_.stop();
        animation_.setEndValue(alpha);
        animation_.start();
    }

private:
    QLabel& label_;
    QGraphicsOpacityEffect& effect_;
    QPropertyAnimation animation_;
};

} // namespace desktop
