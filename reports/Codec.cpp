// SPDX-License-Identifier: MIT
#include "reports/Codec.h"

#include "reports/Ranges.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace reports {
namespace {

using nlohmann::json;

// Arrays rather than objects, since the names of fields would take more room than their values. New
// fields go to the end.

template <typename T>
json orNull(const std::optional<T>& value) {
    return value ? json(*value) : json();
}

template <typename T>
T within(const Range<T>& range, T value) {
    if (!range.holds(value)) {
        throw std::out_of_range("no value of a report");
    }
    return value;
}

/// A number of the kind that was written. By value, the library would convert any to any, without a
/// look at its size.
std::int64_t wholeIn(const json& field) {
    return field.get_ref<const std::int64_t&>();
}

int numberIn(const json& field, const Range<int>& range) {
    return static_cast<int>(within(Range<std::int64_t>{range.least, range.most}, wholeIn(field)));
}

double numberIn(const json& field, const Range<double>& range) {
    return within(range, field.get<double>());
}

template <typename T>
std::optional<T> optionalAt(const json& fields, std::size_t index, const Range<T>& range) {
    const json& field = fields.at(index);
    return field.is_null() ? std::nullopt : std::optional(numberIn(field, range));
}

json dateOut(Date date) {
    return date.time_since_epoch().count();
}

Date dateIn(const json& field) {
    return within(dates, Date(Date::duration(wholeIn(field))));
}

template <typename Enum>
Enum enumIn(const json& field, Enum last) {
    return static_cast<Enum>(numberIn(field, Range<int>{0, static_cast<int>(last)}));
}

template <typename Enum>
json enumOut(Enum value) {
    return static_cast<unsigned>(value);
}

json out(const Conditions& conditions) {
    json wind;
    if (conditions.wind) {
        const Wind& w = *conditions.wind;
        wind = json::array({orNull(w.direction), w.isVariable, w.speed, orNull(w.gust)});
    }
    json visibility;
    if (conditions.visibility) {
        visibility = json::array({conditions.visibility->miles, conditions.visibility->isOrMore});
    }
    json layers = json::array();
    for (const Layer& layer : conditions.layers) {
        layers.push_back(json::array({enumOut(layer.cover), orNull(layer.base), layer.kind}));
    }
    return json::array({std::move(wind), std::move(visibility), conditions.weather,
                        std::move(layers), orNull(conditions.verticalVisibility)});
}

Conditions conditionsIn(const json& fields) {
    Conditions conditions;
    if (const json& wind = fields.at(0); !wind.is_null()) {
        conditions.wind = Wind{optionalAt(wind, 0, windDirections), wind.at(1).get<bool>(),
                               numberIn(wind.at(2), windSpeeds), optionalAt(wind, 3, windSpeeds)};
    }
    if (const json& visibility = fields.at(1); !visibility.is_null()) {
        conditions.visibility =
            Visibility{numberIn(visibility.at(0), visibilities), visibility.at(1).get<bool>()};
    }
    conditions.weather = fields.at(2).get<std::string>();
    for (const json& layer : fields.at(3)) {
        conditions.layers.push_back({enumIn(layer.at(0), Cover::obscured),
                                     optionalAt(layer, 1, heights),
                                     layer.at(2).get<std::string>()});
    }
    conditions.verticalVisibility = optionalAt(fields, 4, heights);
    return conditions;
}

platform::Data bytesOf(const json& value) {
    const std::vector<std::uint8_t> cbor = json::to_cbor(value);
    const auto bytes = std::as_bytes(std::span(cbor));
    return {bytes.begin(), bytes.end()};
}

/// Whether the bytes hold nothing but plain values and a few levels of arrays (RFC 8949), as a
/// report does. The library calls itself for what is in an array, a tag or a text in parts, so that
/// a damaged file could exhaust the stack.
bool isPlain(std::span<const std::byte> bytes) {
    enum Type : unsigned { data = 2, text = 3, array = 4, map = 5, tag = 6 };
    constexpr std::size_t mostLevels = 16;
    std::array<std::uint64_t, mostLevels> itemsLeft{};
    std::size_t level = 0;
    while (!bytes.empty()) {
        const auto head = std::to_integer<unsigned>(bytes.front());
        const unsigned type = head >> 5;
        std::uint64_t count = head & 31;
        bytes = bytes.subspan(1);
        if (count > 27 || type == map || type == tag) {
            return false;
        }
        if (count > 23) {
            const std::size_t size = std::size_t{1} << (count - 24);
            if (size > bytes.size()) {
                return false;
            }
            count = 0;
            for (const std::byte byte : bytes.first(size)) {
                count = count << 8 | std::to_integer<unsigned>(byte);
            }
            bytes = bytes.subspan(size);
        }
        if (type == data || type == text) {
            if (count > bytes.size()) {
                return false;
            }
            bytes = bytes.subspan(count);
        } else if (type == array && count > 0) {
            if (level == mostLevels) {
                return false;
            }
            itemsLeft[level++] = count;
            continue;
        }
        while (level > 0 && --itemsLeft[level - 1] == 0) {
            --level;
        }
    }
    return true;
}

/// Decodes the bytes and has `read` make a report of the fields; nothing if they are not CBOR, or
/// not the fields that `read` expects.
template <typename Report, typename Read>
std::optional<Report> decoded(std::span<const std::byte> bytes, Read read) {
    if (!isPlain(bytes)) {
        return {};
    }
    try {
        const auto* first = reinterpret_cast<const std::uint8_t*>(bytes.data());
        return read(json::from_cbor(first, first + bytes.size()));
    } catch (const json::exception&) {
    } catch (const std::out_of_range&) {
    }
    return {};
}

} // namespace

