// SPDX-License-Identifier: MIT
#include "bench/StationLists.h"

#include "catalogue/ListFile.h"
#include "catalogue/stationparser.h"
#include "platform/host/System.h"

#include <cstdio>
#include <cstdlib>

namespace bench {

namespace {

std::string readList() {
    for (const char* path : {NOSIG_SOURCE_DIR "/../shared/data/stations.txt",
                             NOSIG_SOURCE_DIR "/resources/catalogue/stations.txt"}) {
        if (auto text = catalogue::readListFile(path)) {
            return *std::move(text);
        }
    }
    std::fputs("There is no station list to measure with.\n", stderr);
    std::exit(1);
}

std::shared_ptr<AviationWeatherStationCollection> parsed(const std::string& text) {
    platform::NotificationCenter center;
    platform::StandardErrorLog log;
    const auto parser = stationparser::initWithNSString(center, log, text);
    parser->parse();
    parser->theCollection()->numberOfStations =
        static_cast<std::int64_t>(parser->theCollection()->stations->size());
    return parser->theCollection();
}

} // namespace

const std::string& listText(int size) {
    static const std::string real = readList();
    if (size == realList) {
        return real;
    }
    static const std::string repeated = [] {
        const std::size_t stations = collection(realList)->stations->size();
        std::string text;
        for (std::size_t i = 0; i < 1'000'000; i += stations) {
            text += real;
        }
        return text;
    }();
    return repeated;
}

const std::shared_ptr<AviationWeatherStationCollection>& collection(int size) {
    static const auto real = parsed(listText(realList));
    if (size == realList) {
        return real;
    }
    static const auto million = parsed(listText(millionStations));
    return million;
}

} // namespace bench
