// SPDX-License-Identifier: MIT
#include "weather/NearestReports.h"

#include "platform/text/Text.h"
#include "reports/Description.h"

#include <fmt/format.h>

namespace weather {
namespace {

using platform::Date;
using reports::Kind;

bool isListed(const AviationWeatherStation& station, Kind kind) {
    // "U" stands for "T" and another meaning together.
    return kind == Kind::metar ? station.METAR == 'X'
                               : station.aviationFlag == 'T' || station.aviationFlag == 'U';
}

} // namespace

std::string reportsName(const AviationWeatherStation& station) {
    return std::string(platform::trimmed(station.ICAO.value_or("")));
}

std::optional<Date> NearestReports::reported(const AviationWeatherStation& station, Kind kind,
                                             Date now) const {
    const auto reports = store_.reportsOf(reportsName(station));
    if (kind == Kind::metar) {
        const auto& metar = reports.metar;
        return metar && !reports::isOld(metar->observed, now) ? std::optional(metar->observed)
                                                              : std::nullopt;
    }
    const auto& taf = reports.taf;
    return taf && !taf->isCancelled && now < taf->ends ? std::optional(taf->issued) : std::nullopt;
}

bool NearestReports::isWorldFresh(Kind kind, Date now) const {
    const auto renewed = world_.renewed(kind);
    return world_.isOn() && renewed && !reports::isOld(*renewed, now);
}

std::optional<NearestReport> NearestReports::from(const AviationWeatherStation& station, Kind kind,
                                                  const StationArray& stations, Date now) const {
    if (isWorldFresh(kind, now)) {
        const auto reporting = catalogue::nearest(station, stations, [&](const auto& other) {
            return reported(other, kind, now).has_value();
        });
        if (reporting) {
            return NearestReport{*reporting, reported(*reporting->station, kind, now)};
        }
    }
    const auto listed = catalogue::nearest(
        station, stations, [kind](const auto& other) { return isListed(other, kind); });
    return listed ? std::optional(NearestReport{*listed, std::nullopt}) : std::nullopt;
}

bool NearestReports::isLacking(const AviationWeatherStation& station, Kind kind, Date now) const {
    if (reported(station, kind, now)) {
        return false;
    }
    if (isWorldFresh(kind, now)) {
        return true;
    }
    const auto reports = store_.reportsOf(reportsName(station));
    const auto& answer = kind == Kind::metar ? reports.metarAnswer : reports.tafAnswer;
    // Whatever a whole reply brought is not current, or it would have been found above.
    const bool saysSo = answer && !reports::isOld(answer->asked, now) &&
                        (answer->ending == reports::Answer::Ending::nothing ||
                         answer->ending == reports::Answer::Ending::whole);
    return saysSo || !isListed(station, kind);
}

std::string stationInWords(const AviationWeatherStation& station) {
    const std::string name(platform::trimmed(station.stationName.value_or("")));
    const std::string identifier = reportsName(station);
    return identifier.empty() || name.empty() ? identifier + name : identifier + " " + name;
}

std::string wayInWords(const NearestReport& nearest, Date now) {
    return fmt::format("{} ({})", catalogue::wayInWords(nearest.neighbor),
                       nearest.reported ? "reported " + reports::agoInWords(*nearest.reported, now)
                                        : "listed as reporting");
}

} // namespace weather
