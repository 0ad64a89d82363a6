// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/AviationWeatherStationCollection.h"

#include <cstddef>
#include <string>

namespace catalogue {

/// How many stations of a catalogue have what.
struct Figures {
    std::size_t stations = 0;
    std::size_t metars = 0;
    std::size_t tafs = 0;
    std::size_t iata = 0;
    std::size_t synop = 0;
    std::size_t radars = 0;
    std::size_t offices = 0;
    std::size_t regions = 0;
};

[[nodiscard]] Figures figuresOf(const AviationWeatherStationCollection& collection);

/// Says what a catalogue would lose by being replaced by one with a fifth fewer stations, METARs or
/// TAFs, as what follows the new one's name in a message; empty if it would lose less. Such a table
/// is more likely cut than right.
[[nodiscard]] std::string shrinkage(const Figures& present, const Figures& next);

} // namespace catalogue
