// SPDX-License-Identifier: MIT
#include "catalogue/stationparser.h"

#include "platform/text/Text.h"
#include "platform/values/Geodesy.h"
#include "slib/SuportLib.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

namespace {

/// A text shorter than this is not a list.
constexpr std::size_t leastText = 90;
/// The parse ends at a line that starts fewer bytes than this before the end of the text.
constexpr std::size_t leastRest = 84;

/// The fields of one line, at fixed columns; bytes past the end read as blanks.
class Columns {
public:
    explicit Columns(stationparser::Field line) : line_(line.data(), line.size()) {}

    [[nodiscard]] char code(std::size_t column) const {
        return column < line_.size() ? line_[column] : ' ';
    }

    /// Absent if a column boundary splits a character, or if the bytes are not UTF-8.
    [[nodiscard]] std::optional<std::string> text(std::size_t column, std::size_t width) const {
        std::string text(column < line_.size() ? line_.substr(column, width) : std::string_view());
        text.resize(width, ' ');
        if (!platform::isValidUtf8(text)) {
            return std::nullopt;
        }
        return text;
    }

    /// Returns the whole part of a number: an optional minus sign, digits and an optional fraction,
    /// between blanks. Returns 0 for anything else.
    [[nodiscard]] int number(std::size_t column, std::size_t width) const {
        const std::size_t end = column + width;
        std::size_t at = column;
        while (at < end && code(at) == ' ') {
            ++at;
        }
        const bool isNegative = at < end && code(at) == '-';
        at += isNegative ? 1 : 0;
        const std::size_t firstDigit = at;
        int value = 0;
        for (; at < end && platform::isDigit(code(at)); ++at) {
            value = value * 10 + (code(at) - '0');
        }
        if (at == firstDigit) {
            return 0;
        }
        if (at < end && code(at) == '.') {
            do {
                ++at;
            } while (at < end && platform::isDigit(code(at)));
        }
        while (at < end && code(at) == ' ') {
            ++at;
        }
        return at < end ? 0 : isNegative ? -value : value;
    }

private:
    std::string_view line_;
};

/// Reads a coordinate: `width` columns of degrees, a separator, two columns of minutes, and the
/// hemisphere letter right after them.
double coordinate(const Columns& field, std::size_t width, char negative) {
    const double degrees = stationparser::ConvertDegreeAngleToDouble_mins_secs(
        field.number(0, width), field.number(width + 1, 2), 0);
    return field.code(width + 3) == negative ? -degrees : degrees;
}

} // namespace

stationparser::stationparser(Private, platform::NotificationCenter& center, platform::Log& log,
                             std::optional<std::string> text)
    : masterString(std::move(text)), center_(center), log_(log) {}

std::shared_ptr<stationparser> stationparser::initWithNSString(platform::NotificationCenter& center,
                                                               platform::Log& log,
                                                               std::optional<std::string> text) {
    return std::make_shared<stationparser>(Private{}, center, log, std::move(text));
}

void stationparser::main() {
    parse();
    center_.post({StationParseDone, {}, nullptr});
}

void stationparser::parse() try {
    auto stations = std::make_shared<StationArray>();
    std::string_view text = masterString ? std::string_view(*masterString) : std::string_view();
    text = text.substr(0, text.find('\0'));
    if (text.size() >= leastText) {
        walk(text, *stations);
        if (error_) {
            log_.line("Errored out");
        }
        auto collection = AviationWeatherStationCollection::init();
        collection->stations = stations;
        stationArray_.store(std::move(stations));
        theCollection_.store(std::move(collection));
    } else {
        stationArray_.store(std::move(stations));
    }
} catch (const std::bad_alloc&) {
    error_ = true;
}

void stationparser::walk(std::string_view text, StationArray& stations) {
    // Only lines that follow a line feed are classified, so the first line is never read.
    std::size_t at = text.find('\n');
    for (; at < text.size(); at = text.find('\n', at)) {
        const std::size_t start = at + 1;
        const std::string_view rest = text.substr(start);
        if (rest.starts_with('\n')) {
            const std::string_view header = rest.substr(1);
            const auto digit = std::ranges::find_if(header, platform::isDigit);
            if (digit == header.end()) {
                error_ = true;
                return;
            }
            const auto length = static_cast<std::size_t>(digit - header.begin());
            at = start + 1 + length;
            // Kept: packages made from the same list must not differ. A header at one particular
            // offset, which depends on the text's first byte, is ignored.
            if (static_cast<signed char>(text.front()) + static_cast<std::int64_t>(at) - 1 != 32) {
                const std::string_view name = header.substr(0, length);
                currentState_ =
                    platform::isValidUtf8(name) ? std::optional<std::string>(name) : std::nullopt;
            }
            continue;
        }
        if (!rest.starts_with('!') && !rest.starts_with("CD")) {
            if (rest.size() < leastRest) {
                error_ = !rest.empty();
                return;
            }
            captureStation(rest, stations);
        }
        at = start;
    }
}

void stationparser::captureStation(Field text, StationArray& stations) const {
    const Columns line(text);
    auto station = AviationWeatherStation::init();
    station->stateName = currentState_;
    station->stateAbbreviation = line.text(0, 2);
    station->stationName = line.text(3, 16);
    station->ICAO = line.text(20, 4);
    station->IATA = line.text(25, 4);
    station->SYNOPIndex = line.number(31, 5);
    station->latitude = latitudeFromText(text.subspan(std::min<std::size_t>(39, text.size())));
    station->longitude = longitudeFromText(text.subspan(std::min<std::size_t>(47, text.size())));
    if (!platform::Location{station->latitude, station->longitude}.isValid()) {
        log_.line(station->ICAO.value_or(""));
        return;
    }
    station->ELEV = line.number(54, 5);
    station->METAR = line.code(62);
    station->NEXRAD = line.code(65);
    station->aviationFlag = line.code(68);
    station->upperAirOrWind = line.code(71);
    station->observationType = line.code(74);
    station->officeType = line.code(77);
    station->plottingPriority = line.code(79);
    station->countryCode = line.text(81, 2);
    stations.push_back(std::move(station));
}

double stationparser::latitudeFromText(Field field) {
    return coordinate(Columns(field), 2, 'S');
}

double stationparser::longitudeFromText(Field field) {
    return coordinate(Columns(field), 3, 'W');
}

double stationparser::ConvertDegreeAngleToDouble_mins_secs(double degrees, double minutes,
                                                           double seconds) {
    return degrees + minutes / 60 + seconds / 3600;
}

std::string stationparser::coordinateString_lon(double latitude, double longitude) {
    return SuportLib::fullCoordinateString_and(latitude, longitude);
}
