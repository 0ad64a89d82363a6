// SPDX-License-Identifier: MIT
// Makes, prints and checks station package files, with the program's own libraries.
#include "catalogue/ListFile.h"
#include "catalogue/Packages.h"
#include "catalogue/stationparser.h"
#include "platform/Geodesy.h"
#include "platform/KeyedArchiver.h"
#include "platform/KeyedUnarchiver.h"
#include "platform/System.h"
#include "platform/Text.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <cstdio>
#include <span>
#include <string>
#include <vector>

namespace {

constexpr const char* usage = "usage: stationpackage make LIST FILE   make a package from a list\n"
                              "       stationpackage print FILE       one line a station\n"
                              "       stationpackage check FILE       say what is wrong with it\n";

int fail(const std::string& reason) {
    fmt::print(stderr, "stationpackage: {}\n", reason);
    return 1;
}

/// A field in one column of one line: backslashes, tabs and line ends are escaped.
std::string escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
        case '\\':
            result += "\\\\";
            break;
        case '\t':
            result += "\\t";
            break;
        case '\n':
            result += "\\n";
            break;
        case '\r':
            result += "\\r";
            break;
        default:
            result += c;
        }
    }
    return result;
}

std::string column(const std::optional<std::string>& text) {
    return escaped(text.value_or(""));
}

std::string collectionLine(const AviationWeatherStationCollection& collection) {
    std::string updated;
    if (collection.lastUpdated) {
        updated =
            fmt::format("{:%Y-%m-%dT%H:%M:%S}Z",
                        fmt::gmtime(std::chrono::system_clock::to_time_t(
                            std::chrono::floor<std::chrono::seconds>(*collection.lastUpdated))));
    }
    return fmt::format("numberOfStations={}\tlastUpdated={}\tfromURL={}\tstations={}",
                       collection.numberOfStations, updated,
                       escaped(collection.fromURL ? collection.fromURL->text : ""),
                       collection.stations ? collection.stations->size() : 0);
}

/// Every field, in the order in which packages hold them; the marks as the favourite flag.
std::string stationLine(const AviationWeatherStation& station) {
    const std::vector<std::string> columns{
        column(station.stateName),
        column(station.stateAbbreviation),
        column(station.stationName),
        column(station.ICAO),
        column(station.IATA),
        fmt::format("{}", station.SYNOPIndex),
        fmt::format("{}", station.latitude),
        fmt::format("{}", station.longitude),
        fmt::format("{}", station.ELEV),
        escaped(platform::textOfCode(station.METAR)),
        escaped(platform::textOfCode(station.NEXRAD)),
        escaped(platform::textOfCode(station.aviationFlag)),
        escaped(platform::textOfCode(station.upperAirOrWind)),
        escaped(platform::textOfCode(station.observationType)),
        escaped(platform::textOfCode(station.officeType)),
        escaped(platform::textOfCode(station.plottingPriority)),
        column(station.countryCode),
        station.refCon ? station.isFavorite() ? "RQFavorite=1" : "RQFavorite=0" : "",
    };
    return fmt::format("{}", fmt::join(columns, "\t"));
}

int make(const std::string& list, const std::string& file) {
    const auto text = catalogue::readListFile(list);
    if (!text) {
        return fail(fmt::format("cannot read {}", list));
    }
    platform::NotificationCenter center;
    platform::StandardErrorLog log;
    const auto parser = stationparser::initWithNSString(center, log, text);
    parser->parse();
    const auto collection = parser->theCollection();
    if (!collection || collection->stations->empty()) {
        return fail(fmt::format("no station in {}", list));
    }
    if (parser->error()) {
        return fail(fmt::format("{} ends in the middle of something", list));
    }
    collection->numberOfStations = static_cast<std::int64_t>(collection->stations->size());
    collection->lastUpdated = platform::SystemClock().now();
    if (!platform::KeyedArchiver::archiveRootObject(collection, file)) {
        return fail(fmt::format("cannot write {}", file));
    }
    return 0;
}

int print(const std::string& file) {
    const auto collection = catalogue::readPackage(file);
    if (!collection) {
        return fail(fmt::format("no station package: {}", file));
    }
    fmt::print("{}\n", collectionLine(*collection));
    if (collection->stations) {
        for (const auto& station : *collection->stations) {
            fmt::print("{}\n", stationLine(*station));
        }
    }
    return 0;
}

int check(const std::string& file) {
    const auto read = platform::KeyedUnarchiver::unarchiveFile(file, catalogue::archivedClasses());
    if (!read.fault.empty()) {
        return fail(fmt::format("{}: {}", file, read.fault));
    }
    const auto collection = platform::objectOf<AviationWeatherStationCollection>(read.root);
    if (!collection) {
        return fail(fmt::format("{}: holds no station collection", file));
    }
    int faults = 0;
    const auto say = [&](const std::string& fault) {
        ++faults;
        fail(fmt::format("{}: {}", file, fault));
    };
    if (read.misreadFields > 0) {
        say(fmt::format("{} unreadable fields, the first: {}", read.misreadFields,
                        read.firstMisreadField));
    }
    if (!collection->stations) {
        say("holds no array of stations");
        return 1;
    }
    const auto& stations = *collection->stations;
    if (collection->numberOfStations != static_cast<std::int64_t>(stations.size())) {
        say(fmt::format("says {} stations, holds {}", collection->numberOfStations,
                        stations.size()));
    }
    for (std::size_t i = 0; i < stations.size(); ++i) {
        if (!platform::Location{stations[i]->latitude, stations[i]->longitude}.isValid()) {
            say(fmt::format("station {} ({}) lies outside the globe", i + 1,
                            column(stations[i]->ICAO)));
        }
    }
    return faults == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words.size() == 3 && words[0] == "make") {
        return make(words[1], words[2]);
    }
    if (words.size() == 2 && words[0] == "print") {
        return print(words[1]);
    }
    if (words.size() == 2 && words[0] == "check") {
        return check(words[1]);
    }
    fmt::print(stderr, "{}", usage);
    return 2;
}
