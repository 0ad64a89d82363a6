// SPDX-License-Identifier: MIT
#include "reports/Cells.h"

#include "reports/Description.h"
#include "reports/Numbers.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace reports {

using namespace std::chrono_literals;

std::string windCell(const std::optional<Wind>& wind) {
    if (!wind) {
        return {};
    }
    if (wind->speed == 0 && !wind->gust) {
        return "calm";
    }
    const std::string from = wind->isVariable  ? "VRB "
                             : wind->direction ? fmt::format("{:03}° ", *wind->direction)
                                               : "";
    return fmt::format("{}{}{} kt", from, wind->speed,
                       wind->gust ? fmt::format("G{}", *wind->gust) : "");
}

std::string visibilityCell(const std::optional<Visibility>& visibility) {
    if (!visibility) {
        return {};
    }
    return plain(visibility->miles) + (visibility->isOrMore ? "+ SM" : " SM");
}

std::string ceilingCell(const Conditions& conditions) {
    const Ceiling ceiling = ceilingOf(conditions);
    switch (ceiling.state) {
    case Ceiling::State::none:
        return "none";
    case Ceiling::State::known:
        return fmt::format("{}{} ft", ceiling.mayBeLower ? "≤ " : "", grouped(ceiling.feet));
    case Ceiling::State::unknown:
        break;
    }
    return {};
}

std::string temperatureCell(const std::optional<double>& celsius) {
    return celsius ? fmt::format("{} °C", std::lround(*celsius)) : "";
}

std::string pressureCell(const std::optional<double>& inches) {
    return inches ? fmt::format("{} hPa", std::lround(*inches * hectopascalsPerInch)) : "";
}

std::string ageCell(Date observed, Date now) {
    const auto age = now - observed;
    if (age <= -1min) {
        return "ahead";
    }
    const auto minutes = std::max(std::chrono::floor<std::chrono::minutes>(age), 0min);
    if (minutes < 2h) {
        return fmt::format("{} min", minutes.count());
    }
    return minutes < 48h ? fmt::format("{} h", std::chrono::floor<std::chrono::hours>(age).count())
                         : fmt::format("{} d", std::chrono::floor<std::chrono::days>(age).count());
}

} // namespace reports
