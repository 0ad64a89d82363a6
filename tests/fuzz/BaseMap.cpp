// SPDX-License-Identifier: MIT
#include "map/BaseMap.h"

#include "tests/fuzz/Fuzz.h"

void feed(std::span<const std::byte> input) {
    const auto base = map::BaseMap::read(input);
    if (!base) {
        return;
    }
    constexpr map::WorldRect places[] = {{0, 0, 1, 1}, {0.5, 0.3, 0.51, 0.31}, {-3, -1, 4, 2}};
    for (const auto& place : places) {
        for (const double scale : {1.0, 1024.0, 262'144.0}) {
            map::Lines lines;
            base->addLand(place, scale, lines);
            base->addCoasts(place, scale, lines);
            base->addBorders(place, scale, lines);
        }
    }
}
