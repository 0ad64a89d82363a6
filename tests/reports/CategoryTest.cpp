// SPDX-License-Identifier: MIT
#include "reports/Category.h"

#include <gtest/gtest.h>

namespace reports {
namespace {

constexpr auto missing = std::nullopt;

TEST(Category, IsTheWorseOfCeilingAndVisibilityAndUnknownWhereSomethingWorseMayBe) {
    using Layers = std::vector<Layer>;
    const Layers clear{{Cover::none, {}, {}}};
    const Layers few{{Cover::few, 100, {}}, {Cover::scattered, 400, {}}};
    const auto broken = [](std::optional<int> base) { return Layers{{Cover::broken, base, {}}}; };
    const auto overcast = [](int base) {
        return Layers{
            {Cover::few, 100, {}}, {Cover::broken, 9000, {}}, {Cover::overcast, base, {}}};
    };
    const auto miles = [](double value) { return Visibility{value, false}; };
    const Visibility farEnough{6, true};
    const struct {
        std::optional<Visibility> visibility;
        Layers layers;
        std::optional<int> vertical;
        Category category;
    } cases[] = {
        {farEnough, clear, {}, Category::VFR},
        {farEnough, few, {}, Category::VFR},
        {farEnough, broken(3001), {}, Category::VFR},
        {farEnough, broken(3000), {}, Category::MVFR},
        {farEnough, overcast(1000), {}, Category::MVFR},
        {farEnough, overcast(999), {}, Category::IFR},
        {farEnough, overcast(500), {}, Category::IFR},
        {farEnough, overcast(499), {}, Category::LIFR},
        {farEnough, broken(0), {}, Category::LIFR},
        {miles(5.01), clear, {}, Category::VFR},
        {miles(5), clear, {}, Category::MVFR},
        {miles(3), clear, {}, Category::MVFR},
        {miles(2.98), clear, {}, Category::IFR},
        {miles(1), clear, {}, Category::IFR},
        {miles(0.99), clear, {}, Category::LIFR},
        {farEnough, {{Cover::obscured, {}, {}}}, 200, Category::LIFR},
        {miles(2), {{Cover::obscured, {}, {}}}, 700, Category::IFR},
        // A missing value might make it worse, but nothing is worse than LIFR.
        {farEnough, {}, {}, Category::unknown},
        {missing, clear, {}, Category::unknown},
        {missing, broken(2000), {}, Category::unknown},
        {missing, broken(400), {}, Category::LIFR},
        {miles(0.5), {}, {}, Category::LIFR},
        {miles(2), {}, {}, Category::unknown},
        {farEnough, broken(missing), {}, Category::unknown},
        {farEnough, {{Cover::broken, 2000, {}}, {Cover::overcast, {}, {}}}, {}, Category::unknown},
        {farEnough, {{Cover::broken, 400, {}}, {Cover::overcast, {}, {}}}, {}, Category::LIFR},
        {farEnough, {{Cover::obscured, 600, {}}}, {}, Category::IFR},
        {farEnough, {{Cover::unknown, {}, {}}}, {}, Category::unknown},
        {farEnough, {{Cover::obscured, {}, {}}}, {}, Category::unknown},
        {farEnough, {{Cover::few, missing, {}}}, {}, Category::VFR},
        {Visibility{4, true}, clear, {}, Category::unknown},
        {missing, {}, {}, Category::unknown},
    };
    for (const auto& [visibility, layers, vertical, category] : cases) {
        SCOPED_TRACE(&category - &cases[0].category);
        const Conditions conditions{{}, visibility, {}, layers, vertical};
        EXPECT_EQ(nameOf(categoryOf(conditions)), nameOf(category));
    }
    EXPECT_EQ(ceilingOf({{}, {}, {}, overcast(4000), {}}),
              (Ceiling{Ceiling::State::known, 4000, false}));
    for (const Category category : {Category::VFR, Category::MVFR, Category::IFR, Category::LIFR}) {
        EXPECT_EQ(categoryNamed(nameOf(category)), category);
    }
    EXPECT_EQ(categoryNamed("null"), Category::unknown);
    EXPECT_EQ(wordOf(Category::unknown), "unknown");
}

} // namespace
} // namespace reports
