// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Text drawing as the logic describes it; an implementation of `Canvas` passes it on to its
/// toolkit.
namespace platform {

/// Components from 0 to 1, not premultiplied by alpha.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    friend bool operator==(const Color&, const Color&) = default;
};

/// In points; the canvas defines which way y grows.
struct Point {
    double x = 0;
    double y = 0;

    friend bool operator==(const Point&, const Point&) = default;
};

/// In points; its owner defines the origin and which way y grows.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    friend bool operator==(const Rect&, const Rect&) = default;
};

struct Font {
    enum Trait : unsigned { italic = 1, bold = 2 };

    /// Empty for the system font.
    std::string family;
    /// A sum of traits.
    unsigned traits = 0;
    /// From 0 to 15; 5 is regular, 9 bold.
    int weight = 5;
    /// In points.
    double size = 0;

    friend bool operator==(const Font&, const Font&) = default;
};

/// The canvas chooses whatever is absent.
struct TextAttributes {
    std::optional<Font> font;
    std::optional<Color> foregroundColor;

    friend bool operator==(const TextAttributes&, const TextAttributes&) = default;
};

class Canvas {
public:
    virtual ~Canvas() = default;
    virtual void drawText(std::string_view text, Point point, const TextAttributes& attributes) = 0;
};

} // namespace platform
