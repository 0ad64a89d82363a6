// SPDX-License-Identifier: MIT
#include "reports/Reader.h"

#include "platform/text/Text.h"
#include "reports/Category.h"
#include "reports/Ranges.h"
#include "reports/RawText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace reports {
namespace {

/// The number that `text` consists of, if it is in the range.
std::optional<double> numberOf(std::string_view text, const Range<double>& range) {
    text = platform::trimmed(text);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !range.holds(value)) {
        return {};
    }
    return value;
}

std::optional<int> wholeNumberOf(std::string_view text, const Range<int>& range) {
    const auto value = numberOf(text, {double(range.least), double(range.most)});
    return value ? std::optional(static_cast<int>(std::lround(*value))) : std::nullopt;
}

/// Reads a time in UTC, "2025-09-20T18:53:00.000Z", with or without the fraction.
std::optional<Date> dateOf(std::string_view text) {
    text = platform::trimmed(text);
    constexpr std::string_view form = "0000-00-00T00:00:00";
    if (text.size() <= form.size() || !text.ends_with('Z')) {
        return {};
    }
    for (std::size_t i = 0; i < form.size(); ++i) {
        if (form[i] == '0' ? !platform::isDigit(text[i]) : text[i] != form[i]) {
            return {};
        }
    }
    const auto part = [text](std::size_t at, std::size_t length) {
        int value = 0;
        std::from_chars(text.data() + at, text.data() + at + length, value);
        return value;
    };
    const std::chrono::year_month_day day(std::chrono::year(part(0, 4)),
                                          std::chrono::month(static_cast<unsigned>(part(5, 2))),
                                          std::chrono::day(static_cast<unsigned>(part(8, 2))));
    const auto time = std::chrono::hours(part(11, 2)) + std::chrono::minutes(part(14, 2)) +
                      std::chrono::seconds(part(17, 2));
    if (!day.ok() || part(11, 2) > 23 || part(14, 2) > 59 || part(17, 2) > 59) {
        return {};
    }
    const Date date = Date(std::chrono::sys_days(day)) + time;
    return dates.holds(date) ? std::optional(date) : std::nullopt;
}

constexpr std::array<std::pair<std::string_view, Cover>, 10> covers{{{"SKC", Cover::none},
                                                                     {"CLR", Cover::none},
                                                                     {"NSC", Cover::none},
                                                                     {"NCD", Cover::none},
                                                                     {"CAVOK", Cover::CAVOK},
                                                                     {"FEW", Cover::few},
                                                                     {"SCT", Cover::scattered},
                                                                     {"BKN", Cover::broken},
                                                                     {"OVC", Cover::overcast},
                                                                     {"OVX", Cover::obscured}}};

Cover coverOf(std::string_view text) {
    const auto* found = std::ranges::find(covers, text, [](const auto& one) { return one.first; });
    return found == covers.end() ? Cover::unknown : found->second;
}

/// Collects the elements of a wind, which may come in any order.
struct WindParts {
    std::optional<int> direction;
    bool isVariable = false;
    std::optional<int> speed;
    std::optional<int> gust;

    [[nodiscard]] std::optional<Wind> wind() const {
        if (!speed) {
            return {};
        }
        Wind wind{direction, isVariable, *speed, gust};
        // In the classic layout a direction of 0 means that it varies; north is 360.
        if (*speed > 0 && direction == 0) {
            wind.direction.reset();
            wind.isVariable = true;
        }
        return wind;
    }
};

/// Whether an identifier and a raw text can be those of a real report.
bool isSound(std::string_view station, std::string_view raw) {
    constexpr std::size_t longestStation = 8;
    constexpr std::size_t longestRaw = std::size_t{16} << 10;
    return !station.empty() && station.size() <= longestStation && !raw.empty() &&
           raw.size() <= longestRaw && std::ranges::all_of(station, [](char c) {
               return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
           });
}

