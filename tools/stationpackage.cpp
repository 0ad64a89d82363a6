// SPDX-License-Identifier: MIT
// Makes, prints and checks station package files, using the program's own libraries.
#include "catalogue/ListFile.h"
#include "catalogue/Packages.h"
#include "catalogue/table/PackageMaker.h"
#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "platform/host/System.h"
#include "platform/text/Text.h"
#include "platform/values/Geodesy.h"
#include "tools/Messages.h"
#include "tools/Update.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <cstdio>
#include <new>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace {

using platform::escapedControls;
using tools::fail;
using tools::say;

constexpr const char* usage =
    "usage: stationpackage make LIST FILE [POSITIONS]      make a package from a list\n"
    "       stationpackage update TABLE FOLDER [DATE]     make list and package from a table\n"
    "       stationpackage print FILE                     print one line per station\n"
    "       stationpackage check FILE                     report what is wrong with it\n"
    "TABLE is a file, - for standard input, or \"service\" for the weather service's own.\n";

std::string column(const std::optional<std::string>& text) {
    return escapedControls(text.value_or(""));
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
                       escapedControls(collection.fromURL ? collection.fromURL->text : ""),
                       collection.stations ? collection.stations->size() : 0);
}

/// Every field, in the order of a package; the marks appear as the favourite flag.
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
        escapedControls(platform::textOfCode(station.METAR)),
        escapedControls(platform::textOfCode(station.NEXRAD)),
        escapedControls(platform::textOfCode(station.aviationFlag)),
        escapedControls(platform::textOfCode(station.upperAirOrWind)),
        escapedControls(platform::textOfCode(station.observationType)),
        escapedControls(platform::textOfCode(station.officeType)),
        escapedControls(platform::textOfCode(station.plottingPriority)),
        column(station.countryCode),
        station.refCon ? station.isFavorite() ? "RQFavorite=1" : "RQFavorite=0" : "",
    };
    return fmt::format("{}", fmt::join(columns, "\t"));
}

int make(const std::string& list, const std::string& file, const std::string* positions) {
    auto read = catalogue::readList(list);
    if (!read) {
        return fail(list, "cannot be read");
    }
    platform::StandardErrorLog log;
    const auto made =
        catalogue::packageOf(std::move(read->text), log, platform::SystemClock().now());
    if (!made.collection) {
        return fail(list, made.fault);
    }
    if (positions) {
        const auto lines = catalogue::readListFile(*positions);
        const auto fault = lines ? catalogue::setPositions(*made.collection, *lines)
                                 : std::string("cannot be read");
        if (!fault.empty()) {
            return fail(*positions, fault);
        }
    }
    if (!platform::KeyedArchiver::archiveRootObject(made.collection, file)) {
        return fail(file, "cannot be written");
    }
    fmt::print("stations: {}, lines realigned: {}, lines that do not fit: {}\n",
               made.collection->numberOfStations, read->realignedLines, read->oddLines);
    return 0;
}

int print(const std::string& file) {
    const auto collection = catalogue::readPackage(file);
    if (!collection) {
        return fail(file, "is no station package");
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
        return fail(file, read.fault);
    }
    const auto collection = platform::objectOf<AviationWeatherStationCollection>(read.root);
    if (!collection) {
        return fail(file, "holds no station collection");
    }
    std::vector<std::string> faults = read.misreadings;
    if (read.misreadFields > faults.size()) {
        faults.push_back(fmt::format("{} fields cannot be read.", read.misreadFields));
    }
    if (!collection->stations) {
        faults.emplace_back("holds no array of stations");
    } else {
        const auto& stations = *collection->stations;
        if (collection->numberOfStations != static_cast<std::int64_t>(stations.size())) {
            faults.push_back(fmt::format("says {} stations, holds {}", collection->numberOfStations,
                                         stations.size()));
        }
        for (std::size_t i = 0; i < stations.size(); ++i) {
            if (!platform::Location{stations[i]->latitude, stations[i]->longitude}.isValid()) {
                faults.push_back(fmt::format("station {} ({}) lies outside the globe", i + 1,
                                             stations[i]->ICAO.value_or("")));
            }
        }
    }
    for (const auto& fault : faults) {
        say(file, fault);
    }
    return faults.empty() ? 0 : 1;
}

int run(const std::vector<std::string>& words) {
    if ((words.size() == 3 || words.size() == 4) && words[0] == "make") {
        return make(words[1], words[2], words.size() == 4 ? &words[3] : nullptr);
    }
    if ((words.size() == 3 || words.size() == 4) && words[0] == "update") {
        return tools::update(words[1], words[2],
                             words.size() == 4 ? std::optional(words[3]) : std::nullopt);
    }
    if (words.size() == 2 && words[0] == "print") {
        return print(words[1]);
    }
    if (words.size() == 2 && words[0] == "check") {
        return check(words[1]);
    }
    const bool isAskedFor = words.size() == 1 && words[0] == "--help";
    std::fputs(usage, isAskedFor ? stdout : stderr);
    return isAskedFor ? 0 : 2;
}

} // namespace

int main(int argc, char** argv) try {
    const int result = run({argv + 1, argv + argc});
    return std::fflush(stdout) == 0 ? result : fail("standard output", "cannot be written");
} catch (const std::bad_alloc&) {
    std::fputs("stationpackage: there is not enough memory\n", stderr);
    return 1;
} catch (const std::system_error&) {
    return fail("standard output", "cannot be written");
}
