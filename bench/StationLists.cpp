// SPDX-License-Identifier: MIT
#include "bench/StationLists.h"

#include "catalogue/ListFile.h"
#include "catalogue/stationparser.h"
#include "platform/host/System.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <utility>

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
    static std::map<int, std::string> texts{{realList, readList()}};
    const std::string& real = texts.at(realList);
    if (!texts.contains(size)) {
        const std::size_t length =
            real.size() * static_cast<std::size_t>(size) / collection(realList)->stations->size();
        std::string text;
        while (text.size() < length) {
            text += real;
        }
        text.erase(text.rfind('\n', length) + 1);
        texts[size] = std::move(text);
    }
    return texts.at(size);
}

const std::shared_ptr<AviationWeatherStationCollection>& collection(int size) {
    static std::map<int, std::shared_ptr<AviationWeatherStationCollection>> collections;
    auto& collection = collections[size];
    if (!collection) {
        collection = parsed(listText(size));
    }
    return collection;
}

} // namespace bench
