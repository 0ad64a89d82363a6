// SPDX-License-Identifier: MIT
#include "reports/Category.h"

#include <algorithm>
#include <array>
#include <utility>

namespace reports {
namespace {

constexpr std::array<std::pair<Category, std::string_view>, 4> names{{{Category::VFR, "VFR"},
                                                                      {Category::MVFR, "MVFR"},
                                                                      {Category::IFR, "IFR"},
                                                                      {Category::LIFR, "LIFR"}}};

Category byCeiling(int feet) {
    return feet < 500     ? Category::LIFR
           : feet < 1000  ? Category::IFR
           : feet <= 3000 ? Category::MVFR
                          : Category::VFR;
}

Category byVisibility(double miles) {
    return miles < 1    ? Category::LIFR
           : miles < 3  ? Category::IFR
           : miles <= 5 ? Category::MVFR
                        : Category::VFR;
}

Category byCeiling(const Ceiling& ceiling) {
    switch (ceiling.state) {
    case Ceiling::State::none:
        return Category::VFR;
    case Ceiling::State::known: {
        const Category known = byCeiling(ceiling.feet);
        return ceiling.mayBeLower && known != Category::LIFR ? Category::unknown : known;
    }
    case Ceiling::State::unknown:
        break;
    }
    return Category::unknown;
}

Category byVisibility(const std::optional<Visibility>& visibility) {
    if (!visibility) {
        return Category::unknown;
    }
    const Category least = byVisibility(visibility->miles);
    // "At least 4 miles" leaves open whether it is MVFR or VFR.
    return visibility->isOrMore && least != Category::VFR ? Category::unknown : least;
}

} // namespace

Ceiling ceilingOf(const Conditions& conditions) {
    if (conditions.layers.empty() && !conditions.verticalVisibility) {
        return {};
    }
    std::optional<int> lowest = conditions.verticalVisibility;
    bool isOneMissing = false;
    for (const Layer& layer : conditions.layers) {
        const bool isObscured = layer.cover == Cover::obscured;
        if (layer.cover == Cover::broken || layer.cover == Cover::overcast ||
            (isObscured && layer.base)) {
            isOneMissing |= !layer.base;
            lowest = layer.base ? std::min(*layer.base, lowest.value_or(*layer.base)) : lowest;
        } else {
            isOneMissing |=
                layer.cover == Cover::unknown || (isObscured && !conditions.verticalVisibility);
        }
    }
    if (lowest) {
        return {Ceiling::State::known, *lowest, isOneMissing};
    }
    return {isOneMissing ? Ceiling::State::unknown : Ceiling::State::none};
}

Category categoryOf(const Conditions& conditions) {
    const Category ceiling = byCeiling(ceilingOf(conditions));
    const Category visibility = byVisibility(conditions.visibility);
    const Category worse = std::max(ceiling, visibility);
    const bool isOneUnknown = std::min(ceiling, visibility) == Category::unknown;
    return isOneUnknown && worse != Category::LIFR ? Category::unknown : worse;
}

std::string_view nameOf(Category category) {
    const auto found =
        std::ranges::find(names, category, [](const auto& one) { return one.first; });
    return found == names.end() ? std::string_view() : found->second;
}

std::string_view wordOf(Category category) {
    const std::string_view name = nameOf(category);
    return name.empty() ? "unknown" : name;
}

Category categoryNamed(std::string_view name) {
    const auto found = std::ranges::find(names, name, [](const auto& one) { return one.second; });
    return found == names.end() ? Category::unknown : found->first;
}

} // namespace reports