/// The conditions after a change: what it states, and for the rest what held before it.
Conditions changed(Conditions held, const Conditions& stated) {
    if (stated.wind) {
        held.wind = stated.wind;
    }
    const bool namesSky = !stated.layers.empty() || stated.verticalVisibility;
    const bool endsCavok = stated.visibility || !stated.weather.empty();
    for (Layer& layer : held.layers) {
        if (endsCavok && layer.cover == Cover::CAVOK) {
            layer.cover = Cover::none;
        }
    }
    if (stated.visibility) {
        held.visibility = stated.visibility;
    }
    if (!stated.weather.empty()) {
        held.weather = stated.weather == "NSW" ? "" : stated.weather;
    }
    if (namesSky) {
        held.layers = stated.layers;
        held.verticalVisibility = stated.verticalVisibility;
    }
    if (std::ranges::find(stated.layers, Cover::CAVOK, &Layer::cover) != stated.layers.end()) {
        held.weather.clear();
    }
    return held;
}

bool lasts(const Forecast& forecast) {
    return forecast.kind == Forecast::Kind::base || forecast.kind == Forecast::Kind::from ||
           forecast.kind == Forecast::Kind::becoming;
}

void settle(Taf& taf) {
    std::ranges::stable_sort(taf.forecasts, [](const Forecast& one, const Forecast& other) {
        return std::pair(one.begins, lasts(one) ? 0 : 1) <
               std::pair(other.begins, lasts(other) ? 0 : 1);
    });
    Conditions held;
    for (Forecast& forecast : taf.forecasts) {
        const bool isWholeNew =
            forecast.kind == Forecast::Kind::base || forecast.kind == Forecast::Kind::from;
        forecast.expected = changed(isWholeNew ? Conditions() : held, forecast.stated);
        forecast.category = categoryOf(forecast.expected);
        if (lasts(forecast)) {
            held = forecast.expected;
        }
    }
}

} // namespace

class Reader::Document final : public platform::XMLParserDelegate {
public:
    explicit Document(Receiver& receiver) : receiver_(receiver) {}

    void parser_didStartElement(std::string_view name) override {
        text_.clear();
        isLayer_ = false;
        if (!std::exchange(hasRoot_, true)) {
            isReply_ = name == "response" || name == "METAR" || name == "TAF";
        }
        if (name == "METAR") {
            forgetReport();
            metar_.emplace();
        } else if (name == "TAF") {
            forgetReport();
            taf_.emplace();
        } else if (name == "forecast" && taf_) {
            taf_->forecasts.emplace_back();
            wind_ = {};
            isForecast_ = true;
            kind_.clear();
        } else if (name == "sky_condition" && conditions()) {
            conditions()->layers.emplace_back();
            isLayer_ = true;
        }
    }

    void parser_foundAttribute(std::string_view name, std::string_view value) override {
        if (!isLayer_) {
            return;
        }
        Layer& layer = conditions()->layers.back();
        if (name == "sky_cover") {
            layer.cover = coverOf(value);
        } else if (name == "cloud_base_ft_agl") {
            layer.base = wholeNumberOf(value, heights);
        } else if (name == "cloud_type" && (value == "CB" || value == "TCU")) {
            layer.kind = value;
        }
    }

    void parser_foundCharacters(std::string_view text) override { text_ = text; }

    void parser_didEndElement(std::string_view name) override {
        if (name == "METAR" && metar_) {
            endMetar();
        } else if (name == "TAF" && taf_) {
            endTaf();
        } else if (name == "forecast" && isForecast_) {
            endForecast();
        } else if (name == "error") {
            hasError_ = true;
        } else if (isForecast_) {
            takeForecast(name);
        } else if (taf_) {
            takeTaf(name);
        } else if (metar_) {
            takeMetar(name);
        }
        text_.clear();
    }

    [[nodiscard]] bool isReply() const { return isReply_ && !hasError_; }
    [[nodiscard]] std::size_t found() const { return found_; }
    [[nodiscard]] std::size_t passedOver() const { return passedOver_; }

private:
    /// A report in which another one begins is none.
    void forgetReport() {
        metar_.reset();
        taf_.reset();
        isForecast_ = false;
        wind_ = {};
        for (auto* date : {&time_, &validFrom_, &validTo_, &begins_, &ends_}) {
            date->reset();
        }
    }

