// SPDX-License-Identifier: MIT
#include "catalogue/table/StationNames.h"

#include "platform/text/Text.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <span>
#include <utility>

namespace catalogue {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t nameWidth = 16;
/// How much is kept of a name's second part, separator included, when its first is cut.
constexpr std::size_t leastRest = 7;
/// A stump is removed only if this much stays before it.
constexpr std::size_t leastBeforeStump = 8;

// What is dropped from the end of a long name, the least telling first. The table is not of one
// spelling.
constexpr std::array airportWords{"ARPT"sv, "APRT"sv,  "ARPR"sv,   "ARPTO"sv,
                                  "AIRP"sv, "AIRPO"sv, "AIRPOR"sv, "AIRPORT"sv};
constexpr std::array kindWords{
    "INTL"sv,    "RGNL"sv,  "RNGL"sv,   "MUNI"sv,   "CNTY"sv,     "MEM"sv,    "EXEC"sv, "FLD"sv,
    "FIELD"sv,   "AFLD"sv,  "ARFLD"sv,  "AIRFLD"sv, "AIRFIELD"sv, "APK"sv,    "ARPK"sv, "APRK"sv,
    "AIRPARK"sv, "ASTRP"sv, "ARSTRP"sv, "TERM"sv,   "METRO"sv,    "JETPORT"sv};

constexpr std::pair<std::string_view, std::string_view> shortForms[] = {
    {"BEACH", "BCH"},    {"COUNTY", "CNTY"},   {"EAST", "E"},        {"FORT", "FT"},
    {"GREAT", "GRT"},    {"HARBOR", "HBR"},    {"HARBOUR", "HBR"},   {"INTERNATIONAL", "INTL"},
    {"ISLAND", "ISL"},   {"ISLANDS", "ISLS"},  {"JUNCTION", "JCT"},  {"MOUNT", "MT"},
    {"MOUNTAIN", "MTN"}, {"NATIONAL", "NATL"}, {"NEXRAD", "RADAR"},  {"NORTH", "N"},
    {"POINT", "PT"},     {"PORT", "PT"},       {"REGIONAL", "RGNL"}, {"SAINT", "ST"},
    {"SOUTH", "S"},      {"SPRINGS", "SPGS"},  {"VALLEY", "VLY"},    {"WEST", "W"}};

bool isWord(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

std::string_view withoutEnd(std::string_view text, std::string_view characters) {
    return text.substr(0, text.find_last_not_of(characters) + 1);
}

std::string_view without(std::span<const std::string_view> words, std::string_view name) {
    const std::size_t blank = name.rfind(' ');
    const bool ends = blank != std::string_view::npos &&
                      std::ranges::find(words, name.substr(blank + 1)) != words.end();
    return ends ? name.substr(0, blank) : name;
}

std::string_view withoutRemark(std::string_view name) {
    const std::size_t bracket = name.ends_with(')') ? name.rfind(" (") : std::string_view::npos;
    return name.find(')', std::min(bracket, name.size())) == name.size() - 1
               ? name.substr(0, bracket)
               : name;
}

/// The start of a name, not ending in a stump of one or two letters.
std::string cut(std::string_view name, std::size_t width) {
    if (name.size() <= width) {
        return std::string(name);
    }
    std::string_view start = name.substr(0, width);
    if (" /-"sv.find(name[width]) == std::string_view::npos) {
        std::size_t at = start.size();
        while (at > 0 && isWord(start[at - 1])) {
            --at;
        }
        const std::size_t stump = start.size() - at;
        at -= at > 0 && start[at - 1] == '(' ? 1 : 0;
        if ((stump == 1 || stump == 2) && at > leastBeforeStump &&
            " /-"sv.find(start[at - 1]) != std::string_view::npos) {
            start = start.substr(0, at - 1);
        }
    }
    return std::string(withoutEnd(start, " /-(.,'&"));
}

std::string withShortForms(std::string_view name) {
    std::string result;
    while (!name.empty()) {
        const auto end = std::ranges::find_if_not(name, isWord);
        const auto word = name.substr(0, static_cast<std::size_t>(end - name.begin()));
        const auto* const form = std::ranges::find(
            shortForms, word, &std::pair<std::string_view, std::string_view>::first);
        result += form == std::end(shortForms) ? word : form->second;
        name.remove_prefix(word.size());
        if (!name.empty()) {
            result += name.front();
            name.remove_prefix(1);
        }
    }
    return result;
}

std::string shortName(std::string_view name) {
    using Drop = std::string_view (*)(std::string_view);
    constexpr Drop airport = [](std::string_view text) { return without(airportWords, text); };
    constexpr Drop kind = [](std::string_view text) { return without(kindWords, text); };
    for (const Drop drop : {airport, Drop(withoutRemark), airport, kind, kind}) {
        if (name.size() > nameWidth) {
            name = drop(name);
        }
    }
    return name.size() > nameWidth ? cut(withShortForms(name), nameWidth) : std::string(name);
}

/// For stations whose short names are equal: cuts the town, not what follows it.
std::string tellingName(std::string_view name) {
    std::size_t end = name.find('/');
    end = std::min(end == std::string_view::npos ? name.rfind(' ') : end, name.size());
    const std::string_view rest = name.substr(end);
    std::string result = cut(name.substr(0, end), nameWidth - std::min(rest.size(), leastRest));
    result += rest;
    return std::string(withoutEnd(result.substr(0, nameWidth), " "));
}

} // namespace

std::string fullName(std::string_view site) {
    std::string name;
    for (char c : platform::inAsciiLetters(site)) {
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
        c = isWord(c) || "/().'&,-"sv.find(c) != std::string_view::npos ? c : ' ';
        if (c == '(' && !name.empty() && name.back() != ' ') {
            name += ' ';
        }
        if (c != ' ' || (!name.empty() && name.back() != ' ')) {
            name += c;
        }
    }
    const std::size_t open = name.rfind('(');
    if (open != std::string::npos && name.find(')', open) == std::string::npos) {
        name.resize(open);
    }
    name.resize(std::min(name.find(','), name.size()));
    const std::size_t start = name.find_first_not_of(" /-");
    return start == std::string::npos
               ? std::string()
               : std::string(withoutEnd(std::string_view(name).substr(start), " /-"));
}

std::string nameAlone(std::string_view fullName) {
    return std::string(without(airportWords, fullName));
}

std::vector<std::string> listNames(const std::vector<std::string>& fullNames) {
    std::vector<std::string> names;
    std::map<std::string, std::set<std::string_view>> alike;
    for (const std::string& full : fullNames) {
        names.push_back(shortName(full));
        alike[names.back()].insert(without(airportWords, full));
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::string_view full = without(airportWords, fullNames[i]);
        if (alike[names[i]].size() > 1 && full.size() > nameWidth) {
            names[i] = tellingName(full);
        }
    }
    return names;
}

} // namespace catalogue
