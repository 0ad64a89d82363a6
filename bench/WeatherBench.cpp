// SPDX-License-Identifier: MIT
#include "tests/support/FakeHost.h"
#include "tests/support/Stations.h"
#include "weather/SCWeatherGrabber.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

/// A reply like the data server's: one report among many fields.
std::string reply(const std::string& kind) {
    std::string text = "<response><errors/><data num_results=\"1\"><" + kind + "><raw_text>" +
                       kind + " KZZQ 211151Z 24010KT 10SM FEW045 18/09 A3002</raw_text>";
    for (int field = 0; field < 40; ++field) {
        text += "<field_" + std::to_string(field) + ">1013.2</field_" + std::to_string(field) + ">";
    }
    return text + "</" + kind + "></data></response>";
}

/// The work of both walks for one station: requests, replies and notifications, but no network.
void walkAStation(benchmark::State& state) {
    support::FakeHost host;
    const std::string metar = reply("METAR");
    const std::string taf = reply("TAF");
    const auto grabber = SCWeatherGrabber::init(host.host);
    const StationArray stations{makeStation({"KZZQ"})};
    for (auto _ : state) {
        grabber->getNewMessages(stations);
        host.urlSessions.answer("metar", metar);
        host.urlSessions.answer("TAFs", taf);
    }
    if (host.urlSessions.openRequests() > 0) {
        state.SkipWithError("a request was not answered");
    }
}
BENCHMARK(walkAStation)->Unit(benchmark::kMillisecond);

} // namespace
