// SPDX-License-Identifier: MIT
#include "catalogue/stationparser.h"
#include "platform/text/Text.h"
#include "reports/RawText.h"
#include "reports/Words.h"
#include "slib/SupportLibCat.h"
#include "tests/fuzz/Fuzz.h"
#include "weather/DataServerRequests.h"

#include <cmath>

namespace {

void checkCoordinates(std::string_view text) {
    constexpr std::size_t longest = 16;
    for (std::size_t length = 0; length <= std::min(text.size(), longest); ++length) {
        const stationparser::Field field(text.data(), length);
        require(std::isfinite(stationparser::latitudeFromText(field)) &&
                    std::isfinite(stationparser::longitudeFromText(field)),
                "a coordinate is a number");
    }
}

void checkHex(std::string_view text) {
    const platform::Data bytes = SupportLibCat::slibextractAllHexBytes_count(text);
    require(bytes.size() == static_cast<std::size_t>(platform::utf16Length(text)) / 2,
            "two digits are one byte");
    (void)SupportLibCat::slibhexByteFromString_atIndex(text,
                                                       static_cast<std::int64_t>(text.size()) / 2);
    (void)SupportLibCat::makeStringOfHexValues_ofLength(
        bytes, static_cast<std::int64_t>(bytes.size()) + 1);
}

void checkReportTexts(std::string_view text) {
    (void)reports::rawFlags(text);
    (void)reports::rawConditions(text);
    (void)reports::rawWindVariation(text);
    (void)reports::weatherInWords(text);
    require(reports::partsOfTaf(text) <= reports::brokenTaf(text).size() + 1,
            "each part of a TAF begins a line");
    (void)weather::questionIn({std::string(text)});
}

void checkText(std::string_view text) {
    const std::string repaired = platform::repairedUtf8(text);
    require(platform::isValidUtf8(repaired), "repaired text is valid");
    require(platform::isAscii(platform::inAsciiLetters(text)), "ASCII letters are ASCII");
    const std::string lower = platform::lowerCased(repaired);
    require(platform::equalIgnoringCase(lower, platform::lowerCased(lower)),
            "lower case stays lower case");
    require(platform::withoutControls(text).size() <= text.size(), "controls are only removed");
    (void)platform::escapedControls(text);
    (void)platform::utf8FromMacRoman(platform::macRomanFromUtf8(text));
    (void)platform::wholeCharacterPrefix(text, static_cast<std::int64_t>(text.size()) / 2);
    (void)SupportLibCat::slibReturnTrucatedNSString_maxLen_withElip(text, 2, true);
}

} // namespace

void feed(std::span<const std::byte> input) {
    const std::string_view text = textOf(input);
    checkCoordinates(text);
    checkHex(text);
    checkReportTexts(text);
    checkText(text);
}
