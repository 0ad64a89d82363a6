// SPDX-License-Identifier: MIT
#pragma once

#include "map/Camera.h"

#include <string>
#include <vector>

/// What helps the user to judge places and distances: the graticule and the scale bar.
namespace map {

struct GraticuleLine {
    /// x of a meridian, which may be on another turn of the earth, or y of a parallel.
    double at = 0;
    /// Such as "47°30′N".
    std::string label;
};

struct Graticule {
    std::vector<GraticuleLine> meridians;
    std::vector<GraticuleLine> parallels;
};

/// The lines at the smallest round step that keeps meridians at least `apart` points apart.
[[nodiscard]] Graticule graticule(const Camera& camera, double apart);

/// A round distance, and its length in points from east to west at the middle of the view.
struct ScaleMark {
    /// Such as "0.5 km".
    std::string label;
    double length = 0;
};

struct ScaleBar {
    ScaleMark kilometres;
    ScaleMark statuteMiles;
};

/// Each mark is 1, 2 or 5 times a power of ten: the longest that takes at most `longest` points.
[[nodiscard]] ScaleBar scaleBar(const Camera& camera, double longest);

} // namespace map
