// SPDX-License-Identifier: MIT
#include "catalogue/AviationWeatherStation.h"

#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"

#include <cmath>
#include <string_view>
#include <utility>

namespace {

constexpr const char* favoriteKey = "RQFavorite";

using Text = std::optional<std::string> AviationWeatherStation::*;
using Code = char AviationWeatherStation::*;

// In archive order; the texts come before the numbers, the codes after them.
constexpr std::pair<std::string_view, Text> leadingTexts[] = {
    {"stateName", &AviationWeatherStation::stateName},
    {"stateAbbreviation", &AviationWeatherStation::stateAbbreviation},
    {"stationName", &AviationWeatherStation::stationName},
    {"ICAO", &AviationWeatherStation::ICAO},
    {"IATA", &AviationWeatherStation::IATA},
};
constexpr std::pair<std::string_view, Code> codes[] = {
    {"METAR", &AviationWeatherStation::METAR},
    {"NEXRAD", &AviationWeatherStation::NEXRAD},
    {"aviationFlag", &AviationWeatherStation::aviationFlag},
    {"upperAirOrWind", &AviationWeatherStation::upperAirOrWind},
    {"observationType", &AviationWeatherStation::observationType},
    {"officeType", &AviationWeatherStation::officeType},
    {"plottingPriority", &AviationWeatherStation::plottingPriority},
};

/// Returns 0 for anything that is not a character. Other writers box signed or unsigned ones.
char decodedCode(platform::KeyedUnarchiver& coder, std::string_view key) {
    const auto number = coder.decodeNumber(key);
    if (!number) {
        return 0;
    }
    // A double holds any stored number, where an integer would wrap.
    const double value = number->doubleValue();
    if (!(value >= -128 && value <= 255) || std::trunc(value) != value) {
        coder.misread("is no character");
        return 0;
    }
    return static_cast<char>(number->integerValue());
}

std::shared_ptr<platform::Dictionary> decodedMarks(platform::KeyedUnarchiver& coder) {
    const platform::Value marks = coder.decodeObject("refCon");
    if (const auto* dictionary = std::get_if<std::shared_ptr<platform::Dictionary>>(&marks)) {
        const auto& entries = (*dictionary)->entries;
        const auto mark = entries.find(favoriteKey);
        if (mark != entries.end() && !std::holds_alternative<platform::Number>(mark->second)) {
            coder.misread("holds a favorite mark that is no number");
        }
        return *dictionary;
    }
    if (!platform::isAbsent(marks)) {
        coder.misread("is no dictionary");
    }
    return nullptr;
}

} // namespace

std::shared_ptr<AviationWeatherStation> AviationWeatherStation::init() {
    return std::make_shared<AviationWeatherStation>(Private{});
}

std::shared_ptr<AviationWeatherStation>
AviationWeatherStation::initWithCoder(platform::KeyedUnarchiver& coder) {
    auto station = init();
    for (const auto& [key, text] : leadingTexts) {
        (*station).*text = coder.decodeText(key);
    }
    station->SYNOPIndex = coder.decodeInteger("SYNOPIndex");
    station->latitude = coder.decodeDouble("latitude");
    station->longitude = coder.decodeDouble("longitude");
    station->ELEV = coder.decodeInteger("ELEV");
    for (const auto& [key, code] : codes) {
        (*station).*code = decodedCode(coder, key);
    }
    station->countryCode = coder.decodeText("countryCode");
    station->refCon = decodedMarks(coder);
    return station;
}

bool AviationWeatherStation::isFavorite() const {
    const auto lock = lockMarks();
    if (!refCon) {
        return false;
    }
    const auto found = refCon->entries.find(favoriteKey);
    if (found == refCon->entries.end()) {
        return false;
    }
    const auto* number = std::get_if<platform::Number>(&found->second);
    return number != nullptr && number->boolValue();
}

void AviationWeatherStation::setFavorite(bool favorite) {
    const auto lock = lockMarks();
    if (!refCon) {
        refCon = std::make_shared<platform::Dictionary>();
    } else if (!refCon->isMutable) {
        refCon =
            std::make_shared<platform::Dictionary>(platform::Dictionary{true, refCon->entries});
    }
    refCon->entries[favoriteKey] = platform::Number(favorite);
}

void AviationWeatherStation::toggleFavoriteStatus() {
    const auto lock = lockMarks();
    setFavorite(!isFavorite());
}

std::shared_ptr<AviationWeatherStation> AviationWeatherStation::copyWithZone() const {
    const auto lock = lockMarks();
    auto copy = std::make_shared<AviationWeatherStation>(Private{}, *this);
    if (refCon) {
        copy->refCon =
            std::make_shared<platform::Dictionary>(platform::Dictionary{false, refCon->entries});
    }
    return copy;
}

std::unique_lock<std::recursive_mutex> AviationWeatherStation::lockMarks() {
    static std::recursive_mutex mutex;
    return std::unique_lock(mutex);
}

const platform::ClassNames& AviationWeatherStation::archivedClass() const {
    static const platform::ClassNames names{"AviationWeatherStation", "NSObject"};
    return names;
}

void AviationWeatherStation::encodeWithCoder(platform::KeyedArchiver& coder) const {
    for (const auto& [key, text] : leadingTexts) {
        coder.encodeText(this->*text, key);
    }
    coder.encodeInteger(SYNOPIndex, "SYNOPIndex");
    coder.encodeDouble(latitude, "latitude");
    coder.encodeDouble(longitude, "longitude");
    coder.encodeInteger(ELEV, "ELEV");
    for (const auto& [key, code] : codes) {
        // Kept: other readers of these archives expect boxed numbers here, unlike the whole numbers
        // above. Archives have always mixed the two.
        coder.encodeObject(platform::Number(std::int32_t{static_cast<signed char>(this->*code)}),
                           key);
    }
    coder.encodeText(countryCode, "countryCode");
    coder.encodeObject(refCon ? platform::Value(refCon) : platform::Value(), "refCon");
}
