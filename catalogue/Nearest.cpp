// SPDX-License-Identifier: MIT
#include "catalogue/Nearest.h"

#include "catalogue/Miles.h"
#include "platform/text/Text.h"
#include "platform/values/Geodesy.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <limits>

namespace catalogue {
namespace {

platform::Location placeOf(const AviationWeatherStation& station) {
    return {station.latitude, station.longitude};
}

bool isOther(const AviationWeatherStation& station, const AviationWeatherStation& from) {
    return station.ICAO != from.ICAO && !platform::trimmed(station.ICAO.value_or("")).empty();
}

std::string_view compassPoint(double bearing) {
    constexpr std::array<std::string_view, 16> points{"N",  "NNE", "NE", "ENE", "E",  "ESE",
                                                      "SE", "SSE", "S",  "SSW", "SW", "WSW",
                                                      "W",  "WNW", "NW", "NNW"};
    const auto sector = std::lround(bearing / 360 * points.size());
    return points[static_cast<std::size_t>(sector) % points.size()];
}

} // namespace

std::optional<Neighbor> nearest(const AviationWeatherStation& from, const StationArray& stations,
                                const std::function<bool(const AviationWeatherStation&)>& counts) {
    const platform::Location centre = placeOf(from);
    const platform::DistanceBound bound(centre);
    double least = std::numeric_limits<double>::infinity();
    const std::shared_ptr<AviationWeatherStation>* found = nullptr;
    for (const auto& station : stations) {
        // Most stations are already farther away by the bound, which costs next to nothing.
        if (bound.leastMetres(placeOf(*station), least) >= least || !isOther(*station, from) ||
            !counts(*station)) {
            continue;
        }
        const double metres = distanceMetres(centre, placeOf(*station));
        if (metres < least) {
            least = metres;
            found = &station;
        }
    }
    if (found == nullptr) {
        return {};
    }
    return Neighbor{*found, least, initialBearing(centre, placeOf(**found))};
}

std::string wayInWords(const Neighbor& neighbor) {
    // The positions of stations are no more exact than that.
    constexpr double samePlace = 1;
    if (neighbor.metres < samePlace) {
        return "at the same place";
    }
    const auto miles = statuteMiles(neighbor.metres);
    const auto rounded = std::lround(neighbor.bearing);
    return fmt::format("{} mi {}, {:03}° true", miles < 1 ? "less than 1" : std::to_string(miles),
                       compassPoint(neighbor.bearing), rounded % 360 == 0 ? 360 : rounded);
}

} // namespace catalogue
