// SPDX-License-Identifier: MIT
#include "reports/Codec.h"
#include "reports/Description.h"
#include "tests/fuzz/Fuzz.h"

void feed(std::span<const std::byte> input) {
    if (const auto metar = reports::decodedMetar(input)) {
        (void)reports::reportAsText("", &*metar, nullptr, metar->observed);
    }
    if (const auto taf = reports::decodedTaf(input)) {
        (void)reports::reportAsText("", nullptr, &*taf, taf->issued);
    }
}
