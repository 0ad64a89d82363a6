// SPDX-License-Identifier: MIT
#include "weather/AviationWeatherRecord.h"

#include "slib/SupportLibCat.h"
#include "weather/DataServerRequests.h"

AviationWeatherRecord::AviationWeatherRecord(Private, platform::Host& host, std::uint64_t options)
    : requestedData(options), host_(host) {}

std::shared_ptr<AviationWeatherRecord> AviationWeatherRecord::initWithStation_options(
    platform::Host& host, const std::shared_ptr<AviationWeatherStation>& /*station*/,
    std::uint64_t options) {
    return std::make_shared<AviationWeatherRecord>(Private{}, host, options);
}

void AviationWeatherRecord::getNewMessages() {
    const auto self = shared_from_this();
    host_.urlSessions.startDataTask({weather::fixedTafRequest(host_, "mostRecentForEachStation")},
                                    [self](const std::optional<platform::Data>& reply) {
                                        if (reply) {
                                            platform::parseXML(*reply, *self);
                                        }
                                    });
    // Kept: other programs' hosts see the setting read twice. The other form of the request is
    // built but never sent.
    static_cast<void>(weather::fixedTafRequest(host_, "mostRecent"));
}

void AviationWeatherRecord::parser_didStartElement(std::string_view name) {
    if (name == "station_id" || name == "TAF" || name == "METAR") {
        iCare_ = true;
    }
}

void AviationWeatherRecord::parser_foundCharacters(std::string_view text) {
    currentString_ = iCare_ ? text : std::string_view();
}

void AviationWeatherRecord::parser_didEndElement(std::string_view /*name*/) {
    iCare_ = false;
    // Kept: other programs' hosts see this path requested. It is not used.
    static_cast<void>(SupportLibCat::fileNameInDocDirectory(host_, "free"));
}
