// SPDX-License-Identifier: MIT
#include "tools/Update.h"

#include "catalogue/ListFile.h"
#include "catalogue/table/Figures.h"
#include "catalogue/table/ListMaker.h"
#include "catalogue/table/PackageMaker.h"
#include "catalogue/table/ServiceTable.h"
#include "platform/archive/KeyedArchiver.h"
#include "platform/host/Files.h"
#include "platform/host/System.h"
#include "platform/net/URLSession.h"
#include "product/Addresses.h"
#include "tools/Messages.h"
#include "weather/DataServerSessions.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <future>
#include <span>
#include <utility>

namespace tools {

namespace {

using std::chrono::floor;
using std::chrono::year_month_day;

/// No table is nearly as large, compressed or not.
constexpr std::size_t longestTable = std::size_t{32} << 20;
constexpr int badUsage = 2;

struct Source {
    platform::Data bytes;
    year_month_day changed;
    /// As what follows the table's name in a message; empty if it was read.
    std::string fault;
};

year_month_day dayOf(platform::Date date) {
    return floor<std::chrono::days>(date);
}

year_month_day today() {
    return dayOf(platform::SystemClock().now());
}

Source standardInput() {
    Source source{{}, today(), {}};
    std::array<std::byte, 65536> piece{};
    while (const std::size_t count = std::fread(piece.data(), 1, piece.size(), stdin)) {
        if (source.bytes.size() > longestTable) {
            break;
        }
        source.bytes.insert(source.bytes.end(), piece.begin(), piece.begin() + count);
    }
    return source;
}

Source file(const std::string& path) {
    auto bytes = platform::readFile(path, longestTable);
    if (!bytes) {
        return {{}, {}, "cannot be read"};
    }
    std::error_code unknown;
    const auto changed = std::filesystem::last_write_time(path, unknown);
    const auto day = floor<std::chrono::days>(std::chrono::file_clock::to_sys(changed));
    return {std::move(*bytes), unknown ? today() : year_month_day(day), {}};
}

Source service() {
    platform::NotificationCenter center;
    platform::CurlURLSessions sessions(center, weather::sessionOptions());
    std::promise<Source> arrived;
    platform::URLSessions::Request request{{fmt::format(
        "https://{}{}", product::addresses::dataServerHost, product::addresses::stationTablePath)}};
    request.ended = [&](const platform::URLSessions::Ending& ending) {
        Source source{ending.data.value_or(platform::Data()),
                      dayOf(ending.version.modified.value_or(ending.asked)),
                      {}};
        source.fault = !ending.data           ? "cannot be reached"
                       : ending.status != 200 ? fmt::format("answers with status {}", ending.status)
                                              : "";
        arrived.set_value(std::move(source));
    };
    sessions.startDataTask(request, [](const auto&) {});
    return arrived.get_future().get();
}

std::optional<year_month_day> dayIn(const std::string& text) {
    int year = 0;
    unsigned month = 0;
    unsigned day = 0;
    char end = 0;
    if (std::sscanf(text.c_str(), "%4d-%2u-%2u%c", &year, &month, &day, &end) != 3) {
        return std::nullopt;
    }
    const year_month_day date{std::chrono::year(year), std::chrono::month(month),
                              std::chrono::day(day)};
    return date.ok() && year >= 2000 && year < 2100 ? std::optional(date) : std::nullopt;
}

/// What is in the folder now; zeros if there is no list.
catalogue::Figures figuresOfList(const std::string& path, platform::Log& log) {
    auto list = catalogue::readListFile(path);
    const auto present =
        list ? catalogue::packageOf(std::move(*list), log, {}).collection : nullptr;
    return present ? catalogue::figuresOf(*present) : catalogue::Figures();
}

void printFigures(const catalogue::ServiceTable& table, const catalogue::MadeList& made,
                  const catalogue::Figures& figures) {
    const std::pair<std::size_t, const char*> lines[] = {
        {figures.stations, "stations"},
        {figures.regions, "regions"},
        {figures.metars, "with METARs"},
        {figures.tafs, "with TAFs"},
        {figures.iata, "with an IATA code"},
        {figures.synop, "with a SYNOP index"},
        {figures.radars, "with a radar"},
        {figures.offices, "with a forecast office"},
        {table.withoutElevation, "without an elevation"},
        {made.placesCorrected, "in another country or state than the table's"},
        {table.withoutIdentifier, "left out, no identifier of four characters"},
        {table.withoutPosition, "left out, no position"},
        {table.repeated, "left out, identifier given twice"},
        {made.formerIdentifiers, "left out, former identifier"},
    };
    for (const auto& [count, what] : lines) {
        fmt::print("{:6} {}\n", count, what);
    }
}

std::span<const std::byte> bytesOf(const std::string& text) {
    return std::as_bytes(std::span(text));
}

} // namespace

int update(const std::string& table, const std::string& folder,
           const std::optional<std::string>& date) {
    const auto day = date ? dayIn(*date) : std::nullopt;
    if (date && !day) {
        say(*date, "is no date such as 2026-02-01");
        return badUsage;
    }
    const Source source = table == "-"         ? standardInput()
                          : table == "service" ? service()
                                               : file(table);
    if (!source.fault.empty()) {
        return fail(table, source.fault);
    }
    const auto rows = catalogue::readTable(source.bytes);
    if (!rows.fault.empty()) {
        return fail(table, rows.fault);
    }
    const auto made =
        catalogue::makeList(rows, catalogue::Places::ours(), day.value_or(source.changed));
    platform::StandardErrorLog log;
    const auto package = catalogue::packageOf(made.list, log, platform::SystemClock().now());
    const auto fault = package.collection
                           ? catalogue::setPositions(*package.collection, made.positions)
                           : package.fault;
    if (!fault.empty()) {
        return fail(table, fault);
    }
    const std::filesystem::path target(folder);
    const auto figures = catalogue::figuresOf(*package.collection);
    const auto lost =
        catalogue::shrinkage(figuresOfList((target / "stations.txt").string(), log), figures);
    if (!lost.empty()) {
        return fail(table, lost);
    }
    const auto archive = platform::KeyedArchiver::archivedData(package.collection);
    const std::pair<const char*, std::span<const std::byte>> files[] = {
        {"Stations.STNPKG",
         archive ? std::span<const std::byte>(*archive) : std::span<const std::byte>()},
        {"positions.txt", bytesOf(made.positions)},
        {"stations.txt", bytesOf(made.list)},
    };
    for (const auto& [name, bytes] : files) {
        if (!archive || platform::replaceFile(target / name, bytes)) {
            return fail((target / name).string(), "cannot be written");
        }
    }
    printFigures(rows, made, figures);
    return 0;
}

} // namespace tools
