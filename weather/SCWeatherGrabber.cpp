// SPDX-License-Identifier: MIT
#include "weather/SCWeatherGrabber.h"

#include "platform/text/Text.h"
#include "slib/SuportLib.h"
#include "weather/DataServerRequests.h"

#include <utility>

const SCWeatherGrabber::Kind SCWeatherGrabber::metarKind = {
    updateMetarString, sealMetarString, "\nMETARS for Favorites\n------", "METAR not available",
    weather::metarRequest};
const SCWeatherGrabber::Kind SCWeatherGrabber::tafKind = {updateTafString, sealTafString,
                                                          "\nTAFs for Favorites\n------",
                                                          "TAF not available", weather::tafRequest};

SCWeatherGrabber::SCWeatherGrabber(Private, platform::Host& host) : host_(host) {}

std::shared_ptr<SCWeatherGrabber> SCWeatherGrabber::init(platform::Host& host) {
    return std::make_shared<SCWeatherGrabber>(Private{}, host);
}

void SCWeatherGrabber::getNewMessages(StationArray stations) {
    const std::scoped_lock lock(mutex_);
    if (stations.empty()) {
        return;
    }
    stationsToCollectWeatherFrom = std::move(stations);
    metars_.index = 0;
    tafs_.index = 0;
    nextStationMetar();
    nextStationTAF();
}

void SCWeatherGrabber::nextStationMetar() {
    sendRequest(metars_);
}

void SCWeatherGrabber::nextStationTAF() {
    sendRequest(tafs_);
}

void SCWeatherGrabber::sendRequest(Walk& walk) {
    const std::scoped_lock lock(mutex_);
    if (std::cmp_greater_equal(walk.index, stationsToCollectWeatherFrom.size())) {
        return;
    }
    if (walk.index == 1) {
        post(walk.kind.update, walk.kind.header);
    }
    const auto station = stationsToCollectWeatherFrom[static_cast<std::size_t>(walk.index)];
    currentString_ = "";
    const auto self = shared_from_this();
    if (platform::trimmed(station->ICAO.value_or("")).empty()) {
        host_.urlSessions.perform([self, &walk] { self->handleReply(walk, {}); });
        return;
    }
    host_.urlSessions.startDataTask(
        {walk.kind.request(host_, *station->ICAO), revalidates, superseded_},
        [self, &walk](const std::optional<platform::Data>& reply) {
            if (reply) {
                self->handleReply(walk, *reply);
            }
        });
}

void SCWeatherGrabber::handleReply(Walk& walk, const platform::Data& reply) {
    const std::scoped_lock lock(mutex_);
    walk.text = "";
    walk.captured.reset();
    // Text captured before a parse error is kept.
    platform::parseXML(reply, *this);
    if (walk.captured) {
        walk.text = currentString_->substr(0, *walk.captured);
    }
    if (!walk.text) {
        // Kept: observers expect the empty text for a reply without a report, so this never
        // happens.
        walk.text = walk.kind.notAvailable;
    }
    walk.text = SuportLib::removeLeadingSpaces(walk.text);
    post(walk.kind.update, *walk.text);
    ++walk.index;
    if (std::cmp_greater_equal(walk.index, stationsToCollectWeatherFrom.size())) {
        post(walk.kind.seal, *walk.text);
    } else {
        sendRequest(walk);
    }
}

void SCWeatherGrabber::post(const char* name, const std::string& text) {
    host_.notificationCenter.post({name, text, nullptr});
}

void SCWeatherGrabber::parser_didStartElement(std::string_view name) {
    if (name == "station_id") {
        iCare_ = false;
    } else if (name == "TAF" || name == "METAR" || name == "errors") {
        iCare_ = true;
    }
}

void SCWeatherGrabber::parser_foundCharacters(std::string_view text) {
    const std::size_t first = text.find_first_not_of('\n');
    if (iCare_ && currentString_ && first != text.npos) {
        *currentString_ += text.substr(first, text.find_last_not_of('\n') + 1 - first);
    }
}

void SCWeatherGrabber::parser_didEndElement(std::string_view name) {
    iCare_ = false;
    if (!currentString_) {
        return;
    }
    // A length, not a copy: a reply with many reports would be copied again and again.
    if (name == "METAR") {
        metars_.captured = currentString_->size();
    } else if (name == "TAF") {
        tafs_.captured = currentString_->size();
    }
}
