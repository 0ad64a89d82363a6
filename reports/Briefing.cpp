// SPDX-License-Identifier: MIT
#include "reports/Briefing.h"

#include "reports/Description.h"
#include "reports/RawText.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <ctime>
#include <optional>
#include <utility>

namespace reports {
namespace {

using Lines = std::vector<BriefingLine>;
using LineKind = BriefingLine::Kind;

const std::optional<Answer>& answerOf(Kind kind, const StationReports& reports) {
    return kind == Kind::metar ? reports.metarAnswer : reports.tafAnswer;
}

/// The time of the report that is there.
std::optional<Date> timeOf(Kind kind, const StationReports& reports) {
    if (kind == Kind::metar) {
        return reports.metar ? std::optional(reports.metar->observed) : std::nullopt;
    }
    return reports.taf ? std::optional(reports.taf->issued) : std::nullopt;
}

bool isWithin(Date date, std::chrono::minutes length, Date now) {
    return now - date < length && date - now < length;
}

/// When the weather of the world was last renewed.
std::optional<Date> renewalOf(Kind kind, const StationReports& all) {
    const auto& answer = answerOf(kind, all);
    return answer ? answer->renewed : std::nullopt;
}

/// The answer to the last request for the station itself, if nothing has come since.
const Answer* lastWord(Kind kind, const Known& known) {
    const auto& answer = answerOf(kind, known.station);
    const auto isSince = [&answer](const std::optional<Date>& date) {
        return date && *date > answer->asked;
    };
    return answer && !isSince(timeOf(kind, known.station)) && !isSince(renewalOf(kind, known.all))
               ? &*answer
               : nullptr;
}

/// What there is to say beside the report, or in its place.
void addWord(Lines& lines, Kind kind, std::string_view station, const Known& known,
             std::string_view server, Date now) {
    const std::string_view name = kind == Kind::metar ? "METAR" : "TAF";
    const auto kept = timeOf(kind, known.station);
    const Answer* answer = lastWord(kind, known);
    if (answer && answer->ending != Answer::Ending::whole) {
        const std::string words = answerInWords(kind, station, *answer, server, kept, now);
        lines.push_back({LineKind::words, answer->ending == Answer::Ending::nothing
                                              ? words
                                              : fmt::format("{}: {}", name, words)});
    } else if (!kept && known.station.openQuestions == 0) {
        lines.push_back({LineKind::words, fmt::format("No {} of {} is known.", name, station)});
    }
}

} // namespace

Lines briefingOf(std::string_view station, const Known& known, std::string_view server, Date now) {
    Lines lines;
    if (const auto& metar = known.station.metar) {
        lines.push_back(
            {LineKind::category,
             fmt::format("{}, {}", wordOf(metar->category), ageInWords(metar->observed, now)),
             metar->category});
        lines.push_back({LineKind::raw, metar->raw});
    }
    addWord(lines, Kind::metar, station, known, server, now);
    if (const auto& taf = known.station.taf) {
        lines.push_back({LineKind::words, "TAF: " + tafInWords(*taf, now)});
        lines.push_back({LineKind::raw, fmt::format("{}", fmt::join(brokenTaf(taf->raw), "\n"))});
    }
    addWord(lines, Kind::taf, station, known, server, now);
    if (known.station.openQuestions > 0) {
        lines.push_back({LineKind::words, fmt::format("Asking {}…", server)});
    }
    return lines;
}

std::string timeOfBriefing(Date now) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(now).time_since_epoch().count();
    return fmt::format("{:%d %b %Y %H:%M} UTC", fmt::gmtime(static_cast<std::time_t>(seconds)));
}

std::string briefingAsText(std::span<const BriefingLine> lines, Date now) {
    std::string text = timeOfBriefing(now) + "\n";
    for (const auto& [kind, line, category] : lines) {
        text += fmt::format("{}{}\n", kind == LineKind::station ? "\n" : "", line);
    }
    return text;
}

bool isMissing(Kind kind, const Known& known, Date now) {
    if (const auto& own = answerOf(kind, known.station)) {
        const bool isTold =
            own->ending == Answer::Ending::whole || own->ending == Answer::Ending::nothing;
        if (isWithin(own->asked, isTold ? briefingFresh : briefingPause, now)) {
            return false;
        }
    }
    const auto renewed = renewalOf(kind, known.all);
    const bool isThere = timeOf(kind, known.station).has_value();
    return !(isThere && renewed && isWithin(*renewed, briefingFresh, now));
}

} // namespace reports