    /// The conditions that are being read; null outside a report.
    Conditions* conditions() {
        return isForecast_ ? &taf_->forecasts.back().stated
               : metar_    ? &metar_->conditions
                           : nullptr;
    }

    /// Takes the elements that METARs and forecasts have in common.
    void takeConditions(std::string_view name, Conditions& conditions) {
        if (name == "wind_dir_degrees") {
            wind_.isVariable = text_ == "VRB";
            wind_.direction = wholeNumberOf(text_, windDirections);
        } else if (name == "wind_speed_kt") {
            wind_.speed = wholeNumberOf(text_, windSpeeds);
        } else if (name == "wind_gust_kt") {
            wind_.gust = wholeNumberOf(text_, windSpeeds);
        } else if (name == "visibility_statute_mi") {
            const bool isOrMore = text_.ends_with('+');
            if (const auto miles =
                    numberOf(std::string_view(text_).substr(0, text_.size() - (isOrMore ? 1 : 0)),
                             visibilities)) {
                conditions.visibility = Visibility{*miles, isOrMore};
            }
        } else if (name == "wx_string") {
            conditions.weather = platform::trimmed(text_);
        } else if (name == "vert_vis_ft") {
            conditions.verticalVisibility = wholeNumberOf(text_, heights);
        }
    }

    void takeMetar(std::string_view name) {
        Metar& metar = *metar_;
        if (name == "raw_text") {
            metar.raw = platform::trimmed(text_);
        } else if (name == "station_id") {
            metar.station = platform::trimmed(text_);
        } else if (name == "observation_time") {
            time_ = dateOf(text_);
        } else if (name == "temp_c") {
            metar.temperature = numberOf(text_, temperatures);
        } else if (name == "dewpoint_c") {
            metar.dewPoint = numberOf(text_, dewPoints);
        } else if (name == "altim_in_hg") {
            metar.altimeter = numberOf(text_, altimeters);
        } else if (name == "elevation_m") {
            metar.elevation = numberOf(text_, elevations);
        } else if (name == "flight_category") {
            metar.category = categoryNamed(platform::trimmed(text_));
        } else if (name == "metar_type") {
            metar.isSpecial = text_ == "SPECI";
        } else if (name == "auto") {
            metar.isAutomatic = text_ == "TRUE";
        } else if (name == "corrected") {
            metar.revision = text_ == "TRUE" ? Revision::corrected : metar.revision;
        } else {
            takeConditions(name, metar.conditions);
        }
    }

    void endMetar() {
        Metar metar = std::move(*metar_);
        metar_.reset();
        const RawFlags flags = rawFlags(metar.raw);
        if (!isSound(metar.station, metar.raw) || !time_ || flags.isNil) {
            ++passedOver_;
            return;
        }
        metar.observed = *time_;
        metar.revision = std::max(metar.revision, flags.revision);
        Conditions& conditions = metar.conditions;
        conditions.wind = wind_.wind();
        if (!conditions.visibility || conditions.layers.empty()) {
            Conditions raw = rawConditions(metar.raw);
            if (!conditions.visibility) {
                conditions.visibility = raw.visibility;
            }
            if (conditions.layers.empty() && !conditions.verticalVisibility) {
                conditions.layers = std::move(raw.layers);
                conditions.verticalVisibility = raw.verticalVisibility;
            }
        }
        if (metar.category == Category::unknown) {
            metar.category = categoryOf(conditions);
        }
        ++found_;
        receiver_.receive(std::move(metar));
    }

    void takeForecast(std::string_view name) {
        Forecast& forecast = taf_->forecasts.back();
        if (name == "fcst_time_from") {
            begins_ = dateOf(text_);
        } else if (name == "fcst_time_to") {
            ends_ = dateOf(text_);
        } else if (name == "change_indicator") {
            kind_ = platform::trimmed(text_);
        } else if (name == "time_becoming") {
            forecast.complete = dateOf(text_);
        } else if (name == "probability") {
            forecast.probability = wholeNumberOf(text_, probabilities);
        } else {
            takeConditions(name, forecast.stated);
        }
    }

