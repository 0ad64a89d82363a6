// SPDX-License-Identifier: MIT
#include "map/Measures.h"

#include "platform/values/Units.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace map {

namespace {

constexpr std::int64_t degree = 3600;
constexpr std::int64_t minute = 60;
/// The steps of the graticule, in seconds of arc.
constexpr std::array<std::int64_t, 19> steps{
    1,           2,           5,           10,          30,         minute,     2 * minute,
    5 * minute,  10 * minute, 30 * minute, degree,      2 * degree, 5 * degree, 10 * degree,
    15 * degree, 30 * degree, 45 * degree, 60 * degree, 90 * degree};

/// Parallels are not drawn closer to the poles than this.
constexpr double lastParallel = 85;

std::string angleText(std::int64_t seconds, char positive, char negative) {
    const std::int64_t size = std::abs(seconds);
    std::string text = fmt::format("{}°", size / degree);
    if (size % degree != 0) {
        text += fmt::format("{:02}′", size % degree / minute);
    }
    if (size % minute != 0) {
        text += fmt::format("{:02}″", size % minute);
    }
    if (seconds != 0 && size != 180 * degree) {
        text += seconds > 0 ? positive : negative;
    }
    return text;
}

ScaleMark mark(double metresPerPoint, double longest, double metresPerUnit, const char* unit) {
    const double most = longest * metresPerPoint / metresPerUnit;
    const double power = std::pow(10, std::floor(std::log10(most)));
    // Tolerates rounding: 0.3 times ten is not always three.
    const double part = most / power * (1 + 1e-9);
    const double value = (part >= 5 ? 5 : part >= 2 ? 2 : 1) * power;
    return {fmt::format("{:.6g} {}", value, unit), value * metresPerUnit / metresPerPoint};
}

} // namespace

Graticule graticule(const Camera& camera, double apart) {
    const double pointsPerSecond = camera.scale() / (360 * degree);
    const auto* found = std::ranges::find_if(steps, [&](std::int64_t step) {
        return static_cast<double>(step) * pointsPerSecond >= apart;
    });
    const std::int64_t step = found == steps.end() ? steps.back() : *found;
    const auto width = static_cast<double>(step);

    Graticule lines;
    const WorldRect seen = camera.seen();
    const auto count = [width](double secondsOfArc) {
        return static_cast<std::int64_t>(std::floor(secondsOfArc / width));
    };
    constexpr double turn = 360 * degree;
    for (std::int64_t i = count((seen.left - 0.5) * turn) + 1;
         i <= count((seen.right - 0.5) * turn); ++i) {
        const std::int64_t at = i * step;
        constexpr std::int64_t half = 180 * degree;
        const std::int64_t longitude = ((at + half) % (2 * half) + 2 * half) % (2 * half) - half;
        lines.meridians.push_back(
            {0.5 + static_cast<double>(at) / turn, angleText(longitude, 'E', 'W')});
    }
    const double north = std::min(unproject({0, seen.top}).latitude, lastParallel);
    const double south = std::max(unproject({0, seen.bottom}).latitude, -lastParallel);
    for (std::int64_t i = count(south * degree) + 1; i <= count(north * degree); ++i) {
        const std::int64_t at = i * step;
        lines.parallels.push_back(
            {projectedLatitude(static_cast<double>(at) / degree), angleText(at, 'N', 'S')});
    }
    return lines;
}

ScaleBar scaleBar(const Camera& camera, double longest) {
    const double latitude = unproject(camera.centre()).latitude;
    const double metresPerPoint = metresPerDegreeEast(latitude) * 360 / camera.scale();
    return {mark(metresPerPoint, longest, 1000, "km"),
            mark(metresPerPoint, longest, platform::metresPerMile, "mi")};
}

} // namespace map
