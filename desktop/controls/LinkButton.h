// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

namespace desktop {

/// A button that looks like a link: nothing but its words, which wrap where there is no room for
/// them in one line. They are drawn in the palette's colour of links, adjusted so that they can be
/// read on the window.
class LinkButton final : public QPushButton {
public:
    explicit LinkButton(QWidget* parent = nullptr);

    /// Plain text, in which an ampersand is one.
    void setWords(const QString& words);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString words_;
};

} // namespace desktop