platform::Data encoded(const Metar& metar) {
    return bytesOf(
        json::array({metar.station, dateOut(metar.observed), metar.raw, out(metar.conditions),
                     orNull(metar.temperature), orNull(metar.dewPoint), orNull(metar.altimeter),
                     orNull(metar.elevation), enumOut(metar.category), enumOut(metar.revision),
                     metar.isSpecial, metar.isAutomatic}));
}

std::optional<Metar> decodedMetar(std::span<const std::byte> bytes) {
    return decoded<Metar>(bytes, [](const json& fields) {
        return Metar{fields.at(0).get<std::string>(),
                     dateIn(fields.at(1)),
                     fields.at(2).get<std::string>(),
                     conditionsIn(fields.at(3)),
                     optionalAt(fields, 4, temperatures),
                     optionalAt(fields, 5, dewPoints),
                     optionalAt(fields, 6, altimeters),
                     optionalAt(fields, 7, elevations),
                     enumIn(fields.at(8), Category::LIFR),
                     enumIn(fields.at(9), Revision::corrected),
                     fields.at(10).get<bool>(),
                     fields.at(11).get<bool>()};
    });
}

platform::Data encoded(const Taf& taf) {
    json forecasts = json::array();
    for (const Forecast& forecast : taf.forecasts) {
        forecasts.push_back(json::array(
            {enumOut(forecast.kind), dateOut(forecast.begins), dateOut(forecast.ends),
             forecast.complete ? dateOut(*forecast.complete) : json(), orNull(forecast.probability),
             out(forecast.stated), out(forecast.expected), enumOut(forecast.category)}));
    }
    return bytesOf(
        json::array({taf.station, dateOut(taf.issued), dateOut(taf.begins), dateOut(taf.ends),
                     taf.raw, std::move(forecasts), enumOut(taf.revision), taf.isCancelled}));
}

std::optional<Taf> decodedTaf(std::span<const std::byte> bytes) {
    return decoded<Taf>(bytes, [](const json& fields) {
        Taf taf{fields.at(0).get<std::string>(),
                dateIn(fields.at(1)),
                dateIn(fields.at(2)),
                dateIn(fields.at(3)),
                fields.at(4).get<std::string>(),
                {},
                enumIn(fields.at(6), Revision::corrected),
                fields.at(7).get<bool>()};
        for (const json& forecast : fields.at(5)) {
            taf.forecasts.push_back(
                {enumIn(forecast.at(0), Forecast::Kind::probable), dateIn(forecast.at(1)),
                 dateIn(forecast.at(2)),
                 forecast.at(3).is_null() ? std::nullopt : std::optional(dateIn(forecast.at(3))),
                 optionalAt(forecast, 4, probabilities), conditionsIn(forecast.at(5)),
                 conditionsIn(forecast.at(6)), enumIn(forecast.at(7), Category::LIFR)});
        }
        return taf;
    });
}

} // namespace reports
