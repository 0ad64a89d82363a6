// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/Nearest.h"
#include "reports/Store.h"
#include "weather/WorldWeather.h"

#include <optional>
#include <string>

/// Which other station to look at for a METAR or a TAF. Main thread only.
namespace weather {

/// As reports name the station; empty for one without an identifier.
[[nodiscard]] std::string reportsName(const AviationWeatherStation& station);

struct NearestReport {
    catalogue::Neighbor neighbor;
    /// When its METAR was observed or its TAF issued; absent if all that is known is that the
    /// catalogue lists the station as one that sends such reports.
    std::optional<platform::Date> reported;
};

/// Finds the nearest station with a current report: a METAR that is not old, or a TAF that is
/// neither cancelled nor past its end. A TAF that does not yet hold counts, since it has already
/// taken the place of the one before.
///
/// Whether there is a report is told by the weather of the world while that is on and was renewed
/// so lately that the file itself is not old. Where it is not, and where it knows of no station,
/// the catalogue decides: by its flag for METARs, or for TAFs.
class NearestReports {
public:
    /// Both are borrowed.
    NearestReports(const reports::Store& store, const WorldWeather& world)
        : store_(store), world_(world) {}

    /// Absent if there is none.
    [[nodiscard]] std::optional<NearestReport> from(const AviationWeatherStation& station,
                                                    reports::Kind kind,
                                                    const StationArray& stations,
                                                    platform::Date now) const;

    /// Whether the station has no such report itself. Until that can be told from a current report,
    /// from what the server has answered lately or from the weather of the world, the catalogue's
    /// flag decides.
    [[nodiscard]] bool isLacking(const AviationWeatherStation& station, reports::Kind kind,
                                 platform::Date now) const;

private:
    [[nodiscard]] std::optional<platform::Date>
    reported(const AviationWeatherStation& station, reports::Kind kind, platform::Date now) const;
    [[nodiscard]] bool isWorldFresh(reports::Kind kind, platform::Date now) const;

    const reports::Store& store_;
    const WorldWeather& world_;
};

/// "EGWU NORTHOLT", as far as the station has them.
[[nodiscard]] std::string stationInWords(const AviationWeatherStation& station);
/// The rest: "8 mi N, 352° true (reported 12 minutes ago)" or "… (listed as reporting)".
[[nodiscard]] std::string wayInWords(const NearestReport& nearest, platform::Date now);

} // namespace weather