    void endForecast() {
        isForecast_ = false;
        Forecast& forecast = taf_->forecasts.back();
        const auto begins = std::exchange(begins_, {});
        const auto ends = std::exchange(ends_, {});
        forecast.stated.wind = wind_.wind();
        forecast.kind = kind_ == "FM"                             ? Forecast::Kind::from
                        : kind_ == "BECMG"                        ? Forecast::Kind::becoming
                        : kind_ == "TEMPO" || kind_ == "INTER"    ? Forecast::Kind::temporary
                        : kind_ == "PROB" || forecast.probability ? Forecast::Kind::probable
                                                                  : Forecast::Kind::base;
        if (!begins || !ends || *ends < *begins) {
            taf_->forecasts.pop_back();
        } else {
            forecast.begins = *begins;
            forecast.ends = *ends;
        }
    }

    void takeTaf(std::string_view name) {
        Taf& taf = *taf_;
        if (name == "raw_text") {
            taf.raw = platform::trimmed(text_);
        } else if (name == "station_id") {
            taf.station = platform::trimmed(text_);
        } else if (name == "issue_time") {
            time_ = dateOf(text_);
        } else if (name == "valid_time_from") {
            validFrom_ = dateOf(text_);
        } else if (name == "valid_time_to") {
            validTo_ = dateOf(text_);
        }
    }

    void endTaf() {
        Taf taf = std::move(*taf_);
        taf_.reset();
        // Whatever the parser reports next, the conditions of a forecast end with its TAF.
        isForecast_ = false;
        const RawFlags flags = rawFlags(taf.raw);
        // Some TAFs do not say when they were issued; the start of their validity has to serve.
        const auto time = time_ ? time_ : validFrom_;
        if (!isSound(taf.station, taf.raw) || !time || flags.isNil) {
            ++passedOver_;
            return;
        }
        taf.issued = *time;
        taf.begins = validFrom_.value_or(*time);
        taf.ends = std::max(validTo_.value_or(taf.begins), taf.begins);
        taf.revision = flags.revision;
        taf.isCancelled = flags.isCancelled;
        settle(taf);
        ++found_;
        receiver_.receive(std::move(taf));
    }

    Receiver& receiver_;
    /// The text of the element that is being read.
    std::string text_;
    bool hasRoot_ = false;
    bool isReply_ = false;
    bool hasError_ = false;
    std::size_t found_ = 0;
    std::size_t passedOver_ = 0;

    // Of the report being read.
    std::optional<Metar> metar_;
    std::optional<Taf> taf_;
    bool isForecast_ = false;
    bool isLayer_ = false;
    WindParts wind_;
    std::string kind_;
    std::optional<Date> time_, validFrom_, validTo_, begins_, ends_;
};

Reader::Reader(Receiver& receiver)
    : document_(std::make_unique<Document>(receiver)), stream_(*document_) {}

Reader::~Reader() = default;

bool Reader::feed(std::span<const std::byte> bytes) {
    hasBytes_ |= !bytes.empty();
    return stream_.feed(bytes);
}

Understanding Reader::finish() {
    if (!hasBytes_) {
        return Understanding::nothing;
    }
    if (!stream_.finish() || !document_->isReply()) {
        return Understanding::none;
    }
    return document_->found() > 0 ? Understanding::whole : Understanding::nothing;
}

std::size_t Reader::passedOver() const {
    return document_->passedOver();
}

bool replaces(const Metar& report, const Metar& kept) {
    return std::pair(report.observed, report.revision != Revision::none) >=
           std::pair(kept.observed, kept.revision != Revision::none);
}

bool replaces(const Taf& report, const Taf& kept) {
    return std::pair(report.issued, report.revision != Revision::none) >=
           std::pair(kept.issued, kept.revision != Revision::none);
}

} // namespace reports
