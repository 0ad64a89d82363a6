// SPDX-License-Identifier: MIT
#include "catalogue/table/ListMaker.h"

#include "catalogue/table/Editions.h"
#include "catalogue/table/StationNames.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <numbers>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

namespace catalogue {

namespace {

constexpr std::string_view introduction = R"(! Aviation weather stations of the world.
!
! Drawn up from the table of stations of the United States' Aviation Weather Center, a work of the
! US government in the public domain. Not for navigation.
!
! A blank line and a line with a region's name and the date of this edition begin each region:
! the states of the USA, the provinces of Canada, then the other countries.
!
! CD       state or province (USA and Canada)    M  X = reports METARs
! STATION  name                                  N  X = weather radar
! ICAO     location identifier                   V  T = issues TAFs
! IATA     airport code                          U  (upper air: not known here)
! SYNOP    WMO station index                     A  (kind of observation: not known here)
! LAT      degrees and minutes                   C  F = forecast office
! LONG     degrees and minutes                   then plotting priority, 0 the highest,
! ELEV     metres                                and the ISO 3166 code of the country
)";
constexpr std::string_view heading =
    "CD  STATION         ICAO IATA  SYNOP   LAT     LONG    ELEV   M  N  V  U  A  C\n";
constexpr std::string_view positionsIntroduction =
    "! Where the stations of the list beside this file are, in degrees, positive to the north and\n"
    "! east: as the table has them, from which both files were made.\n";

/// In degrees; stations of one name that are no further apart are one.
constexpr double samePlace = 0.02;

/// A row on its way into the list.
struct Line {
    const TableRow* row;
    std::string fullName;
    Place place;
    std::string name;
    std::string iata;
    std::string synop;
};

int rank(const TableRow& row) {
    return (row.reportsMetars ? 1 : 0) + (row.issuesTafs ? 1 : 0);
}

bool areClose(const TableRow& one, const TableRow& other) {
    const double eastWest = std::abs(std::remainder(one.longitude - other.longitude, 360)) *
                            std::cos(one.latitude * std::numbers::pi / 180);
    return std::hypot(one.latitude - other.latitude, eastWest) <= samePlace;
}

std::vector<Line> withoutFormer(const ServiceTable& table) {
    std::vector<Line> lines;
    std::unordered_map<std::string, std::vector<const TableRow*>> active;
    for (const TableRow& row : table.rows) {
        lines.push_back({&row, fullName(row.site), {}, {}, {}, {}});
        if (rank(row) > 0) {
            active[nameAlone(lines.back().fullName)].push_back(&row);
        }
    }
    std::erase_if(lines, [&](const Line& line) {
        const auto others = active.find(nameAlone(line.fullName));
        return rank(*line.row) == 0 && !line.fullName.empty() && others != active.end() &&
               std::ranges::any_of(others->second, [&](const TableRow* other) {
                   return areClose(*line.row, *other);
               });
    });
    return lines;
}

/// Gives each code to the one station that it belongs to.
void settle(std::vector<Line>& lines, std::string TableRow::*code, std::string Line::*settled) {
    std::unordered_map<std::string_view, Line*> owners;
    for (Line& line : lines) {
        const std::string& claimed = line.row->*code;
        if (!claimed.empty()) {
            Line*& owner = owners.try_emplace(claimed, &line).first->second;
            owner = rank(*line.row) > rank(*owner->row) ? &line : owner;
        }
    }
    for (const auto& [claimed, owner] : owners) {
        owner->*settled = claimed;
    }
}

void giveNames(std::vector<Line>& lines) {
    std::map<std::string, std::vector<Line*>> regions;
    for (Line& line : lines) {
        regions[line.place.region].push_back(&line);
    }
    for (const auto& [region, members] : regions) {
        std::vector<std::string> full;
        for (const Line* line : members) {
            full.push_back(line->fullName.empty() ? line->row->icao : line->fullName);
        }
        auto names = listNames(full);
        for (std::size_t i = 0; i < members.size(); ++i) {
            members[i]->name = std::move(names[i]);
        }
    }
}

std::string angle(double degrees, int digits, std::string_view letters) {
    const auto minutes = static_cast<int>(std::floor(std::abs(degrees) * 60 + 0.5));
    return fmt::format("{:0{}} {:02}{}", minutes / 60, digits, minutes % 60,
                       letters[degrees < 0 ? 1 : 0]);
}

/// Only its name says that a station is a radar or an office.
bool hasWord(std::string_view site, std::string_view word) {
    const auto isLetter = [&](std::size_t at) {
        return at < site.size() && platform::asciiLower(site[at]) >= 'a' &&
               platform::asciiLower(site[at]) <= 'z';
    };
    const std::size_t at = site.find(word);
    return at != std::string_view::npos && !isLetter(at - 1) && !isLetter(at + word.size());
}

std::string listLine(const Line& line) {
    const TableRow& row = *line.row;
    return fmt::format("{:2} {:16} {:4} {:4}  {:5}   {}  {}{:>5}   {:1}  {:1}  {:1}        {:1} "
                       "{:1} {:2}\n",
                       line.place.state, line.name, row.icao, line.iata, line.synop,
                       angle(row.latitude, 2, "NS"), angle(row.longitude, 3, "EW"),
                       row.elevation ? fmt::format("{}", *row.elevation) : "",
                       row.reportsMetars ? "X" : "", hasWord(row.site, "NEXRAD") ? "X" : "",
                       row.issuesTafs ? "T" : "", hasWord(row.site, "WFO") ? "F" : "",
                       row.priority ? fmt::format("{}", *row.priority) : "", line.place.country);
}

/// States, then provinces, then countries.
auto orderOf(const Line& line) {
    const int kind = line.place.state.empty() ? 2 : line.place.country == "US" ? 0 : 1;
    return std::tuple<int, const std::string&, const std::string&, const std::string&>(
        kind, line.place.region, line.name, line.row->icao);
}

} // namespace

MadeList makeList(const ServiceTable& table, const Places& places,
                  std::chrono::year_month_day edition) {
    MadeList made;
    auto lines = withoutFormer(table);
    made.formerIdentifiers = table.rows.size() - lines.size();
    for (Line& line : lines) {
        const TableRow& row = *line.row;
        line.place = places.placeOf(row.icao, row.country, row.state);
        const bool isStateWrong = !line.place.state.empty() && line.place.state != row.state;
        made.placesCorrected += line.place.country != row.country || isStateWrong ? 1 : 0;
    }
    settle(lines, &TableRow::iata, &Line::iata);
    settle(lines, &TableRow::wmo, &Line::synop);
    giveNames(lines);

    std::ranges::sort(lines, {},
                      [](const Line& line) -> std::string_view { return line.row->icao; });
    made.positions = positionsIntroduction;
    for (const Line& line : lines) {
        made.positions +=
            fmt::format("{} {} {}\n", line.row->icao, line.row->latitude, line.row->longitude);
    }

    std::ranges::sort(
        lines, [](const Line& one, const Line& other) { return orderOf(one) < orderOf(other); });
    made.list = introduction;
    std::string_view region;
    for (const Line& line : lines) {
        if (line.place.region != region) {
            region = line.place.region;
            made.list += fmt::format("\n{:18} {}\n{}", region, textOfEdition(edition), heading);
        }
        made.list += listLine(line);
    }
    return made;
}

} // namespace catalogue
