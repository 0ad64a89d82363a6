// SPDX-License-Identifier: MIT
#include "tests/fuzz/Fuzz.h"
#include "tests/support/FakeHost.h"
#include "tests/support/Stations.h"
#include "weather/SCWeatherGrabber.h"

/// What precedes a NUL answers the request for a METAR, the rest the one for a TAF, in either
/// order.
void feed(std::span<const std::byte> input) {
    static support::FakeHost host;
    SCWeatherGrabber::init(host.host)->getNewMessages({makeStation({"EFHK"})});
    const std::string_view text = textOf(input);
    const std::string_view metar = text.substr(0, text.find('\0'));
    const std::string_view taf = text.substr(metar.size());
    const bool metarFirst = text.size() % 2 == 0;
    for (const bool isMetar : {metarFirst, !metarFirst}) {
        require(host.urlSessions.answer(isMetar ? "metars" : "TAFs", isMetar ? metar : taf),
                "each walk has sent one request");
    }
    require(host.urlSessions.openRequests() == 0, "walks over one station end with its replies");
}
