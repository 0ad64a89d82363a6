// SPDX-License-Identifier: MIT
#include "reports/Description.h"

#include "platform/values/Units.h"
#include "reports/Numbers.h"
#include "reports/RawText.h"
#include "reports/Words.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <iterator>
#include <utility>

namespace reports {
namespace {

using namespace std::chrono_literals;

constexpr double metresPerNauticalMile = 1852;
constexpr double metresPerFoot = 0.3048;

/// For the formatter, which would take a time point as nanoseconds: these end in the year 2262.
std::tm calendar(Date date) {
    return fmt::gmtime(static_cast<std::time_t>(
        std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count()));
}

std::string timeOf(Date date) {
    return fmt::format("{:%H:%M}", calendar(date));
}

std::string dayOf(Date date) {
    return fmt::format("{:%d %b}", calendar(date));
}

auto startOfDay(Date date) {
    return std::chrono::floor<std::chrono::days>(date);
}

std::string counted(std::int64_t count, const char* one) {
    return fmt::format("{} {}{}", count, one, count == 1 ? "" : "s");
}

std::string duration(Date::duration length) {
    const auto minutes = std::chrono::floor<std::chrono::minutes>(length);
    if (minutes < 2h) {
        return counted(minutes.count(), "minute");
    }
    const auto hours = std::chrono::floor<std::chrono::hours>(length);
    return hours < 48h ? counted(hours.count(), "hour")
                       : counted(std::chrono::floor<std::chrono::days>(length).count(), "day");
}

/// "21 Nov 18:00 to 23:00 UTC"; the second time has a day only if it is another one.
std::string spanOf(Date begins, Date ends) {
    const std::string day =
        startOfDay(begins) == startOfDay(ends) ? std::string() : dayOf(ends) + " ";
    return fmt::format("{} {} to {}{} UTC", dayOf(begins), timeOf(begins), day, timeOf(ends));
}

std::string layerInWords(const Layer& layer) {
    if (layer == Layer()) {
        // "//////": not even that there are clouds.
        return "unknown";
    }
    static constexpr std::array<std::string_view, 8> covers{
        "clouds",   "no significant clouds", "no significant clouds", "few", "scattered", "broken",
        "overcast", "sky obscured"};
    std::string text(covers[static_cast<std::size_t>(layer.cover)]);
    const bool isLayer = layer.cover >= Cover::few || layer.cover == Cover::unknown;
    if (layer.base) {
        text += fmt::format(" at {} ft", grouped(*layer.base));
    } else if (isLayer && layer.cover != Cover::obscured) {
        text += " at an unknown height";
    }
    return text + (layer.kind == "CB"    ? ", cumulonimbus"
                   : layer.kind == "TCU" ? ", towering cumulus"
                                         : "");
}

std::string cloudsInWords(const Conditions& conditions) {
    std::string text;
    for (const Layer& layer : conditions.layers) {
        text += (text.empty() ? "" : "; ") + layerInWords(layer);
    }
    if (conditions.verticalVisibility) {
        text += fmt::format("{}vertical visibility {} ft", text.empty() ? "" : "; ",
                            grouped(*conditions.verticalVisibility));
    }
    return text;
}

/// In hPa: the vapour pressure at a dew point, or the saturation pressure at a temperature.
double vapourPressure(double celsius) {
    return 6.1094 * std::exp(17.625 * celsius / (celsius + 243.04));
}

std::string temperatureInWords(double celsius) {
    return fmt::format("{} °C ({:.0f} °F)", plain(celsius), celsius * 9 / 5 + 32);
}

std::string temperaturesInWords(const Metar& metar) {
    if (!metar.temperature) {
        return metar.dewPoint ? "dew point " + temperatureInWords(*metar.dewPoint) : "";
    }
    std::string text = temperatureInWords(*metar.temperature);
    if (metar.dewPoint) {
        text += ", dew point " + temperatureInWords(*metar.dewPoint);
        const double humidity =
            100 * vapourPressure(*metar.dewPoint) / vapourPressure(*metar.temperature);
        if (humidity <= 100.5) {
            text += fmt::format(", humidity {:.0f} %", humidity);
        }
    }
    return text;
}

/// In feet; nothing if the report lacks a value that it is computed from.
std::optional<double> densityAltitude(const Metar& metar) {
    if (!metar.temperature || !metar.altimeter || !metar.elevation) {
        return {};
    }
    const double stationInches =
        *metar.altimeter * std::pow((288 - 0.0065 * *metar.elevation) / 288, 5.2561);
    const double kelvin = *metar.temperature + 273.15;
    const double vapour = metar.dewPoint ? vapourPressure(*metar.dewPoint) : 0;
    const double virtualKelvin =
        kelvin / (1 - vapour / (stationInches * hectopascalsPerInch) * (1 - 0.622));
    const double rankine = virtualKelvin * 9 / 5;
    return 145442.16 * (1 - std::pow(17.326 * stationInches / rankine, 0.235));
}

void add(std::vector<Fact>& facts, std::string_view name, std::string text) {
    if (!text.empty()) {
        facts.push_back({name, std::move(text)});
    }
}

/// "21:51 UTC", with its date where that is not today's.
std::string momentOf(Date date, Date now) {
    return (startOfDay(date) == startOfDay(now) ? std::string() : dayOf(date) + " ") +
           timeOf(date) + " UTC";
}

/// "At first …: Wind: …; Visibility: …".
std::string withFacts(std::string head, const std::vector<Fact>& facts) {
    const char* separator = ": ";
    for (const Fact& fact : facts) {
        head += fmt::format("{}{}: {}", separator, fact.name, fact.text);
        separator = "; ";
    }
    return head;
}

/// Words without what they say once more in another unit.
std::string inOneUnit(std::string words) {
    for (std::size_t at = 0; (at = words.find(" (")) != std::string::npos;) {
        words.erase(at, words.find(')', at) - at + 1);
    }
    return words;
}

std::string categoryInWords(Category category) {
    return category == Category::unknown ? "category unknown" : std::string(nameOf(category));
}

/// The least and the greatest of the values that there are.
class Extremes {
public:
    void add(std::optional<double> value) {
        if (value) {
            least_ = std::min(*value, least_.value_or(*value));
            most_ = std::max(*value, most_.value_or(*value));
        }
    }
    [[nodiscard]] std::optional<double> least() const { return least_; }
    [[nodiscard]] std::optional<double> most() const { return most_; }
    /// "temperature 3 to 8 °C"; empty for no value.
    [[nodiscard]] std::string inWords(const char* name, const char* unit) const {
        if (!least_) {
            return {};
        }
        const std::string from = fmt::format("{:.0f}", std::round(*least_) + 0.0);
        const std::string to = fmt::format("{:.0f}", std::round(*most_) + 0.0);
        return fmt::format("{} {}{}{} {}", name, from, from == to ? "" : " to ",
                           from == to ? "" : to, unit);
    }

private:
    std::optional<double> least_, most_;
};

} // namespace

bool isOld(Date observed, Date now) {
    return now - observed >= oldAge;
}

std::string agoInWords(Date observed, Date now) {
    // Clocks differ by seconds, so less than a minute ahead counts as now.
    return observed - now >= 1min
               ? duration(observed - now) + " ahead of this computer's clock"
               : duration(std::max(now - observed, Date::duration::zero())) + " ago";
}

std::string ageInWords(Date observed, Date now) {
    return fmt::format("{}, {}{}", momentOf(observed, now), agoInWords(observed, now),
                       isOld(observed, now) ? ", old" : "");
}

std::string windInWords(const std::optional<Wind>& wind) {
    if (!wind) {
        return {};
    }
    const auto speed = [](int knots) {
        return fmt::format("{} kt ({:.0f} m/s)", knots, knots * metresPerNauticalMile / 3600);
    };
    if (wind->speed == 0 && !wind->gust) {
        return "calm";
    }
    std::string text = wind->isVariable ? "variable, " + speed(wind->speed)
                       : wind->direction
                           ? fmt::format("from {}° at {}", *wind->direction, speed(wind->speed))
                           : speed(wind->speed) + ", direction not reported";
    if (wind->gust) {
        text += ", gusts " + speed(*wind->gust);
    }
    return text;
}

std::string_view windArrow(const std::optional<Wind>& wind) {
    static constexpr std::array<std::string_view, 8> arrows{"↓", "↙", "←", "↖", "↑", "↗", "→", "↘"};
    if (!wind || !wind->direction || wind->speed == 0) {
        return {};
    }
    return arrows[static_cast<std::size_t>((*wind->direction + 22) / 45 % 8)];
}

std::string visibilityInWords(const std::optional<Visibility>& visibility) {
    if (!visibility) {
        return {};
    }
    const double metres = visibility->miles * platform::metresPerMile;
    // Rounded to the steps in which most countries report it.
    const int step = metres < 800 ? 50 : metres < 5000 ? 100 : 1000;
    const int rounded = static_cast<int>(std::lround(metres / step)) * step;
    const std::string metric =
        rounded < 5000 ? grouped(rounded) + " m" : fmt::format("{} km", rounded / 1000);
    return fmt::format("{} statute mile{}{} ({})", plain(visibility->miles),
                       visibility->miles == 1 ? "" : "s", visibility->isOrMore ? " or more" : "",
                       metric);
}

std::string ceilingInWords(const Ceiling& ceiling) {
    switch (ceiling.state) {
    case Ceiling::State::none:
        return "none";
    case Ceiling::State::known:
        return fmt::format("{} ft{}", grouped(ceiling.feet),
                           ceiling.mayBeLower ? ", perhaps lower: a height is missing" : "");
    case Ceiling::State::unknown:
        break;
    }
    return "unknown";
}

std::vector<Fact> factsOf(const Conditions& conditions) {
    std::vector<Fact> facts;
    add(facts, "Wind", windInWords(conditions.wind));
    add(facts, "Visibility", visibilityInWords(conditions.visibility));
    add(facts, "Weather", weatherInWords(conditions.weather));
    add(facts, "Clouds", cloudsInWords(conditions));
    return facts;
}

std::vector<Fact> factsOf(const Metar& metar) {
    std::vector<Fact> facts = factsOf(metar.conditions);
    if (const auto variation = rawWindVariation(metar.raw);
        variation && !facts.empty() && facts.front().name == "Wind") {
        facts.front().text +=
            fmt::format(", varying {}° to {}°", variation->first, variation->second);
    }
    if (!metar.conditions.layers.empty() || metar.conditions.verticalVisibility) {
        add(facts, "Ceiling", ceilingInWords(ceilingOf(metar.conditions)));
    }
    add(facts, "Temperature", temperaturesInWords(metar));
    if (metar.altimeter) {
        add(facts, "Pressure",
            fmt::format("{:.0f} hPa ({:.2f} inHg)", *metar.altimeter * hectopascalsPerInch,
                        *metar.altimeter));
    }
    if (const auto altitude = densityAltitude(metar)) {
        const int feet = static_cast<int>(std::lround(*altitude / 100)) * 100;
        add(facts, "Density altitude",
            fmt::format("{} ft, at an elevation of {} ft", grouped(feet),
                        grouped(static_cast<int>(std::lround(*metar.elevation / metresPerFoot)))));
    }
    return facts;
}

std::string partInWords(const Forecast& forecast) {
    const std::string chance =
        forecast.probability ? fmt::format("Probability {} %, ", *forecast.probability) : "";
    const std::string span = spanOf(forecast.begins, forecast.ends);
    switch (forecast.kind) {
    case Forecast::Kind::from:
        return fmt::format("From {} {} UTC", dayOf(forecast.begins), timeOf(forecast.begins));
    case Forecast::Kind::becoming:
        return "Becoming " + spanOf(forecast.begins, forecast.complete.value_or(forecast.ends));
    case Forecast::Kind::temporary:
        return chance.empty() ? "Temporarily " + span : chance + "temporarily " + span;
    case Forecast::Kind::probable:
        return chance.empty() ? "Perhaps " + span : chance + span;
    case Forecast::Kind::base:
        break;
    }
    return "At first, " + span;
}

std::string forecastInWords(const Forecast& forecast) {
    return withFacts(partInWords(forecast) + ", " + categoryInWords(forecast.category),
                     factsOf(forecast.stated));
}

std::string metarInWords(const Metar& metar) {
    const Conditions& conditions = metar.conditions;
    std::string text = fmt::format("{} {} UTC, {}", dayOf(metar.observed), timeOf(metar.observed),
                                   categoryInWords(metar.category));
    const char* separator = ": ";
    const auto addWords = [&](const char* name, const std::string& words) {
        if (!words.empty()) {
            text += fmt::format("{}{}{}", separator, name, words);
            separator = "; ";
        }
    };
    addWords("", metar.temperature ? plain(*metar.temperature) + " °C" : "");
    addWords("dew point ", metar.dewPoint ? plain(*metar.dewPoint) + " °C" : "");
    addWords("wind ", inOneUnit(windInWords(conditions.wind)));
    addWords("visibility ", inOneUnit(visibilityInWords(conditions.visibility)));
    if (!conditions.layers.empty() || conditions.verticalVisibility) {
        addWords("ceiling ", ceilingInWords(ceilingOf(conditions)));
    }
    addWords("", metar.altimeter ? fmt::format("{:.0f} hPa", *metar.altimeter * hectopascalsPerInch)
                                 : "");
    return text;
}

std::string trendInWords(std::span<const Metar> metars) {
    if (metars.empty()) {
        return {};
    }
    Extremes temperature, dewPoint, wind, gust, pressure;
    std::optional<Ceiling> lowest;
    std::optional<Visibility> shortest;
    Category worst = Category::unknown;
    for (const Metar& metar : metars) {
        temperature.add(metar.temperature);
        dewPoint.add(metar.dewPoint);
        if (const auto& blowing = metar.conditions.wind) {
            wind.add(blowing->speed);
            gust.add(blowing->gust);
        }
        if (const Ceiling found = ceilingOf(metar.conditions);
            found.state == Ceiling::State::known && (!lowest || found.feet < lowest->feet)) {
            lowest = found;
        }
        if (const auto& seen = metar.conditions.visibility;
            seen && (!shortest || seen->miles < shortest->miles)) {
            shortest = seen;
        }
        if (metar.altimeter) {
            pressure.add(*metar.altimeter * hectopascalsPerInch);
        }
        worst = std::max(worst, metar.category);
    }
    std::string text =
        fmt::format("{}, {}", counted(static_cast<std::int64_t>(metars.size()), "METAR"),
                    spanOf(metars.front().observed, metars.back().observed));
    for (const std::string& part :
         {temperature.inWords("temperature", "°C"), dewPoint.inWords("dew point", "°C"),
          wind.inWords("wind", "kt"), gust.inWords("gusts", "kt"),
          lowest ? "lowest ceiling " + ceilingInWords(*lowest) : "",
          shortest ? "lowest visibility " + inOneUnit(visibilityInWords(shortest)) : "",
          pressure.inWords("pressure", "hPa"),
          worst == Category::unknown ? "" : fmt::format("worst category {}", nameOf(worst))}) {
        text += part.empty() ? "" : "; " + part;
    }
    return text + ".";
}

std::string tafInWords(const Taf& taf, Date now) {
    std::string text = taf.isCancelled ? "Cancelled. " : taf.ends <= now ? "Expired. " : "";
    if (taf.revision != Revision::none) {
        text += taf.revision == Revision::amended ? "Amended. " : "Corrected. ";
    }
    return text + fmt::format("Issued {} {} UTC, valid {}", dayOf(taf.issued), timeOf(taf.issued),
                              spanOf(taf.begins, taf.ends));
}

std::string answerInWords(Kind kind, std::string_view station, const Answer& answer,
                          std::string_view server, std::optional<Date> kept, Date now) {
    const std::string shown =
        kept ? "; this is what it sent at " + momentOf(*kept, now) : std::string();
    const std::string when = momentOf(answer.asked, now);
    switch (answer.ending) {
    case Answer::Ending::notReached:
        return fmt::format("{} could not be reached at {}{}.", server, when, shown);
    case Answer::Ending::refused:
        return fmt::format("{} refused at {} ({}){}.", server, when, answer.status, shown);
    case Answer::Ending::notUnderstood:
        return fmt::format("{} sent something that is no report at {}{}.", server, when, shown);
    case Answer::Ending::nothing:
        return kind == Kind::metar
                   ? fmt::format("{} has sent no METAR in the last hours; asked at {}.", station,
                                 when)
                   : fmt::format("No TAF of {} is in force; asked at {}.", station, when);
    case Answer::Ending::whole:
        break;
    }
    return fmt::format("Asked {} at {}.", server, when);
}

std::string statusInWords(const StationReports& reports, std::string_view station,
                          std::string_view server, Date now) {
    if (reports.openQuestions > 0) {
        return fmt::format("Asking {}…", server);
    }
    const auto& [metar, taf, metarAnswer, tafAnswer, open] = reports;
    std::string metars =
        metarAnswer ? answerInWords(Kind::metar, station, *metarAnswer, server,
                                    metar ? std::optional(metar->observed) : std::nullopt, now)
                    : fmt::format("No METAR of {} has been asked for yet.", station);
    const bool faredAlike = metarAnswer && tafAnswer && metarAnswer->ending == tafAnswer->ending &&
                            tafAnswer->ending != Answer::Ending::nothing;
    if (!tafAnswer || faredAlike) {
        return metars;
    }
    return metars + " " +
           answerInWords(Kind::taf, station, *tafAnswer, server,
                         taf ? std::optional(taf->issued) : std::nullopt, now);
}

std::string reportAsText(std::string_view heading, const Metar* metar, const Taf* taf, Date now) {
    std::string text(heading);
    text += '\n';
    if (metar) {
        const std::string_view category = nameOf(metar->category);
        text += fmt::format("\n{}{}{}\n{}\n", category, category.empty() ? "" : ", ",
                            ageInWords(metar->observed, now), metar->raw);
        for (const Fact& fact : factsOf(*metar)) {
            text += fmt::format("{}: {}\n", fact.name, fact.text);
        }
    }
    if (taf) {
        text += fmt::format("\n{}\n", tafInWords(*taf, now));
        for (const std::string& line : brokenTaf(taf->raw)) {
            text += line + "\n";
        }
        for (const Forecast& part : taf->forecasts) {
            text += withFacts(partInWords(part), factsOf(part.stated)) + "\n";
        }
    }
    return text;
}

} // namespace reports
